#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTextBrowser>
#include <cstdlib>
#include <set>

#include "QtTestSupport.h"
#include "views/QtUpdateUserDriver.h"
#include "views/UpdateFoundDialog.h"
#include "views/UpdateProgressDialog.h"

// The updater's dialogues as drawn. With TARNWICK_SCREENSHOTS set to a
// folder, pictures of them are saved there to be looked at.
namespace {

using platform::qt::QtUpdateUserDriver;
using platform::qt::UpdateFoundDialog;
using platform::update::ReleaseNotes;
using platform::update::UpdateChoice;
using platform::update::UpdateFoundAlert;

using viewtest::saveScreenshot;

UpdateFoundAlert alertWith(ReleaseNotes notes, bool canSkip = true) {
    return {"Tarnwick 1.1 is available", "You have version 1.0. Would you like to install it now?",
            std::move(notes), "Install Update", canSkip};
}

// The controls of a window that a screen reader would read without a name:
// every visible widget that takes the focus, and every picture.
QStringList unnamedControls(QWidget& window) {
    QStringList unnamed;
    for (auto* widget : window.findChildren<QWidget*>()) {
        const auto* label = qobject_cast<QLabel*>(widget);
        const bool picture = label && label->text().isEmpty();
        if (!widget->isVisible() || (widget->focusPolicy() == Qt::NoFocus && !picture))
            continue;
        if (QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name).isEmpty())
            unnamed << QString::fromLatin1(widget->metaObject()->className());
    }
    return unnamed;
}

}  // namespace

TEST(UpdateDialogsTest, EveryControlOfEveryUpdateWindowHasAName) {
    QtUpdateUserDriver driver;
    const auto expectAllNamed = [&](const char* which) {
        ASSERT_TRUE(driver.openDialogue()) << which;
        EXPECT_EQ(unnamedControls(*driver.openDialogue()), QStringList()) << which;
    };
    driver.showUpdateFound(alertWith({ReleaseNotes::Format::plainText, "Faster."}), {});
    expectAllNamed("new version");
    driver.showUpdateNotFound({"You're up to date!", "Tarnwick 1.0 is the newest version."}, {});
    expectAllNamed("up to date");
    driver.showAutomaticChecksQuestion({"Check for updates automatically?", "Once a day?"}, {});
    expectAllNamed("question");
    driver.showUpdaterError("The update server couldn't be reached.", {});
    expectAllNamed("error");
    driver.showDownloadStarted({});
    driver.showDownloadProgress(10, 100);
    expectAllNamed("download");
    driver.showInstalling();
    expectAllNamed("installation");
}

TEST(UpdateDialogsTest, TheNewVersionDialogueRendersItsNotesAndAnswersOnce) {
    std::vector<UpdateChoice> answers;
    auto* dialogue = new UpdateFoundDialog(
        alertWith({ReleaseNotes::Format::markdown,
                   "## What's new\n\n* **Faster** panel\n* Fixed [a crash](https://e.org)\n"
                   "![tracker](https://tracker.example/pixel.png)"}),
        [&](UpdateChoice choice) { answers.push_back(choice); });
    dialogue->show();
    saveScreenshot(*dialogue, "update-found.png");

    // Markdown is rendered, not shown as marks, and the picture is never
    // fetched: the notes draw only their own text.
    const auto document = dialogue->releaseNotes()->document();
    EXPECT_EQ(document->toPlainText().left(10), QStringLiteral("What's new"));
    EXPECT_TRUE(document->toHtml().contains(QStringLiteral("font-weight:700")));
    EXPECT_EQ(dialogue->installButton()->accessibleName(), QStringLiteral("Install Update"));
    EXPECT_EQ(dialogue->remindButton()->text(), QStringLiteral("Remind Me Later"));
    EXPECT_TRUE(dialogue->skipButton()->isVisible());

    dialogue->skipButton()->click();
    EXPECT_FALSE(dialogue->isVisible());
    // A second click or a close after the answer changes nothing.
    dialogue->installButton()->click();
    dialogue->reject();
    EXPECT_EQ(answers, (std::vector<UpdateChoice>{UpdateChoice::skip}));
}

