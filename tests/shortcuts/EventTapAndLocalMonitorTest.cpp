#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/sim/SimEventTap.h"
#include "platform/sim/SimFileManager.h"
#include "shortcuts/SRAXGlobalShortcutMonitor.h"
#include "shortcuts/SRLocalShortcutMonitor.h"
#include "shortcuts/SRResources.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

namespace fs = std::filesystem;
using platform::Event;
using platform::EventType;
using Method = SRShortcutActionTarget::Method;

Event event(EventType type, SRKeyCode keyCode, SRModifierFlags flags) {
    Event made;
    made.type = type;
    made.keyCode = keyCode;
    made.modifierFlags = flags;
    return made;
}

class EventTapMonitor : public testing::ShortcutTest {
  protected:
    platform::Services tapServices() {
        auto services = this->services();
        services.eventTap = &tap;
        return services;
    }
    SRShortcutActionRef counting(SRShortcutRef shortcut) {
        return SRShortcutAction::shortcutActionWithShortcut(std::move(shortcut), [this](auto&) {
            ++performed;
            return true;
        });
    }

    platform::sim::SimEventTap tap;
    platform::ScopedInstall withTap{tapServices()};
    int performed = 0;
};

TEST_F(EventTapMonitor, ServesAChordOfModifiersAloneWhileAShortcutIsInUse) {
    auto monitor = SRAXGlobalShortcutMonitor::make();
    ASSERT_TRUE(monitor);
    EXPECT_FALSE(monitor->isTapEnabled());
    auto chord = counting(SRShortcut::shortcutWithCode(SRKeyCodeNone, SRControlFlag | SRShiftFlag));
    monitor->addAction(chord, EventType::keyDown);
    EXPECT_TRUE(monitor->isTapEnabled());

    tap.post(event(EventType::flagsChanged, 59, SRControlFlag));
    EXPECT_EQ(performed, 0);
    tap.post(event(EventType::flagsChanged, 56, SRControlFlag | SRShiftFlag | 0x10000));
    EXPECT_EQ(performed, 1) << "Caps Lock plays no part";
    tap.post(event(EventType::keyDown, 40, SRControlFlag | SRShiftFlag));
    EXPECT_EQ(performed, 1);

    monitor->removeAction(chord);
    EXPECT_FALSE(monitor->isTapEnabled());
    tap.post(event(EventType::flagsChanged, 56, SRControlFlag | SRShiftFlag));
    EXPECT_EQ(performed, 1);
}

TEST_F(EventTapMonitor, ATapThatOnlyListensPassesTheEventAndSaysSo) {
    auto listening = SRAXGlobalShortcutMonitor::makeWithTapOptions(SREventTapOptions::listenOnly);
    auto active = SRAXGlobalShortcutMonitor::make();
    const auto commandK = SRShortcut::shortcutWithCode(40, SRCommandFlag);
    listening->addAction(counting(commandK), EventType::keyDown);
    active->addAction(counting(commandK), EventType::keyUp);

    const Event down = event(EventType::keyDown, 40, SRCommandFlag);
    EXPECT_TRUE(listening->handleEvent(down).has_value());
    EXPECT_TRUE(
        log.contains("#Developer #Error The monitor is not configured to actively filter events"));
    log.clear();
    EXPECT_FALSE(active->isActivelyFiltering()) << "the platform's taps only listen";
    EXPECT_TRUE(active->handleEvent(event(EventType::keyUp, 40, SRCommandFlag)).has_value());
    EXPECT_EQ(performed, 2);
    EXPECT_FALSE(
        log.contains("#Developer #Error The monitor is not configured to actively filter events"));

    EXPECT_TRUE(active->tapCallback(SRAXGlobalShortcutMonitor::tapDisabledByTimeout, down));
    EXPECT_TRUE(log.contains("#Error #Developer The system disabled event tap due to 4294967294"));
    EXPECT_TRUE(active->tapCallback(5, down));
    EXPECT_TRUE(log.contains("#Error #Developer Unexpected event of type 5"));
}

TEST_F(EventTapMonitor, NoTapNoMonitor) {
    tap.setRefusesTaps(true);
    EXPECT_EQ(SRAXGlobalShortcutMonitor::make(), nullptr);
    EXPECT_TRUE(
        log.contains("#Critical Unable to create event tap: make sure Accessibility is enabled"));
}

// A text view's worth of selectors.
class TextTarget final : public SRShortcutActionTarget {
  public:
    TextTarget() {
        for (const char* selector : {"moveForward:", "moveRight:", "copy:", "deleteBackward:"}) {
            setMethod(selector, Method::withSender([this, selector](SRShortcutAction&) {
                          sent.push_back(selector);
                          return true;
                      }));
        }
    }
    std::vector<std::string> sent;
};

TEST_F(EventTapMonitor, TheLocalMonitorSendsTheEventsShortcutToTheTarget) {
    auto monitor = SRLocalShortcutMonitor::standardShortcuts();
    auto target = std::make_shared<TextTarget>();
    EXPECT_TRUE(monitor->handleEvent(event(EventType::keyDown, 3, SRControlFlag), target));
    EXPECT_TRUE(monitor->handleEvent(event(EventType::keyDown, 124, 0xA00000), target))
        << "the arrow's own flags don't count";
    EXPECT_FALSE(monitor->handleEvent(event(EventType::keyUp, 3, SRControlFlag), target));
    EXPECT_FALSE(monitor->handleEvent(event(EventType::keyDown, 126, 0), target))
        << "the target has no moveUp:";
    EXPECT_FALSE(monitor->handleEvent(event(EventType::mouseMoved, 0, 0), target));
    EXPECT_TRUE(log.contains("#Error Not a keyboard event"));
    EXPECT_EQ(target->sent, (std::vector<std::string>{"moveForward:", "moveRight:"}));

    for (const auto& table :
         {SRLocalShortcutMonitor::mainMenuShortcuts(), SRLocalShortcutMonitor::clipboardShortcuts(),
          SRLocalShortcutMonitor::windowShortcuts(), SRLocalShortcutMonitor::documentShortcuts(),
          SRLocalShortcutMonitor::appShortcuts()}) {
        EXPECT_GE(table->actions().size(), 4u) << "every row of the tables reads";
    }
}

