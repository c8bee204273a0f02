#pragma once

#include <QDialog>
#include <functional>

#include "platform/update/UpdateAlerts.h"
#include "platform/update/UserDriver.h"

class QPushButton;
class QTextBrowser;

namespace platform::qt {

// "A new version is available": the version, the release notes rendered in
// their format, and the three answers. Closing the window is "Remind Me
// Later". The reply is given once.
class UpdateFoundDialog final : public QDialog {
  public:
    using Reply = std::function<void(update::UpdateChoice)>;

    UpdateFoundDialog(const update::UpdateFoundAlert& alert, Reply reply);

    QPushButton* installButton() const { return install_; }
    QPushButton* remindButton() const { return remind_; }
    QPushButton* skipButton() const { return skip_; }
    QTextBrowser* releaseNotes() const { return notes_; }

    // Escape and the window's close button.
    void reject() override { answer(update::UpdateChoice::remindLater); }

  private:
    void answer(update::UpdateChoice choice);

    Reply reply_;
    QPushButton* install_ = nullptr;
    QPushButton* remind_ = nullptr;
    QPushButton* skip_ = nullptr;
    QTextBrowser* notes_ = nullptr;
};

// Shows release notes in the format they were written in. Nothing is ever
// loaded from outside for them (images, style sheets): only their own text
// is drawn, and a link opens in the browser.
void showReleaseNotes(QTextBrowser& view, const update::ReleaseNotes& notes);

}  // namespace platform::qt