TEST(UpdateDialogsTest, ClosingIsRemindMeLaterAndACriticalUpdateHasNoSkip) {
    std::vector<UpdateChoice> answers;
    auto* dialogue = new UpdateFoundDialog(
        alertWith({ReleaseNotes::Format::html, "<p>Fixes <b>security</b> issues.</p>"}, false),
        [&](UpdateChoice choice) { answers.push_back(choice); });
    dialogue->show();
    EXPECT_FALSE(dialogue->skipButton()->isVisible());
    EXPECT_EQ(dialogue->releaseNotes()->toPlainText(), QStringLiteral("Fixes security issues."));
    dialogue->close();
    EXPECT_EQ(answers, (std::vector<UpdateChoice>{UpdateChoice::remindLater}));

    // Plain text stays plain: no mark-up is read into it, and without notes
    // there is no notes area.
    UpdateFoundDialog plain(alertWith({ReleaseNotes::Format::plainText, "<b>not bold</b>"}), {});
    EXPECT_EQ(plain.releaseNotes()->toPlainText(), QStringLiteral("<b>not bold</b>"));
    UpdateFoundDialog bare(alertWith({}), {});
    EXPECT_EQ(bare.releaseNotes(), nullptr);
}

TEST(UpdateDialogsTest, TheProgressWindowCountsBytesAndCancelsOnlyTheDownload) {
    QtUpdateUserDriver driver;
    int cancels = 0;
    driver.showDownloadStarted([&] { ++cancels; });
    auto* progress = dynamic_cast<platform::qt::UpdateProgressDialog*>(driver.openDialogue());
    ASSERT_TRUE(progress);
    driver.showDownloadProgress(1'500'000, 6'000'000);
    EXPECT_EQ(progress->bar()->value(), 250);
    EXPECT_EQ(progress->status()->text(), QStringLiteral("Downloading update… 1.5 MB of 6.0 MB"));
    saveScreenshot(*progress, "update-progress.png");

    driver.showInstalling();
    EXPECT_FALSE(progress->cancelButton()->isEnabled());
    progress->reject();
    EXPECT_EQ(cancels, 0);
    EXPECT_TRUE(progress->isVisible());

    driver.showDownloadStarted([&] { ++cancels; });
    auto* second = dynamic_cast<platform::qt::UpdateProgressDialog*>(driver.openDialogue());
    second->cancelButton()->click();
    EXPECT_EQ(cancels, 1);
    EXPECT_FALSE(second->isVisible());
    // The updater closes it too, after the cancel: that is harmless.
    driver.dismissProgress();
}

TEST(UpdateDialogsTest, MessagesCarryTheirTextsAndTheirAnswer) {
    QtUpdateUserDriver driver;
    std::vector<bool> answers;
    driver.showAutomaticChecksQuestion(
        {"Check for updates automatically?", "Should Tarnwick look for a new version once a day?"},
        [&](bool yes) { answers.push_back(yes); });
    auto* question = qobject_cast<QMessageBox*>(driver.openDialogue());
    ASSERT_TRUE(question);
    EXPECT_EQ(question->text(), QStringLiteral("Check for updates automatically?"));
    std::set<QString> names;
    for (auto* button : question->buttons())
        names.insert(button->text());
    EXPECT_EQ(names, (std::set<QString>{QStringLiteral("Check Automatically"),
                                        QStringLiteral("Don't Check")}));
    saveScreenshot(*question, "update-question.png");
    static_cast<QPushButton*>(question->defaultButton())->click();
    EXPECT_EQ(answers, (std::vector<bool>{true}));

    int acknowledged = 0;
    driver.showUpdaterError("The update's signature isn't valid, so it wasn't installed.",
                            [&] { ++acknowledged; });
    auto* error = qobject_cast<QMessageBox*>(driver.openDialogue());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->informativeText(),
              QStringLiteral("The update's signature isn't valid, so it wasn't installed."));
    saveScreenshot(*error, "update-error.png");
    error->close();
    EXPECT_EQ(acknowledged, 1);
}
