#include "views/ListWindowTrees.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "views/AppMenu.h"
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

}  // namespace

QWidget* buildListWindowTree(const ListWindowView::Content& content,
                             tarnwick::PermissionRequestView* permissionView, QWidget* parent) {
    switch (content.tree) {
        case ListWindowView::Tree::permission:
            return permissionTree(permissionView, parent);
        case ListWindowView::Tree::errorText:
        case ListWindowView::Tree::menuAndList:
            break;
    }
    return errorTree(content.errorText, parent);
}

QPushButton* buildMenuButton(const ListWindowView::Menu& menu, QWidget* parent) {
    return menuButton(menu, parent);
}

QWidget* buildEmptyText(const std::string& text, QWidget* parent) {
    return emptyText(text, parent);
}

}  // namespace platform::qt
