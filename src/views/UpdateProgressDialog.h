#pragma once

#include <QDialog>
#include <cstdint>
#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace platform::qt {

// The download's progress, with Cancel; then the installation, which can't
// be stopped half-way and shows a bar without end.
class UpdateProgressDialog final : public QDialog {
  public:
    explicit UpdateProgressDialog(std::function<void()> cancel);

    void setProgress(std::uint64_t received, std::uint64_t expected);
    void showInstalling();
    // Closes it without a word to anyone.
    void dismiss();

    QLabel* status() const { return status_; }
    QProgressBar* bar() const { return bar_; }
    QPushButton* cancelButton() const { return cancelButton_; }

    void reject() override;

  private:
    std::function<void()> cancel_;
    QLabel* status_ = nullptr;
    QProgressBar* bar_ = nullptr;
    QPushButton* cancelButton_ = nullptr;
};

}  // namespace platform::qt
