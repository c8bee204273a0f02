#include "views/SettingsWindowWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "views/HiddenAppsWidget.h"
#include "views/PaintedIcon.h"
#include "views/QtContentView.h"
#include "views/RecorderControlWidget.h"
#include "views/ShortcutViewWidget.h"

namespace platform::qt {

namespace {

using tarnwick::SettingsWindowView;
using Part = SettingsWindowView::Part;

// The space a window keeps around its content, and a stack's own padding.
constexpr int scenePadding = 20;
constexpr int defaultPadding = 16;
constexpr int labelSpacing = 8;

QString text(const char* label) {
    return QString::fromLatin1(label);
}

// A label and its control on one line; the label names the control for a
// screen reader.
QWidget* labelledRow(const char* label, QWidget* control, QWidget* parent) {
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(labelSpacing);
    auto* name = new QLabel(text(label), row);
    name->setBuddy(control);
    layout->addWidget(name, 0, Qt::AlignVCenter);
    control->setParent(row);
    layout->addWidget(control, 0, Qt::AlignVCenter);
    layout->addStretch();
    return row;
}

QVBoxLayout* stackIn(QWidget* page, int spacing, int padding, Qt::Alignment alignment) {
    auto* layout = new QVBoxLayout(page);
    layout->setSpacing(spacing);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->setAlignment(alignment);
    return layout;
}

}  // namespace

SettingsWindowWidget::SettingsWindowWidget(SettingsWindowView& view, QWidget* parent)
    : QWidget(parent), view_(view) {
    setObjectName(QStringLiteral("settings"));
    const auto pages = view_.pages();
    if (view_.isTabbed()) {
        auto* layout = stackIn(this, 0, scenePadding, {});
        tabs_ = new QTabWidget(this);
        tabs_->setMinimumSize(SettingsWindowView::minimumWidth, SettingsWindowView::minimumHeight);
        for (const auto& page : pages) {
            const QString title = QString::fromStdString(page.tab->title);
            tabs_->addTab(makePage(page, tabs_),
                          symbolIcon(QString::fromStdString(page.tab->symbol)), title);
        }
        layout->addWidget(tabs_);
    } else {
        auto* layout = stackIn(this, 0, scenePadding, Qt::AlignHCenter);
        layout->addWidget(makePage(pages.front(), this), 0, Qt::AlignHCenter);
    }
    layout()->setSizeConstraint(QLayout::SetFixedSize);

    auto* closing = new QShortcut(QKeySequence::Close, this);
    connect(closing, &QShortcut::activated, this, [this] { window()->close(); });
    changes_ = view_.observeChanges([this] { redraw(); });
    redraw();
}

QWidget* SettingsWindowWidget::makePage(const SettingsWindowView::Page& page, QWidget* parent) {
    auto* content = new QWidget(parent);
    // Leading in a tab, centred in the one stack; the hidden applications'
    // box takes the whole width.
    const Qt::Alignment alignment = page.tab ? Qt::AlignLeft : Qt::AlignHCenter;
    auto* layout = page.tab ? stackIn(content, SettingsWindowView::tabStackSpacing, defaultPadding,
                                      Qt::AlignTop)
                            : stackIn(content, labelSpacing, 0, Qt::AlignTop);
    for (const auto part : page.parts) {
        layout->addWidget(makePart(part, content), 0,
                          part == Part::hiddenAppsGroup ? Qt::Alignment() : alignment);
    }
    return content;
}

QWidget* SettingsWindowWidget::makePart(Part part, QWidget* parent) {
    switch (part) {
        case Part::shortcutRow:
            return makeShortcutRow(parent);
        case Part::launchAtLoginRow:
            return makeLaunchAtLoginRow(parent);
        case Part::hiddenAppsGroup:
            return hiddenApps_ = new HiddenAppsWidget(view_, parent);
        case Part::automaticUpdatesSwitch:
            return makeAutomaticUpdatesSwitch(parent);
        case Part::releaseChannelPicker:
            return makeReleaseChannelRow(parent);
        case Part::checkNowButton:
            return makeCheckNowButton(parent);
    }
    return new QWidget(parent);
}

QWidget* SettingsWindowWidget::makeShortcutRow(QWidget* parent) {
    shortcutField_ = new ShortcutViewWidget(view_.shortcutView());
    auto* row = labelledRow(SettingsWindowView::activationShortcutLabel, shortcutField_, parent);
    row->findChild<QLabel*>()->setBuddy(shortcutField_->recorderControl());
    return row;
}

QWidget* SettingsWindowWidget::makeLaunchAtLoginRow(QWidget* parent) {
    launchAtLogin_ = new QCheckBox;
    launchAtLogin_->setAccessibleName(text(SettingsWindowView::launchAtLoginLabel));
    connect(launchAtLogin_, &QCheckBox::clicked, this,
            [this](bool checked) { view_.setLaunchesAtLogin(checked); });
    return labelledRow(SettingsWindowView::launchAtLoginLabel, launchAtLogin_, parent);
}

QWidget* SettingsWindowWidget::makeAutomaticUpdatesSwitch(QWidget* parent) {
    const QString label = text(SettingsWindowView::automaticUpdatesLabel);
    automaticUpdates_ = new QCheckBox(label, parent);
    automaticUpdates_->setAccessibleName(label);
    connect(automaticUpdates_, &QCheckBox::clicked, this,
            [this](bool checked) { view_.setAutomaticallyChecksForUpdates(checked); });
    return automaticUpdates_;
}

QWidget* SettingsWindowWidget::makeReleaseChannelRow(QWidget* parent) {
    channelPicker_ = new QComboBox;
    channelPicker_->setAccessibleName(text(SettingsWindowView::releaseChannelLabel));
    for (const auto& option : SettingsWindowView::channelOptions())
        channelPicker_->addItem(QString::fromStdString(option.title));
    connect(channelPicker_, &QComboBox::activated, this,
            [this](int option) { view_.selectChannel(static_cast<std::size_t>(option)); });
    return labelledRow(SettingsWindowView::releaseChannelLabel, channelPicker_, parent);
}

QWidget* SettingsWindowWidget::makeCheckNowButton(QWidget* parent) {
    const QString label = text(SettingsWindowView::checkNowLabel);
    checkNow_ = new QPushButton(label, parent);
    checkNow_->setAccessibleName(label);
    connect(checkNow_, &QPushButton::clicked, this, [this] { view_.checkNow(); });
    return checkNow_;
}

void SettingsWindowWidget::redraw() {
    if (shortcutField_)
        shortcutField_->updateView(view_.shortcutView());
    if (launchAtLogin_) {
        launchAtLogin_->setChecked(view_.launchesAtLogin());
        setLaunchSwitchEnabled(view_.canChangeLaunchAtLogin());
    }
    if (hiddenApps_)
        hiddenApps_->redraw();
    if (automaticUpdates_)
        automaticUpdates_->setChecked(view_.automaticallyChecksForUpdates());
    if (channelPicker_) {
        const auto selected = view_.selectedChannel();
        channelPicker_->setCurrentIndex(selected ? static_cast<int>(*selected) : -1);
    }
}

// Disabling the focused switch would send the focus on to the next control;
// it comes back when the switch is enabled again, so that a person on the
// keyboard stays where they were.
void SettingsWindowWidget::setLaunchSwitchEnabled(bool enabled) {
    if (enabled == launchAtLogin_->isEnabled())
        return;
    if (!enabled)
        launchSwitchHadFocus_ = launchAtLogin_->hasFocus();
    launchAtLogin_->setEnabled(enabled);
    if (enabled && std::exchange(launchSwitchHadFocus_, false))
        launchAtLogin_->setFocus();
}

// Return and Enter press what Space presses; the controls leave them to
// their window, where nothing else takes them.
void SettingsWindowWidget::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QWidget* focused = focusWidget();
    if (isReturn && event->modifiers() == Qt::NoModifier && focused) {
        if (auto* button = qobject_cast<QAbstractButton*>(focused)) {
            button->animateClick();
            return;
        }
        if (auto* picker = qobject_cast<QComboBox*>(focused)) {
            picker->showPopup();
            return;
        }
    }
    QWidget::keyPressEvent(event);
}

std::shared_ptr<ContentView> makeSettingsContentView(SettingsWindowView& view) {
    return std::make_shared<QtContentView>(new SettingsWindowWidget(view));
}

}  // namespace platform::qt
