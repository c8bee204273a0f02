#include "views/QtUpdateUserDriver.h"

#include <QDesktopServices>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

#include "views/UpdateFoundDialog.h"
#include "views/UpdateProgressDialog.h"

namespace platform::qt {

namespace {

QString text(const std::string& value) {
    return QString::fromStdString(value);
}

// A message with one or two answers; the reply gets whether the first was
// chosen. Closing it answers as the last button does.
QMessageBox* messageBox(QMessageBox::Icon icon, const QString& title, const QString& message,
                        const std::vector<QString>& buttons, std::function<void(bool)> reply) {
    auto* box = new QMessageBox(icon, QStringLiteral("Software Update"), title);
    box->setInformativeText(message);
    // A sentence reads on two or three lines, not down a narrow column.
    if (auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        label->setMinimumWidth(320);
    box->setAttribute(Qt::WA_DeleteOnClose);
    std::vector<QAbstractButton*> made;
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        auto* button =
            box->addButton(buttons[i], i == 0 ? QMessageBox::AcceptRole : QMessageBox::RejectRole);
        button->setAccessibleName(buttons[i]);
        made.push_back(button);
    }
    box->setDefaultButton(static_cast<QPushButton*>(made.front()));
    box->setEscapeButton(made.back());
    QObject::connect(box, &QMessageBox::finished, box,
                     [box, first = made.front(), reply = std::move(reply)] {
                         if (reply)
                             reply(box->clickedButton() == first);
                     });
    return box;
}

}  // namespace

QtUpdateUserDriver::~QtUpdateUserDriver() {
    delete current_.data();
    delete progress_.data();
}

void QtUpdateUserDriver::present(QWidget* dialogue) {
    if (current_ && current_ != dialogue)
        current_->deleteLater();
    current_ = dialogue;
    dialogue->show();
    bringToFront();
}

void QtUpdateUserDriver::showUpdateFound(const update::UpdateFoundAlert& alert,
                                         std::function<void(update::UpdateChoice)> reply) {
    present(new UpdateFoundDialog(alert, std::move(reply)));
}

void QtUpdateUserDriver::showUpdateNotFound(const update::MessageAlert& alert,
                                            std::function<void()> acknowledgement) {
    present(messageBox(
        QMessageBox::Information, text(alert.title), text(alert.message), {QStringLiteral("OK")},
        [acknowledgement = std::move(acknowledgement)](bool) { acknowledgement(); }));
}

void QtUpdateUserDriver::showUpdaterError(const std::string& message,
                                          std::function<void()> acknowledgement) {
    present(
        messageBox(QMessageBox::Warning, QString::fromUtf8(update::errorTitle), text(message),
                   {QStringLiteral("OK")},
                   [acknowledgement = std::move(acknowledgement)](bool) { acknowledgement(); }));
}

void QtUpdateUserDriver::showAutomaticChecksQuestion(const update::MessageAlert& question,
                                                     std::function<void(bool)> reply) {
    present(messageBox(QMessageBox::Question, text(question.title), text(question.message),
                       {QStringLiteral("Check Automatically"), QStringLiteral("Don't Check")},
                       std::move(reply)));
}

void QtUpdateUserDriver::showDownloadStarted(std::function<void()> cancel) {
    auto* dialogue = new UpdateProgressDialog(std::move(cancel));
    progress_ = dialogue;
    present(dialogue);
}

void QtUpdateUserDriver::showDownloadProgress(std::uint64_t received, std::uint64_t expected) {
    if (progress_)
        progress_->setProgress(received, expected);
}

void QtUpdateUserDriver::showInstalling() {
    if (progress_)
        progress_->showInstalling();
}

void QtUpdateUserDriver::dismissProgress() {
    if (progress_)
        progress_->dismiss();
}

void QtUpdateUserDriver::bringToFront() {
    if (!current_)
        return;
    current_->raise();
    current_->activateWindow();
}

void QtUpdateUserDriver::openURL(const std::string& url) {
    QDesktopServices::openUrl(QUrl(text(url)));
}

}  // namespace platform::qt
