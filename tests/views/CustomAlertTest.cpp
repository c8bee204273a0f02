#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <cstdlib>
#include <string>
#include <vector>

#include "views/CustomAlert.h"
#include "views/QtContentView.h"
#include "views/QtTestSupport.h"

using platform::qt::createAlert;
using platform::qt::CustomAlert;
using quillbox::Alert;

namespace {

using viewtest::saveScreenshot;

QPushButton* buttonTitled(CustomAlert& box, const QString& title) {
    for (auto* button : box.buttons()) {
        if (button->text() == title)
            return qobject_cast<QPushButton*>(button);
    }
    return nullptr;
}

// Shows the box and presses the key where a person's key press goes: the
// box's focused control, which hands on what it doesn't take.
void press(CustomAlert& box, Qt::Key key) {
    box.show();
    ASSERT_TRUE(viewtest::runQtUntil([&] { return box.isVisible(); }));
    QWidget* target = box.focusWidget() ? box.focusWidget() : &box;
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(target, &down);
    QApplication::sendEvent(target, &up);
    viewtest::runQtFor(50);
}

}  // namespace

TEST(CustomAlert, ButtonsRunTheirOwnActionsEvenWithEqualTitles) {
    std::vector<std::string> ran;
    Alert alert("Replace the file?", "A file with this name already exists.",
                {Alert::Action("Replace", false, [&] { ran.push_back("first"); }),
                 Alert::Action("Replace", false, [&] { ran.push_back("second"); })});
    EXPECT_NE(alert.actions[0], alert.actions[1]);
    auto box = createAlert(alert);
    EXPECT_EQ(box->text(), "Replace the file?");
    EXPECT_EQ(box->informativeText(), "A file with this name already exists.");
    ASSERT_EQ(box->buttons().size(), 2);
    box->show();
    for (auto* button : box->buttons()) {
        if (box->actions().at(button) == alert.actions[1])
            button->click();
    }
    EXPECT_EQ(ran, (std::vector<std::string>{"second"}));
    EXPECT_FALSE(box->isVisible()) << "a button ends the alert";
}

TEST(CustomAlert, ReturnAnswersOnlyADefaultButton) {
    int cancelled = 0;
    int saved = 0;
    Alert noDefault("Quit?", "Unsaved changes will be lost.",
                    {Alert::Action("Cancel", false, [&] { ++cancelled; }),
                     Alert::Action("Save", false, [&] { ++saved; })});
    auto box = createAlert(noDefault);
    press(*box, Qt::Key_Return);
    press(*box, Qt::Key_Enter);
    EXPECT_EQ(cancelled + saved, 0);
    EXPECT_TRUE(box->isVisible());
    press(*box, Qt::Key_Escape);
    EXPECT_FALSE(box->isVisible()) << "Escape closes without an answer";
    EXPECT_EQ(cancelled + saved, 0);

    auto withDefault = createAlert(noDefault.with([](Alert& a) { a.actions[1].isDefault = true; }));
    EXPECT_EQ(withDefault->defaultButton(), buttonTitled(*withDefault, "Save"));
    press(*withDefault, Qt::Key_Return);
    EXPECT_EQ(saved, 1);
    EXPECT_EQ(cancelled, 0);

    // Several defaults: the toolkit keeps one, the last set.
    auto both = createAlert(noDefault.with([](Alert& a) {
        for (auto& action : a.actions)
            action.isDefault = true;
    }));
    EXPECT_EQ(both->defaultButton(), buttonTitled(*both, "Save"));
    EXPECT_FALSE(buttonTitled(*both, "Cancel")->isDefault());
}

TEST(CustomAlert, AnAlertWithoutActionsGetsTheToolkitsButton) {
    auto box = createAlert(Alert("Done", "The export finished.", {}));
    box->show();
    ASSERT_EQ(box->buttons().size(), 1);
    EXPECT_TRUE(box->actions().empty());
    box->buttons().front()->click();
    EXPECT_FALSE(box->isVisible());
}

TEST(CustomAlert, ShowsSeverityIconAndAccessoryView) {
    auto* note = new QCheckBox("Also delete the backups");
    note->setAccessibleName("Also delete the backups");
    auto alert =
        Alert("Delete “Quarterly Report”?", "This can't be undone.",
              {Alert::Action("Cancel", false, [] {}), Alert::Action("Delete", true, [] {})})
            .with([&](Alert& a) {
                a.severity = Alert::Style::critical;
                a.accessoryView = std::make_shared<platform::qt::QtContentView>(note);
            });
    auto box = createAlert(alert);
    EXPECT_EQ(box->icon(), QMessageBox::Critical);
    EXPECT_EQ(note->parentWidget(), box.get());
    box->show();
    ASSERT_TRUE(viewtest::runQtUntil([&] { return box->isVisible(); }));
    EXPECT_TRUE(note->isVisible());
    const auto buttonsTop = buttonTitled(*box, "Delete")->mapTo(box.get(), QPoint(0, 0)).y();
    EXPECT_LT(note->mapTo(box.get(), QPoint(0, 0)).y(), buttonsTop)
        << "the accessory stands above the buttons";
    EXPECT_EQ(box->accessibleName(), "Delete “Quarterly Report”?");
    saveScreenshot(*box, "alert-critical-with-accessory.png");

    auto informational = createAlert(
        Alert("Update available", "Version 2.0 is ready.",
              {Alert::Action("Later", false, [] {}), Alert::Action("Install", true, [] {})})
            .with([](Alert& a) { a.severity = Alert::Style::informational; }));
    informational->show();
    ASSERT_TRUE(viewtest::runQtUntil([&] { return informational->isVisible(); }));
    saveScreenshot(*informational, "alert-informational.png");
}
