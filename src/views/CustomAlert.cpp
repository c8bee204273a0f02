#include "views/CustomAlert.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include "views/QtContentView.h"
#include "views/QtImages.h"

namespace platform::qt {

namespace {

QMessageBox::Icon standardIconFor(quillbox::Alert::Style style) {
    switch (style) {
        case quillbox::Alert::Style::warning:
            return QMessageBox::Warning;
        case quillbox::Alert::Style::informational:
            return QMessageBox::Information;
        case quillbox::Alert::Style::critical:
            return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

// Between the texts and the buttons, across the whole box. The box lays its
// texts out anew whenever they or the icon change, so this comes after them.
void insertAccessory(QMessageBox& box, QWidget* accessory) {
    auto* grid = qobject_cast<QGridLayout*>(box.layout());
    auto* buttons = box.findChild<QDialogButtonBox*>();
    if (!grid || !buttons)
        return;
    grid->removeWidget(buttons);
    const int row = grid->rowCount();
    grid->addWidget(accessory, row, 0, 1, grid->columnCount());
    grid->addWidget(buttons, row + 1, 0, 1, grid->columnCount());
}

constexpr int alertIconSize = 64;

// What a screen reader says for the box's picture: its kind, or for an
// alert's own icon simply that it is one.
QString iconName(const quillbox::Alert& alert) {
    if (alert.icon || !alert.severity)
        return QStringLiteral("Icon");
    switch (*alert.severity) {
        case quillbox::Alert::Style::warning:
            return QStringLiteral("Warning");
        case quillbox::Alert::Style::informational:
            return QStringLiteral("Information");
        case quillbox::Alert::Style::critical:
            return QStringLiteral("Critical");
    }
    return QStringLiteral("Icon");
}

}  // namespace

CustomAlert::CustomAlert(QWidget* parent) : QMessageBox(parent) {}

QPushButton* CustomAlert::addButtonWithTitle(const quillbox::Alert::Action& action) {
    auto* button = addButton(QString::fromStdString(action.title), QMessageBox::ActionRole);
    // A push button in a dialogue answers Return while it has the focus
    // unless told otherwise; only a default action may.
    button->setAutoDefault(false);
    if (action.isDefault)
        setDefaultButton(button);
    connect(button, &QPushButton::clicked, this, [this, button] { runAction(button); });
    actions_.emplace(button, action);
    return button;
}

void CustomAlert::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        reject();
        return;
    }
    QMessageBox::keyPressEvent(event);
}

void CustomAlert::runAction(QAbstractButton* sender) {
    const auto found = actions_.find(sender);
    if (found != actions_.end() && found->second.action)
        found->second.action();
}

std::unique_ptr<CustomAlert> createAlert(const quillbox::Alert& alert, QWidget* parent) {
    auto box = std::make_unique<CustomAlert>(parent);
    box->setWindowTitle(QString::fromStdString(alert.title));
    box->setText(QString::fromStdString(alert.title));
    box->setInformativeText(QString::fromStdString(alert.message));
    box->setAccessibleName(QString::fromStdString(alert.title));
    box->setAccessibleDescription(QString::fromStdString(alert.message));
    if (alert.severity)
        box->setIcon(standardIconFor(*alert.severity));
    if (alert.icon)
        box->setIconPixmap(iconFor(*alert.icon).pixmap(alertIconSize, alertIconSize));
    if (auto* picture = box->findChild<QLabel*>(QStringLiteral("qt_msgboxex_icon_label")))
        picture->setAccessibleName(iconName(alert));
    if (const auto* view = dynamic_cast<const QtContentView*>(alert.accessoryView.get());
        view && view->widget()) {
        insertAccessory(*box, view->widget());
    }
    for (const auto& action : alert.actions)
        box->addButtonWithTitle(action);
    return box;
}

}  // namespace platform::qt
