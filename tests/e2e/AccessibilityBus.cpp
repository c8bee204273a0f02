#include "AccessibilityBus.h"

#include <atspi/atspi.h>
#include <signal.h>
#include <sys/wait.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <string>
#include <thread>

namespace e2e {

namespace {

std::string taken(gchar* text) {
    std::string result = text ? text : "";
    g_free(text);
    return result;
}

AccessibleNode read(AtspiAccessible* accessible, int depth = 0) {
    AccessibleNode node;
    node.role = taken(atspi_accessible_get_role_name(accessible, nullptr));
    node.name = taken(atspi_accessible_get_name(accessible, nullptr));
    if (AtspiStateSet* states = atspi_accessible_get_state_set(accessible)) {
        node.enabled = atspi_state_set_contains(states, ATSPI_STATE_ENABLED);
        g_object_unref(states);
    }
    if (AtspiComponent* component = atspi_accessible_get_component_iface(accessible)) {
        if (AtspiRect* extents =
                atspi_component_get_extents(component, ATSPI_COORD_TYPE_SCREEN, nullptr)) {
            node.x = extents->x;
            node.y = extents->y;
            node.width = extents->width;
            node.height = extents->height;
            g_free(extents);
        }
        g_object_unref(component);
    }
    const int count = depth < 16 ? atspi_accessible_get_child_count(accessible, nullptr) : 0;
    for (int i = 0; i < count; ++i) {
        if (AtspiAccessible* child = atspi_accessible_get_child_at_index(accessible, i, nullptr)) {
            node.children.push_back(read(child, depth + 1));
            g_object_unref(child);
        }
    }
    return node;
}

// The first node at or below the accessible with the role and name; a
// reference the caller releases, or null.
AtspiAccessible* findNode(AtspiAccessible* accessible, const std::string& role,
                          const std::string& name, int depth = 0) {
    if (taken(atspi_accessible_get_role_name(accessible, nullptr)) == role &&
        taken(atspi_accessible_get_name(accessible, nullptr)) == name) {
        return static_cast<AtspiAccessible*>(g_object_ref(accessible));
    }
    const int count = depth < 16 ? atspi_accessible_get_child_count(accessible, nullptr) : 0;
    AtspiAccessible* found = nullptr;
    for (int i = 0; i < count && !found; ++i) {
        if (AtspiAccessible* child = atspi_accessible_get_child_at_index(accessible, i, nullptr)) {
            found = findNode(child, role, name, depth + 1);
            g_object_unref(child);
        }
    }
    return found;
}

bool doNamedAction(AtspiAccessible* accessible, const std::string& action) {
    AtspiAction* actions = atspi_accessible_get_action_iface(accessible);
    if (!actions)
        return false;
    bool done = false;
    const int count = atspi_action_get_n_actions(actions, nullptr);
    for (int i = 0; i < count && !done; ++i) {
        if (taken(atspi_action_get_action_name(actions, i, nullptr)) == action)
            done = atspi_action_do_action(actions, i, nullptr);
    }
    g_object_unref(actions);
    return done;
}

// Runs the bus's events for a while.
void dispatchFor(std::chrono::milliseconds time) {
    const auto until = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < until) {
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

std::deque<AccessibleNode> shownMenus;

bool isMenu(AtspiAccessible* accessible) {
    const auto role = atspi_accessible_get_role(accessible, nullptr);
    return role == ATSPI_ROLE_POPUP_MENU || role == ATSPI_ROLE_MENU;
}

// The event is ours to free.
void noteShownMenu(AtspiEvent* event, void*) {
    if (event->detail1 == 1 && event->source && isMenu(event->source))
        shownMenus.push_back(read(event->source));
    g_boxed_free(ATSPI_TYPE_EVENT, event);
}

// Starts a session bus daemon in the background; its process and address.
// It outlives the test that first asked for it, so it takes none of that
// test's private folders with it: those go, with what runs in them, when the
// test ends.
std::optional<std::pair<pid_t, std::string>> startSessionBus() {
    FILE* output = popen(
        "env -u XDG_RUNTIME_DIR -u XDG_CONFIG_HOME "
        "dbus-daemon --session --fork --print-address=1 --print-pid=1",
        "r");
    if (!output)
        return std::nullopt;
    char address[512] = {}, pid[32] = {};
    const bool complete =
        std::fgets(address, sizeof address, output) && std::fgets(pid, sizeof pid, output);
    pclose(output);
    if (!complete)
        return std::nullopt;
    std::string text = address;
    text.erase(text.find_last_not_of('\n') + 1);
    return std::pair{static_cast<pid_t>(std::atoi(pid)), text};
}

// The accessibility bus of an earlier test's session stays named on the
// display's root window after its session ended, and both this reader and
// the programs would look there first and find it gone. Without the name,
// both ask the session bus of this test.
void forgetEarlierAccessibilityBus() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (!xcb_connection_has_error(connection)) {
        const char name[] = "AT_SPI_BUS";
        auto* reply = xcb_intern_atom_reply(
            connection, xcb_intern_atom(connection, 1, sizeof name - 1, name), nullptr);
        if (reply && reply->atom != XCB_NONE) {
            const xcb_window_t root =
                xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
            xcb_delete_property(connection, root, reply->atom);
            // A round trip: the name is gone before anyone looks.
            free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
        }
        free(reply);
    }
    xcb_disconnect(connection);
}

}  // namespace

std::vector<const AccessibleNode*> AccessibleNode::flattened() const {
    std::vector<const AccessibleNode*> nodes{this};
    for (const auto& child : children) {
        auto below = child.flattened();
        nodes.insert(nodes.end(), below.begin(), below.end());
    }
    return nodes;
}

std::string AccessibleNode::outline() const {
    std::string text;
    for (const auto* node : flattened())
        text += "[" + node->role + "] " + node->name + "\n";
    return text;
}

const AccessibleNode* AccessibleNode::find(const std::string& wantedRole,
                                           const std::string& wantedName) const {
    for (const auto* node : flattened()) {
        if (node->role == wantedRole && node->name == wantedName)
            return node;
    }
    return nullptr;
}

AccessibilityBus& AccessibilityBus::shared() {
    static AccessibilityBus bus;
    return bus;
}

AccessibilityBus::AccessibilityBus() {
    forgetEarlierAccessibilityBus();
    auto bus = startSessionBus();
    if (!bus)
        return;
    daemon_ = bus->first;
    environment_.set("DBUS_SESSION_BUS_ADDRESS", bus->second);
    // Programs publish their objects only when the accessibility bus runs
    // as they start; asking for the desktop starts it.
    environment_.set("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    up_ = atspi_init() == 0;
    if (AtspiAccessible* desktop = up_ ? atspi_get_desktop(0) : nullptr) {
        atspi_accessible_get_child_count(desktop, nullptr);
        g_object_unref(desktop);
    }
}

AccessibilityBus::~AccessibilityBus() {
    if (up_)
        atspi_exit();
    if (daemon_ > 0)
        ::kill(daemon_, SIGTERM);
}

std::optional<AccessibleNode> AccessibilityBus::application(const std::string& name, double seconds,
                                                            pid_t pid) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (up_) {
        AtspiAccessible* desktop = atspi_get_desktop(0);
        // Programs that came and went since the last look are read afresh.
        atspi_accessible_clear_cache(desktop);
        std::optional<AccessibleNode> found;
        const int count = atspi_accessible_get_child_count(desktop, nullptr);
        for (int i = 0; i < count && !found; ++i) {
            AtspiAccessible* application = atspi_accessible_get_child_at_index(desktop, i, nullptr);
            if (application && taken(atspi_accessible_get_name(application, nullptr)) == name &&
                (pid == 0 ||
                 static_cast<pid_t>(atspi_accessible_get_process_id(application, nullptr)) == pid))
                found = read(application);
            if (application)
                g_object_unref(application);
        }
        g_object_unref(desktop);
        if (found || std::chrono::steady_clock::now() > deadline)
            return found;
        dispatchFor(std::chrono::milliseconds(50));
    }
    return std::nullopt;
}

std::optional<AccessibleNode> AccessibilityBus::applicationHolding(const std::string& name,
                                                                   const std::string& role,
                                                                   const std::string& nodeName,
                                                                   double seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    std::optional<AccessibleNode> tree;
    do {
        tree = application(name, 1);
        if (tree && tree->find(role, nodeName))
            break;
        dispatchFor(std::chrono::milliseconds(50));
    } while (std::chrono::steady_clock::now() < deadline);
    return tree;
}

bool AccessibilityBus::doAction(const std::string& application, pid_t pid, const std::string& role,
                                const std::string& name, const std::string& action) {
    if (!up_)
        return false;
    AtspiAccessible* desktop = atspi_get_desktop(0);
    atspi_accessible_clear_cache(desktop);
    bool done = false;
    const int count = atspi_accessible_get_child_count(desktop, nullptr);
    for (int i = 0; i < count && !done; ++i) {
        AtspiAccessible* program = atspi_accessible_get_child_at_index(desktop, i, nullptr);
        if (program && taken(atspi_accessible_get_name(program, nullptr)) == application &&
            static_cast<pid_t>(atspi_accessible_get_process_id(program, nullptr)) == pid) {
            if (AtspiAccessible* node = findNode(program, role, name)) {
                done = doNamedAction(node, action);
                g_object_unref(node);
            }
        }
        if (program)
            g_object_unref(program);
    }
    g_object_unref(desktop);
    return done;
}

void AccessibilityBus::watchMenus() {
    AtspiEventListener* listener = atspi_event_listener_new(noteShownMenu, nullptr, nullptr);
    atspi_event_listener_register(listener, "object:state-changed:showing", nullptr);
}

std::optional<AccessibleNode> AccessibilityBus::waitForMenu(double seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (shownMenus.empty() && std::chrono::steady_clock::now() < deadline)
        dispatchFor(std::chrono::milliseconds(20));
    if (shownMenus.empty())
        return std::nullopt;
    auto menu = std::move(shownMenus.front());
    shownMenus.pop_front();
    return menu;
}

}  // namespace e2e
