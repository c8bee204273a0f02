#include "views/QtUpdateUserDriver.h"

#include <QDesktopServices>
#include <QLabel>
#include <QUrl>

#include "views/CustomAlert.h"
#include "views/UpdateFoundDialog.h"
#include "views/UpdateProgressDialog.h"

namespace platform::qt {

namespace {

QString text(const std::string& value) {
    return QString::fromStdString(value);
}

quillbox::Alert::Action okAction() {
    return {"OK", true, {}};
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

// However an alert is closed, by a button, Escape or the window's close
// box, the updater hears of it once.
void QtUpdateUserDriver::presentAlert(quillbox::Alert alert, quillbox::Alert::Style severity,
                                      std::function<void()> onClose) {
    alert.severity = severity;
    auto* box = createAlert(alert).release();
    box->setAttribute(Qt::WA_DeleteOnClose);
    // A sentence reads on two or three lines, not down a narrow column.
    if (auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
        label->setMinimumWidth(320);
    if (onClose)
        QObject::connect(box, &QDialog::finished, box,
                         [onClose = std::move(onClose)] { onClose(); });
    present(box);
}

void QtUpdateUserDriver::showUpdateNotFound(const update::MessageAlert& alert,
                                            std::function<void()> acknowledgement) {
    presentAlert({alert.title, alert.message, {okAction()}}, quillbox::Alert::Style::informational,
                 std::move(acknowledgement));
}

void QtUpdateUserDriver::showUpdaterError(const std::string& message,
                                          std::function<void()> acknowledgement) {
    presentAlert({update::errorTitle, message, {okAction()}}, quillbox::Alert::Style::warning,
                 std::move(acknowledgement));
}

// Closed without an answer, the question comes again at the next launch.
void QtUpdateUserDriver::showAutomaticChecksQuestion(const update::MessageAlert& question,
                                                     std::function<void(bool)> reply) {
    presentAlert({question.title,
                  question.message,
                  {{"Check Automatically", true, [reply] { reply(true); }},
                   {"Don't Check", false, [reply] { reply(false); }}}},
                 quillbox::Alert::Style::informational, {});
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
