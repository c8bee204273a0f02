#include "views/ListWindowTrees.h"

#include <QApplication>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>

#include "views/AppMenu.h"
#include "views/ListRowWidget.h"
#include "views/PanelLayout.h"
#include "views/PermissionRequestWidget.h"

namespace platform::qt {

namespace {

using tarnwick::ListWindowView;

using namespace panelLayout;

constexpr int defaultPadding = 16;
constexpr int emptyTextMinimumWidth = 250;
constexpr int menuArrowGap = 10;

const char* const permissionText = "Tarnwick needs accessibility permissions to properly function.";

// A slightly smaller system font, for secondary text.
QFont calloutFont() {
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() - 1);
    return font;
}

// A hairline in a faint shade of the text colour, so that it shows on light
// and dark panels alike.
class Divider final : public QWidget {
  public:
    explicit Divider(QWidget* parent) : QWidget(parent) {
        setObjectName(QStringLiteral("divider"));
        setFixedHeight(dividerHeight);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QColor line = palette().color(QPalette::WindowText);
        line.setAlphaF(0.15f);
        QPainter(this).fillRect(rect(), line);
    }
};

// Text as it is: no markup, and an ampersand is not a mnemonic.
QString literal(const std::string& text) {
    return QString::fromStdString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QLabel* plainText(const std::string& text, QWidget* parent) {
    auto* label = new QLabel(QString::fromStdString(text), parent);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QWidget* errorTree(const std::string& text, QWidget* parent) {
    QLabel* label = plainText(text, parent);
    label->setObjectName(QStringLiteral("errorText"));
    label->setContentsMargins(0, 0, 0, 0);
    return label;
}

QWidget* permissionTree(tarnwick::PermissionRequestView* view, QWidget* parent) {
    if (view) {
        auto* request = new PermissionRequestWidget(*view, parent);
        request->setContentsMargins(defaultPadding, defaultPadding, defaultPadding, defaultPadding);
        return request;
    }
    QLabel* label = plainText(permissionText, parent);
    label->setObjectName(QStringLiteral("permissionRequest"));
    label->setContentsMargins(defaultPadding, defaultPadding, defaultPadding, defaultPadding);
    return label;
}

QPushButton* menuButton(const ListWindowView::Menu& menu, QWidget* parent) {
    auto* button = new QPushButton(literal(menu.label), parent);
    button->setObjectName(QStringLiteral("appMenuButton"));
    button->setAccessibleName(QString::fromStdString(menu.label));
    button->setFocusPolicy(Qt::NoFocus);
    button->setFixedHeight(menuButtonHeight);
    button->setMenu(new AppMenu(menu, button));
    // The style centres the label in the room left of the menu's arrow and
    // sizes the button to fit both tightly: a little more width keeps the
    // last letter off the arrow.
    button->setMinimumWidth(button->sizeHint().width() + menuArrowGap);
    return button;
}

QWidget* emptyText(const std::string& text, QWidget* parent) {
    QLabel* label = plainText(text, parent);
    label->setObjectName(QStringLiteral("emptyText"));
    label->setFont(calloutFont());
    label->setContentsMargins(defaultPadding, defaultPadding, defaultPadding, defaultPadding);
    label->setMinimumWidth(emptyTextMinimumWidth);
    label->setAlignment(Qt::AlignCenter);
    label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    return label;
}

QWidget* windowList(const std::vector<ListWindowView::Row>& rows,
                    ListWindowView::ListRow::Coordinator& coordinator, QWidget* parent) {
    auto* list = new QWidget(parent);
    list->setObjectName(QStringLiteral("windowList"));
    auto* layout = new QVBoxLayout(list);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(rowSpacing);
    for (const auto& row : rows) {
        layout->addWidget(new ListRowWidget(
            ListWindowView::ListRow(row.window, coordinator,
                                    std::make_shared<ListWindowView::ListRow::VM>()),
            coordinator, list));
        if (row.hasDivider)
            layout->addWidget(new Divider(list));
    }
    return list;
}

QWidget* menuAndListTree(const ListWindowView::Content& content,
                         ListWindowView::ListRow::Coordinator& coordinator, QWidget* parent) {
    auto* tree = new QWidget(parent);
    auto* layout = new QVBoxLayout(tree);
    layout->setContentsMargins(scenePadding, scenePadding, scenePadding, scenePadding);
    layout->setSpacing(sectionSpacing);
    layout->addWidget(menuButton(content.menu, tree));
    if (content.emptyText)
        layout->addWidget(emptyText(*content.emptyText, tree));
    else
        layout->addWidget(windowList(content.rows, coordinator, tree));
    return tree;
}

}  // namespace

QWidget* buildListWindowTree(const ListWindowView::Content& content,
                             ListWindowView::ListRow::Coordinator& coordinator,
                             tarnwick::PermissionRequestView* permissionView, QWidget* parent) {
    switch (content.tree) {
        case ListWindowView::Tree::permission:
            return permissionTree(permissionView, parent);
        case ListWindowView::Tree::errorText:
            return errorTree(content.errorText, parent);
        case ListWindowView::Tree::menuAndList:
            return menuAndListTree(content, coordinator, parent);
    }
    return errorTree(content.errorText, parent);
}

}  // namespace platform::qt