// The key binding files in a folder of the test's own.
class KeyBindings : public EventTapMonitor {
  protected:
    KeyBindings() {
        root = fs::temp_directory_path() / ("lirixkro-bindings-" + std::to_string(::getpid()));
        fs::remove_all(root);
        fs::create_directories(root / "resources");
        fs::create_directories(root / "library" / "KeyBindings");
        files.setDirectory(platform::SearchPathDirectory::library, root / "library");
        auto services = tapServices();
        services.fileManager = &files;
        withFiles.emplace(services);
        resources.emplace(root / "resources");
    }
    ~KeyBindings() override { fs::remove_all(root); }

    void write(const fs::path& path, const std::string& text) { std::ofstream(path) << text; }
    std::vector<std::string> selectorsFor(const SRShortcutRef& shortcut,
                                          SRLocalShortcutMonitor& m) {
        std::vector<std::string> selectors;
        for (const auto& action : m.enabledActionsForShortcut(*shortcut, EventType::keyDown))
            selectors.push_back(action->action().value_or(""));
        return selectors;
    }

    fs::path root;
    platform::sim::SimFileManager files;
    std::optional<platform::ScopedInstall> withFiles;
    std::optional<ScopedResourceDirectory> resources;
    SRLocalShortcutMonitor monitor;
};

TEST_F(KeyBindings, TheUsersBindingsReplaceTheStandardOnesByKey) {
    EXPECT_EQ(SRLocalShortcutMonitor::userKeyBindingsPath(),
              root / "library" / "KeyBindings" / "DefaultKeyBinding.dict");
    write(
        root / "resources" / "StandardKeyBinding.dict",
        R"({ "^f" = "moveForward:"; "^b" = "moveBackward:"; "^k" = ("deleteToEndOfParagraph:", "yank:"); "^x" = { "^s" = "save:"; }; })");
    write(SRLocalShortcutMonitor::userKeyBindingsPath(),
          "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
          "<key>^f</key><string>moveWordForward:</string>"
          "<key>^b</key><string>noop:</string>"
          "<key>~d</key><array><string>deleteWordForward:</string><string></string></array>"
          "</dict></plist>");
    monitor.updateWithCocoaTextKeyBindings();
    const auto controlF = SRShortcut::shortcutWithKeyBinding("^f");
    EXPECT_EQ(selectorsFor(controlF, monitor), std::vector<std::string>{"moveWordForward:"});
    EXPECT_TRUE(selectorsFor(SRShortcut::shortcutWithKeyBinding("^b"), monitor).empty());
    EXPECT_EQ(selectorsFor(SRShortcut::shortcutWithKeyBinding("^k"), monitor),
              (std::vector<std::string>{"deleteToEndOfParagraph:", "yank:"}));
    EXPECT_TRUE(selectorsFor(SRShortcut::shortcutWithKeyBinding("~d"), monitor).empty())
        << "an empty name removes what came before it";
    EXPECT_TRUE(selectorsFor(SRShortcut::shortcutWithKeyBinding("^x"), monitor).empty())
        << "a key sequence is no binding of one key";
    EXPECT_FALSE(log.contains("#Error unable to read"));
}

TEST_F(KeyBindings, UnreadableStandardBindingsLeaveTheUsersAlone) {
    write(root / "resources" / "StandardKeyBinding.dict", "{ \"^f\" = ");
    write(SRLocalShortcutMonitor::userKeyBindingsPath(), "{ \"^a\" = \"selectAll:\"; }");
    monitor.updateWithCocoaTextKeyBindings();
    EXPECT_TRUE(log.contains("#Error unable to read system key bindings"));
    EXPECT_EQ(monitor.actions().size(), 1u);
    EXPECT_EQ(selectorsFor(SRShortcut::shortcutWithKeyBinding("^a"), monitor),
              std::vector<std::string>{"selectAll:"});

    fs::remove(SRLocalShortcutMonitor::userKeyBindingsPath());
    SRLocalShortcutMonitor empty;
    empty.updateWithCocoaTextKeyBindings();
    EXPECT_TRUE(log.contains("#Error unable to read user key bindings"));
    EXPECT_TRUE(empty.actions().empty());
}

TEST(ShippedKeyBindings, ReadIntoActionsForTheTextSystem) {
    platform::sim::SimMainLoop loop;
    platform::sim::SimKeyboardLayouts layouts{loop};
    platform::Services services;
    services.keyboardLayouts = &layouts;
    platform::ScopedInstall install(services);
    quillbox::CapturedLog log;
    SRLocalShortcutMonitor monitor;
    monitor.updateWithCocoaTextKeyBindings();
    EXPECT_FALSE(log.contains("#Error unable to read system key bindings"));
    EXPECT_GE(monitor.actions().size(), 30u);
    const auto up = SRShortcut::shortcutWithCode(126, 0);
    ASSERT_EQ(monitor.enabledActionsForShortcut(*up, EventType::keyDown).size(), 1u);
    EXPECT_EQ(monitor.enabledActionsForShortcut(*up, EventType::keyDown)[0]->action(), "moveUp:");
}

}  // namespace
}  // namespace lirixkro
