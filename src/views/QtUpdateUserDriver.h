#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/update/UserDriver.h"
#include "support/Alert.h"

namespace platform::qt {

class UpdateProgressDialog;

// The updater's dialogues as Qt windows. None of them is modal: the program
// keeps running while one is open, and each reply arrives from its button.
class QtUpdateUserDriver final : public update::UserDriver {
  public:
    QtUpdateUserDriver() = default;
    ~QtUpdateUserDriver() override;
    QtUpdateUserDriver(const QtUpdateUserDriver&) = delete;
    QtUpdateUserDriver& operator=(const QtUpdateUserDriver&) = delete;

    void showUpdateFound(const update::UpdateFoundAlert& alert,
                         std::function<void(update::UpdateChoice)> reply) override;
    void showUpdateNotFound(const update::MessageAlert& alert,
                            std::function<void()> acknowledgement) override;
    void showUpdaterError(const std::string& message,
                          std::function<void()> acknowledgement) override;
    void showAutomaticChecksQuestion(const update::MessageAlert& question,
                                     std::function<void(bool)> reply) override;
    void showDownloadStarted(std::function<void()> cancel) override;
    void showDownloadProgress(std::uint64_t received, std::uint64_t expected) override;
    void showInstalling() override;
    void dismissProgress() override;
    void bringToFront() override;
    void openURL(const std::string& url) override;

    // The dialogue open now, if any.
    QWidget* openDialogue() const { return current_; }

  private:
    void present(QWidget* dialogue);
    void presentAlert(quillbox::Alert alert, quillbox::Alert::Style severity,
                      std::function<void()> onClose);

    QPointer<QWidget> current_;
    QPointer<UpdateProgressDialog> progress_;
};

}  // namespace platform::qt
