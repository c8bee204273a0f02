#include "views/FirstRunContentViews.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "views/PermissionRequestWidget.h"
#include "views/QtContentView.h"
#include "views/QtImages.h"
#include "views/StyledLabel.h"

namespace platform::qt {

namespace {

constexpr int pagePadding = 16;
constexpr int pageSpacing = 16;
constexpr int appIconSize = 128;
constexpr int localAppIconSize = 16;
constexpr int aboutColumnSpacing = 24;
constexpr int aboutHeadingSpacing = 8;

QLabel* iconLabel(const platform::Image& image, int size, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QStringLiteral("appIcon"));
    label->setAccessibleName(QStringLiteral("Application icon"));
    label->setPixmap(iconFor(image).pixmap(QSize(size, size), label->devicePixelRatioF()));
    label->setFixedSize(size, size);
    return label;
}

// A page of the onboarding window: a vertical stack of centred parts with
// the page's spacing and padding, as large as its content and no larger.
QVBoxLayout* newPage(const QString& name) {
    auto* page = new QWidget;
    page->setObjectName(name);
    auto* layout = new QVBoxLayout(page);
    layout->setSpacing(pageSpacing);
    layout->setContentsMargins(pagePadding, pagePadding, pagePadding, pagePadding);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    return layout;
}

QVBoxLayout* centredColumn(int spacing) {
    auto* column = new QVBoxLayout;
    column->setSpacing(spacing);
    column->setContentsMargins(0, 0, 0, 0);
    return column;
}

QLabel* authorLabel(const tarnwick::AboutWindowView::AuthorLine& author, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setObjectName(QStringLiteral("authorLine"));
    label->setTextFormat(author.isMarkdown ? Qt::MarkdownText : Qt::PlainText);
    label->setText(QString::fromStdString(author.text));
    label->setOpenExternalLinks(author.isMarkdown);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

}  // namespace

std::shared_ptr<ContentView> makePermissionsPageContentView(
    tarnwick::OnboardWindowPermissionsView& view) {
    const auto drawing = view.draw();
    auto* layout = newPage(QStringLiteral("permissionsPage"));
    auto* page = layout->parentWidget();
    auto* welcome = centredColumn(0);
    welcome->addWidget(iconLabel(drawing.icon, appIconSize, page), 0, Qt::AlignHCenter);
    welcome->addWidget(styledLabel(drawing.welcome, page), 0, Qt::AlignHCenter);
    welcome->addWidget(styledLabel(drawing.tagLine, page), 0, Qt::AlignHCenter);
    layout->addLayout(welcome);
    layout->addWidget(styledLabel(drawing.gettingStarted, page), 0, Qt::AlignHCenter);
    layout->addWidget(new PermissionRequestWidget(view.permissionRequest(), page), 0,
                      Qt::AlignHCenter);
    return std::make_shared<QtContentView>(page);
}

std::shared_ptr<ContentView> makeInstructionsPageContentView(
    tarnwick::OnboardWindowInstructionsView& view) {
    const auto drawing = view.draw();
    auto* layout = newPage(QStringLiteral("instructionsPage"));
    auto* page = layout->parentWidget();
    layout->addWidget(iconLabel(drawing.icon, appIconSize, page), 0, Qt::AlignHCenter);
    auto* instructions = styledLabel(drawing.instructions, page);
    instructions->setObjectName(QStringLiteral("instructions"));
    layout->addWidget(instructions, 0, Qt::AlignHCenter);
    layout->addWidget(styledLabel(drawing.settingsNote, page), 0, Qt::AlignHCenter);
    auto* ok = new QPushButton(QString::fromStdString(drawing.okButton), page);
    ok->setAccessibleName(QString::fromStdString(drawing.okButton));
    ok->setDefault(true);
    QObject::connect(ok, &QPushButton::clicked, page, [&view] { view.ok(); });
    layout->addWidget(ok, 0, Qt::AlignHCenter);
    return std::make_shared<QtContentView>(page);
}

std::shared_ptr<ContentView> makeAboutContentView(const tarnwick::AboutWindowView& view) {
    const auto drawing = view.draw();
    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("about"));
    auto* layout = new QHBoxLayout(content);
    layout->setContentsMargins(pagePadding, pagePadding, pagePadding, pagePadding);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(iconLabel(drawing.icon, appIconSize, content), 0, Qt::AlignVCenter);

    auto* column = centredColumn(aboutColumnSpacing);
    auto* heading = centredColumn(aboutHeadingSpacing);
    heading->addWidget(styledLabel(drawing.name, content), 0, Qt::AlignHCenter);
    heading->addWidget(styledLabel(drawing.versionLine, content), 0, Qt::AlignHCenter);
    column->addLayout(heading);
    column->addWidget(authorLabel(drawing.author, content), 0, Qt::AlignHCenter);
    column->addWidget(styledLabel(drawing.copyright, content), 0, Qt::AlignHCenter);
    layout->addLayout(column);
    return std::make_shared<QtContentView>(content);
}

QWidget* makeLocalAppWidget(const tarnwick::LocalAppView& view, QWidget* parent) {
    auto* row = new QWidget(parent);
    row->setObjectName(QStringLiteral("localApp"));
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    if (view.icon) {
        const QIcon icon = iconFor(*view.icon);
        if (!icon.isNull()) {
            auto* image = new QLabel(row);
            image->setPixmap(
                icon.pixmap(QSize(localAppIconSize, localAppIconSize), image->devicePixelRatioF()));
            layout->addWidget(image, 0, Qt::AlignVCenter);
        }
    }
    auto* name = new QLabel(QString::fromStdString(view.appName), row);
    name->setTextFormat(Qt::PlainText);
    layout->addWidget(name, 0, Qt::AlignVCenter);
    return row;
}

}  // namespace platform::qt
