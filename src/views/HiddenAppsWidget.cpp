#include "views/HiddenAppsWidget.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "views/FirstRunContentViews.h"

namespace platform::qt {

namespace {

constexpr int appRowSpacing = 6;

std::vector<std::string> identifiersOf(
    const std::vector<tarnwick::SettingsWindowView::HiddenAppRow>& rows) {
    std::vector<std::string> identifiers;
    for (const auto& row : rows)
        identifiers.push_back(row.bundleIdentifier);
    return identifiers;
}

}  // namespace

HiddenAppsWidget::HiddenAppsWidget(tarnwick::SettingsWindowView& view, QWidget* parent)
    : QWidget(parent),
      view_(view),
      disclosure_(new QToolButton(this)),
      list_(new QGroupBox(this)),
      rows_(new QVBoxLayout(list_)) {
    setObjectName(QStringLiteral("hiddenApps"));
    const QString title = QString::fromLatin1(tarnwick::SettingsWindowView::hiddenAppsLabel);
    disclosure_->setText(title);
    disclosure_->setAccessibleName(title);
    disclosure_->setAutoRaise(true);
    disclosure_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    disclosure_->setFocusPolicy(Qt::StrongFocus);
    list_->setObjectName(QStringLiteral("hiddenAppsList"));
    list_->setAccessibleName(title);
    list_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    rows_->setSpacing(appRowSpacing);
    rows_->setAlignment(Qt::AlignHCenter);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(disclosure_, 0, Qt::AlignLeft);
    layout->addWidget(list_);
    connect(disclosure_, &QToolButton::clicked, this, [this] { setOpen(!isOpen()); });
    setOpen(false);
    redraw();
}

bool HiddenAppsWidget::isOpen() const {
    return !list_->isHidden();
}

void HiddenAppsWidget::setOpen(bool open) {
    disclosure_->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
    list_->setVisible(open);
    disclosure_->setAccessibleDescription(open ? QStringLiteral("expanded")
                                               : QStringLiteral("collapsed"));
}

void HiddenAppsWidget::redraw() {
    const auto rows = view_.hiddenAppRows();
    auto identifiers = identifiersOf(rows);
    if (identifiers == shown_)
        return;
    // Later, as a row's own button may have asked for this.
    while (auto* item = rows_->takeAt(0)) {
        if (auto* line = item->widget()) {
            line->hide();
            line->deleteLater();
        }
        delete item;
    }
    for (const auto& row : rows)
        addRow(row);
    shown_ = std::move(identifiers);
}

void HiddenAppsWidget::addRow(const tarnwick::SettingsWindowView::HiddenAppRow& row) {
    auto* line = new QWidget(list_);
    line->setObjectName(QStringLiteral("hiddenApp"));
    line->setAccessibleName(QString::fromStdString(row.app.appName));
    auto* layout = new QHBoxLayout(line);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(makeLocalAppWidget(row.app, line), 0, Qt::AlignVCenter);
    layout->addStretch();
    const QString unhide = QString::fromLatin1(tarnwick::SettingsWindowView::unhideLabel);
    auto* button = new QPushButton(unhide, line);
    button->setAccessibleName(unhide);
    button->setAccessibleDescription(QString::fromStdString(row.app.appName));
    connect(button, &QPushButton::clicked, this,
            [this, identifier = row.bundleIdentifier] { view_.unhide(identifier); });
    layout->addWidget(button, 0, Qt::AlignVCenter);
    rows_->addWidget(line);
}

std::vector<QPushButton*> HiddenAppsWidget::unhideButtons() const {
    std::vector<QPushButton*> buttons;
    for (int i = 0; i < rows_->count(); ++i) {
        if (auto* line = rows_->itemAt(i)->widget())
            buttons.push_back(line->findChild<QPushButton*>());
    }
    return buttons;
}

}  // namespace platform::qt
