#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>
#include <memory>
#include <string>
#include <vector>

#include "views/QtApplication.h"
#include "views/QtImages.h"
#include "views/QtMenus.h"
#include "views/QtStatusBar.h"
#include "views/QtToolkit.h"

using namespace platform;
using platform::qt::keySequenceFor;

namespace {

QStringList titlesOf(const QMenu& menu) {
    QStringList titles;
    for (const QAction* action : menu.actions()) {
        titles << (action->isSeparator() ? QStringLiteral("-") : action->text());
    }
    return titles;
}

void showMenu(QMenu& menu) {
    Q_EMIT menu.aboutToShow();
}

}  // namespace

TEST(QtMenus, KeyEquivalentsUseQtsPortableModifiers) {
    auto quit = MenuItem::make("Quit", "q");
    EXPECT_EQ(keySequenceFor(*quit), QKeySequence(Qt::CTRL | Qt::Key_Q));
    auto settings = MenuItem::make("Settings", ",");
    EXPECT_EQ(keySequenceFor(*settings), QKeySequence(Qt::CTRL | Qt::Key_Comma));
    auto capital = MenuItem::make("Shifted", "Q");
    capital->setKeyEquivalentModifierMask(modifier::command | modifier::option);
    EXPECT_EQ(keySequenceFor(*capital), QKeySequence(Qt::CTRL | Qt::ALT | Qt::SHIFT | Qt::Key_Q));
    auto control = MenuItem::make("Control", "k");
    control->setKeyEquivalentModifierMask(modifier::control);
    EXPECT_EQ(keySequenceFor(*control), QKeySequence(Qt::META | Qt::Key_K));
    EXPECT_TRUE(keySequenceFor(*MenuItem::make("About")).isEmpty());
}

TEST(QtMenus, AQtMenuShowsTheProgramsMenuAsItStandsWhenOpened) {
    auto menu = Menu::make();
    QMenu qtMenu;
    platform::qt::followMenu(qtMenu, menu);

    // Items added after the menu was handed over still show.
    std::vector<std::string> chosen;
    menu->addItem(MenuItem::make("About", "", [&] { chosen.push_back("About"); }));
    menu->addItem(MenuItem::separatorItem());
    auto more = MenuItem::make("More");
    auto submenu = Menu::make("More");
    submenu->addItem(MenuItem::make("Deeper", "", [&] { chosen.push_back("Deeper"); }));
    more->setSubmenu(submenu);
    menu->addItem(more);
    menu->addItem(MenuItem::make("Quit", "q", [&] { chosen.push_back("Quit"); }));

    showMenu(qtMenu);
    ASSERT_EQ(titlesOf(qtMenu), (QStringList{"About", "-", "More", "Quit"}));
    qtMenu.actions().at(3)->trigger();
    qtMenu.actions().at(0)->trigger();
    QMenu* qtSubmenu = qtMenu.actions().at(2)->menu();
    ASSERT_NE(qtSubmenu, nullptr);
    showMenu(*qtSubmenu);
    qtSubmenu->actions().at(0)->trigger();
    EXPECT_EQ(chosen, (std::vector<std::string>{"Quit", "About", "Deeper"}));

    showMenu(qtMenu);  // filled anew, not appended to
    EXPECT_EQ(qtMenu.actions().size(), 4);
}

TEST(QtStatusBar, ItemHasAButtonItsMenuFollowsTheProgramsAndImagesComeFromOurResources) {
    platform::qt::QtStatusBar bar;
    auto item = bar.statusItemWithLength(variableStatusItemLength);
    ASSERT_NE(item->button(), nullptr);
    EXPECT_FALSE(static_cast<platform::qt::QtStatusItem&>(*item).trayIcon().icon().isNull());
    item->button()->setImage(Image::resource("StatusBarIcon"));

    auto menu = Menu::make();
    item->setMenu(menu);
    menu->addItem(MenuItem::make("Settings", ","));
    EXPECT_EQ(item->menu(), menu);
    auto* qtMenu = static_cast<platform::qt::QtStatusItem&>(*item).qtMenu();
    ASSERT_NE(qtMenu, nullptr);
    showMenu(*qtMenu);
    EXPECT_EQ(titlesOf(*qtMenu), QStringList{"Settings"});

    EXPECT_FALSE(platform::qt::iconFor(Image::resource("StatusBarIcon")).isNull());
    EXPECT_TRUE(platform::qt::iconFor(Image::resource("NoSuchImage")).isNull());
    EXPECT_TRUE(platform::qt::iconFor(Image::file("/nonexistent/icon.png")).isNull());
}

TEST(QtApplication, PolicyIsKeptAndTerminateEndsTheEventLoop) {
    platform::qt::QtApplication application;
    EXPECT_TRUE(application.setActivationPolicy(ActivationPolicy::accessory));
    EXPECT_EQ(application.activationPolicy(), ActivationPolicy::accessory);
    application.activate();  // no window to raise: nothing happens

    // Asked before the loop runs, the quit still ends it, also with a window
    // shown that answers a close by hiding.
    platform::qt::QtToolkit toolkit(&application);
    auto window = toolkit.makeWindow(windowStyle::titled | windowStyle::closable);
    window->makeKeyAndOrderFront();
    application.terminate();
    bool timedOut = false;
    QTimer::singleShot(5000, [&] {
        timedOut = true;
        QApplication::exit(1);
    });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_FALSE(timedOut);
}
