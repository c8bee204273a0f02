#include "platform/x11/X11WindowMirror.h"

#include <xcb/res.h>

#include <algorithm>
#include <memory>
#include <unordered_set>
#include <utility>

#include "platform/x11/X11WindowFetch.h"

namespace platform::x11 {

namespace {

constexpr std::uint32_t clientEvents =
    XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
constexpr std::uint32_t maxListLength = 1 << 16;
// How many windows held since the stacking list was last read are looked
// up in it one by one; with more, the whole list is read into the windows.
constexpr std::size_t maxUnstacked = 8;

bool sameFramePlace(const X11WindowState& a, const X11WindowState& b) {
    return a.frameLeft() == b.frameLeft() && a.frameTop() == b.frameTop();
}

// Only a shown window of a known process can be its process's main window.
bool canBeMain(const X11WindowState& state) {
    return !state.hidden && state.pid > 0;
}

// Whether a candidate for a process's main window beats the current one:
// activated more recently, or, with the same activation, higher up.
bool moreRecent(const X11WindowState& candidate, const X11WindowState& current) {
    if (candidate.activationSerial != current.activationSerial) {
        return candidate.activationSerial > current.activationSerial;
    }
    return candidate.stackingIndex > current.stackingIndex;
}

// How a client list changed, when it changed the way a window manager's
// list does as windows come and go: some windows taken out, some added at
// the end, the order of the others kept.
struct TailChange {
    std::vector<xcb_window_t> removed;
    std::vector<xcb_window_t> added;
};

// Nothing when the windows that stayed changed order. `before` holds each
// window once.
std::optional<TailChange> tailChange(const std::vector<xcb_window_t>& before,
                                     const std::vector<xcb_window_t>& after) {
    TailChange change;
    std::size_t kept = 0;
    for (auto window : before) {
        if (kept < after.size() && after[kept] == window)
            ++kept;
        else
            change.removed.push_back(window);
    }
    change.added.assign(after.begin() + static_cast<std::ptrdiff_t>(kept), after.end());
    if (change.removed.empty() || change.added.empty())
        return change;
    // A window that seems both taken out and added moved.
    const std::unordered_set<xcb_window_t> removed(change.removed.begin(), change.removed.end());
    if (std::any_of(change.added.begin(), change.added.end(),
                    [&](xcb_window_t window) { return removed.count(window) != 0; }))
        return std::nullopt;
    return change;
}

bool resourceExtensionAnswersPids(xcb_connection_t* connection) {
    const auto* extension = xcb_get_extension_data(connection, &xcb_res_id);
    if (!extension || !extension->present)
        return false;
    const auto version = awaitReply(connection, xcb_res_query_version_reply,
                                    xcb_res_query_version(connection, 1, 2));
    return version && (version->server_major > 1 ||
                       (version->server_major == 1 && version->server_minor >= 2));
}

}  // namespace

X11WindowMirror::X11WindowMirror(X11Connection& connection, X11WindowMirrorListener& listener)
    : connection_(connection), listener_(listener) {}

void X11WindowMirror::load() {
    auto* c = connection_.connection();
    askOwners_ = resourceExtensionAnswersPids(c);
    screenHeight_ = connection_.screen()->height_in_pixels;
    const std::uint32_t rootEvents = clientEvents;
    xcb_change_window_attributes(c, connection_.root(), XCB_CW_EVENT_MASK, &rootEvents);

    syncWindowManagerCheck();
    syncClientList(false);
    syncStacking(readRootWindows(connection_.ewmh()._NET_CLIENT_LIST_STACKING));
    // Nothing tells which windows were active before we looked; the
    // stacking order is the best guess of that history.
    std::vector<xcb_window_t> byStacking = clientList_;
    std::sort(byStacking.begin(), byStacking.end(), [this](xcb_window_t a, xcb_window_t b) {
        return windows_.at(a).stackingIndex < windows_.at(b).stackingIndex;
    });
    for (auto window : byStacking)
        windows_.at(window).activationSerial = ++lastActivation_;
    syncActiveWindow(readRootWindows(connection_.ewmh()._NET_ACTIVE_WINDOW));
    settleMainWindows(false);
}

// Any client may send any event to any window, so a sent event never
// changes the mirror by what it says: sent property and destroy
// notifications are dropped, and a sent configure notification (which the
// window manager sends when it moves a window in its frame) only prompts a
// look at where the window really is.
void X11WindowMirror::handleEvent(const xcb_generic_event_t& event) {
    const bool sent = event.response_type & 0x80;
    switch (event.response_type & 0x7F) {
        case XCB_PROPERTY_NOTIFY:
            if (!sent)
                handlePropertyChange(reinterpret_cast<const xcb_property_notify_event_t&>(event));
            break;
        case XCB_CONFIGURE_NOTIFY:
            handleConfigure(reinterpret_cast<const xcb_configure_notify_event_t&>(event), sent);
            break;
        case XCB_DESTROY_NOTIFY:
            if (!sent)
                handleDestroy(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
            break;
        default:
            break;
    }
}

void X11WindowMirror::setApplicationProcesses(X11ApplicationProcesses* applications) {
    applications_ = applications;
    regroup();
}

void X11WindowMirror::settlePid(xcb_window_t window, X11WindowState& state) {
    state.settlePid();
    if (applications_ && state.pid > 0)
        state.pid = applications_->applicationProcessOf(window, state);
}

void X11WindowMirror::regroup(std::optional<pid_t> applicationPid) {
    struct Move {
        xcb_window_t window;
        pid_t from;
        pid_t to;
    };
    std::vector<Move> moves;
    for (auto window : std::vector<xcb_window_t>(clientList_)) {
        const auto it = windows_.find(window);
        if (it == windows_.end() || (applicationPid && it->second.pid != *applicationPid))
            continue;
        const pid_t before = it->second.pid;
        settlePid(window, it->second);
        if (it->second.pid != before)
            moves.push_back({window, before, it->second.pid});
    }
    if (moves.empty())
        return;
    for (const auto& move : moves) {
        listener_.windowLeft(move.window, move.from);
        listener_.windowJoined(move.window, move.to);
        mayLoseMain(move.window, move.from);
        mayBecomeMain(move.window);
    }
    settleMainWindows(true);
}

const X11WindowState* X11WindowMirror::window(xcb_window_t window) const {
    auto it = windows_.find(window);
    return it == windows_.end() ? nullptr : &it->second;
}

std::vector<xcb_window_t> X11WindowMirror::windowsOf(pid_t pid) const {
    std::vector<xcb_window_t> windows;
    for (auto window : clientList_) {
        if (windows_.at(window).pid == pid)
            windows.push_back(window);
    }
    return windows;
}

bool X11WindowMirror::hasWindowsOf(pid_t pid) const {
    return std::any_of(clientList_.begin(), clientList_.end(),
                       [&](xcb_window_t window) { return windows_.at(window).pid == pid; });
}

std::optional<xcb_window_t> X11WindowMirror::mainWindowOf(pid_t pid) const {
    auto it = mainWindows_.find(pid);
    if (it == mainWindows_.end())
        return std::nullopt;
    return it->second;
}

std::optional<xcb_window_t> X11WindowMirror::windowAt(double x, double y) const {
    const X11WindowState* top = nullptr;
    std::optional<xcb_window_t> found;
    for (auto window : clientList_) {
        const auto& state = windows_.at(window);
        if (state.hidden || !state.frameHolds(x, y))
            continue;
        if (!top || state.stackingIndex > top->stackingIndex) {
            top = &state;
            found = window;
        }
    }
    return found;
}

void X11WindowMirror::handlePropertyChange(const xcb_property_notify_event_t& event) {
    if (event.window == connection_.root()) {
        handleRootProperty(event.atom);
        return;
    }
    auto it = windows_.find(event.window);
    if (it == windows_.end())
        return;
    const auto property = x11WindowPropertyNamed(connection_, event.atom);
    if (!property)
        return;

    X11WindowState& state = it->second;
    const X11WindowState before = state;
    if (!readX11WindowProperty(connection_, event.window, *property, state)) {
        forget(event.window, true);
        return;
    }
    switch (*property) {
        case X11WindowProperty::claimedPid:
            settlePid(event.window, state);
            if (state.pid != before.pid) {
                listener_.windowLeft(event.window, before.pid);
                listener_.windowJoined(event.window, state.pid);
                mayLoseMain(event.window, before.pid);
                mayBecomeMain(event.window);
            }
            break;
        case X11WindowProperty::netName:
        case X11WindowProperty::wmName:
            if (state.title() != before.title())
                listener_.windowRetitled(event.window, state.pid);
            break;
        case X11WindowProperty::state:
            if (state.hidden && !before.hidden) {
                listener_.windowMiniaturized(event.window, state.pid);
            }
            if (state.hidden && !before.hidden)
                mayLoseMain(event.window, state.pid);
            else if (!state.hidden && before.hidden)
                mayBecomeMain(event.window);
            break;
        case X11WindowProperty::frameExtents:
            if (!sameFramePlace(state, before)) {
                listener_.windowMoved(event.window, state.pid);
            }
            break;
        case X11WindowProperty::types:
        case X11WindowProperty::allowedActions:
            break;
    }
}

void X11WindowMirror::handleRootProperty(xcb_atom_t atom) {
    auto& ewmh = connection_.ewmh();
    if (atom == ewmh._NET_CLIENT_LIST)
        pending_.clientList = true;
    else if (atom == ewmh._NET_CLIENT_LIST_STACKING)
        pending_.stacking = true;
    else if (atom == ewmh._NET_ACTIVE_WINDOW)
        pending_.activeWindow = true;
    else if (atom == ewmh._NET_SUPPORTING_WM_CHECK)
        syncWindowManagerCheck();
}

// The lists are asked for together, so that they cost one wait between
// them. The client list is applied first: a window the window manager made
// active or stacked as it listed it is held by the time the other two are.
void X11WindowMirror::settle() {
    const Pending pending = std::exchange(pending_, {});
    const auto& ewmh = connection_.ewmh();
    std::optional<xcb_get_property_cookie_t> stacking, active;
    if (pending.stacking)
        stacking = askRootWindows(ewmh._NET_CLIENT_LIST_STACKING);
    if (pending.activeWindow)
        active = askRootWindows(ewmh._NET_ACTIVE_WINDOW);
    if (pending.clientList)
        syncClientList(true);
    if (stacking)
        syncStacking(receiveRootWindows(*stacking));
    if (active)
        syncActiveWindow(receiveRootWindows(*active));
    if (!mainCandidates_.empty() || !mainsToRecount_.empty())
        settleMainWindows(true);
}

bool X11WindowMirror::unsettled() const {
    return pending_.clientList || pending_.stacking || pending_.activeWindow ||
           !mainCandidates_.empty() || !mainsToRecount_.empty();
}

void X11WindowMirror::handleConfigure(const xcb_configure_notify_event_t& event, bool sent) {
    if (event.window == connection_.root()) {
        if (!sent)
            screenHeight_ = event.height;
        return;
    }
    auto it = windows_.find(event.window);
    if (it == windows_.end())
        return;
    X11WindowState& state = it->second;
    const X11WindowState before = state;
    if (!sent) {
        state.width = event.width;
        state.height = event.height;
    }
    // Real notifications give the place inside the frame: the place on the
    // screen, like everything a sent one claims, is asked of the server.
    const bool placed = (!sent || readX11WindowSize(connection_, event.window, state)) &&
                        readX11WindowOrigin(connection_, event.window, state);
    if (!placed) {
        forget(event.window, true);
        return;
    }
    if (!sameFramePlace(state, before))
        listener_.windowMoved(event.window, state.pid);
}

void X11WindowMirror::handleDestroy(xcb_window_t window) {
    if (window == windowManagerCheck_) {
        windowManagerCheck_ = XCB_NONE;
        return;
    }
    if (!windows_.count(window))
        return;
    forget(window, true);
}

xcb_get_property_cookie_t X11WindowMirror::askRootWindows(xcb_atom_t atom) {
    return xcb_get_property(connection_.connection(), 0, connection_.root(), atom, XCB_ATOM_WINDOW,
                            0, maxListLength);
}

X11WindowMirror::RootWindows X11WindowMirror::readRootWindows(xcb_atom_t atom) {
    return receiveRootWindows(askRootWindows(atom));
}

X11WindowMirror::RootWindows X11WindowMirror::receiveRootWindows(xcb_get_property_cookie_t cookie) {
    const auto reply = awaitReply(connection_.connection(), xcb_get_property_reply, cookie);
    if (!reply || reply->type != XCB_ATOM_WINDOW || reply->format != 32)
        return std::nullopt;
    const auto* data = static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    return std::vector<xcb_window_t>(data, data + xcb_get_property_value_length(reply.get()) / 4);
}

// A window manager rewrites the whole list for each window that comes or
// goes, so the common change, windows taken out and added at the end, is
// found by one walk and costs what changed; any other change is matched
// window by window.
void X11WindowMirror::syncClientList(bool announce) {
    const auto listed =
        readRootWindows(connection_.ewmh()._NET_CLIENT_LIST).value_or(std::vector<xcb_window_t>{});
    const auto change = tailChange(clientList_, listed);
    std::vector<xcb_window_t> joined;
    if (change) {
        forgetAll(change->removed, announce);
        joined = fetch(newlyListed(change->added));
        clientList_.insert(clientList_.end(), joined.begin(), joined.end());
    } else {
        const std::unordered_set<xcb_window_t> listedSet(listed.begin(), listed.end());
        std::vector<xcb_window_t> gone;
        std::copy_if(clientList_.begin(), clientList_.end(), std::back_inserter(gone),
                     [&](xcb_window_t window) { return !listedSet.count(window); });
        forgetAll(gone, announce);
        joined = fetch(newlyListed(listed));
        clientList_.clear();
        std::unordered_set<xcb_window_t> placed;
        for (auto window : listed) {
            if (windows_.count(window) && placed.insert(window).second)
                clientList_.push_back(window);
        }
    }
    if (!announce)
        return;
    for (auto window : joined)
        listener_.windowJoined(window, windows_.at(window).pid);
}

std::vector<xcb_window_t> X11WindowMirror::newlyListed(
    const std::vector<xcb_window_t>& listed) const {
    std::vector<xcb_window_t> windows;
    std::unordered_set<xcb_window_t> seen;
    for (auto window : listed) {
        if (!windows_.count(window) && seen.insert(window).second)
            windows.push_back(window);
    }
    return windows;
}

std::vector<xcb_window_t> X11WindowMirror::fetch(const std::vector<xcb_window_t>& windows) {
    auto* c = connection_.connection();
    std::vector<X11WindowFetch> fetches;
    fetches.reserve(windows.size());
    for (auto window : windows) {
        // Asking for its events first means no change after the read is missed.
        xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, &clientEvents);
        fetches.emplace_back(connection_, window, askOwners_);
    }
    std::vector<xcb_window_t> held;
    for (auto& fetch : fetches) {
        if (auto state = fetch.receive()) {
            settlePid(fetch.window(), *state);
            // The window manager may have named it active before listing it.
            if (fetch.window() == active_)
                state->activationSerial = ++lastActivation_;
            windows_.emplace(fetch.window(), std::move(*state));
            held.push_back(fetch.window());
            mayBecomeMain(fetch.window());
        }
    }
    if (unstacked_.size() + held.size() > maxUnstacked) {
        restackAll_ = true;
        unstacked_.clear();
    } else {
        unstacked_.insert(unstacked_.end(), held.begin(), held.end());
    }
    return held;
}

// A window's index is its place in the list, counted from one. Only the
// part of the list from its first change is read into the windows, and the
// windows held since the last read are looked up in the rest.
void X11WindowMirror::syncStacking(RootWindows stacking) {
    if (!stacking)
        return;
    const auto place = [this](xcb_window_t window, std::size_t position) {
        auto it = windows_.find(window);
        if (it != windows_.end())
            it->second.stackingIndex = static_cast<std::uint32_t>(position + 1);
    };
    std::size_t from = 0;
    if (!restackAll_) {
        const auto common = std::min(stacking_.size(), stacking->size());
        from = static_cast<std::size_t>(
            std::mismatch(stacking_.begin(), stacking_.begin() + common, stacking->begin()).first -
            stacking_.begin());
        const auto unchanged = stacking->begin() + static_cast<std::ptrdiff_t>(from);
        for (auto window : unstacked_) {
            const auto it = std::find(stacking->begin(), unchanged, window);
            if (it != unchanged)
                place(window, static_cast<std::size_t>(it - stacking->begin()));
        }
    }
    for (std::size_t position = from; position < stacking->size(); ++position)
        place((*stacking)[position], position);
    unstacked_.clear();
    restackAll_ = false;
    stacking_ = std::move(*stacking);
    // The stacking order decides only between windows never active.
    for (const auto& [pid, main] : mainWindows_) {
        const auto it = windows_.find(main);
        if (it == windows_.end() || it->second.activationSerial == 0)
            mainsToRecount_.insert(pid);
    }
}

void X11WindowMirror::syncActiveWindow(const RootWindows& active) {
    const xcb_window_t window = active && !active->empty() ? active->front() : XCB_NONE;
    if (window == active_)
        return;
    active_ = window;
    auto it = windows_.find(window);
    if (it != windows_.end()) {
        it->second.activationSerial = ++lastActivation_;
        mayBecomeMain(window);
    }
}

void X11WindowMirror::syncWindowManagerCheck() {
    auto* c = connection_.connection();
    const auto check = readRootWindows(connection_.ewmh()._NET_SUPPORTING_WM_CHECK);
    windowManagerCheck_ = XCB_NONE;
    if (!check || check->empty())
        return;
    const xcb_window_t candidate = check->front();
    // A window manager proves itself by naming the same window on it; a
    // stale root property left by one that died names a window that is gone.
    const auto reply =
        awaitReply(c, xcb_get_property_reply,
                   xcb_get_property(c, 0, candidate, connection_.ewmh()._NET_SUPPORTING_WM_CHECK,
                                    XCB_ATOM_WINDOW, 0, 1));
    if (!reply || xcb_get_property_value_length(reply.get()) != 4)
        return;
    if (*static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get())) != candidate)
        return;
    const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, candidate, XCB_CW_EVENT_MASK, &events);
    windowManagerCheck_ = candidate;
}

void X11WindowMirror::forget(xcb_window_t window, bool announce) {
    forgetAll({window}, announce);
}

void X11WindowMirror::forgetAll(const std::vector<xcb_window_t>& windows, bool announce) {
    std::vector<std::pair<xcb_window_t, pid_t>> left;
    std::vector<xcb_window_t> gone;
    for (auto window : windows) {
        auto it = windows_.find(window);
        if (it == windows_.end())
            continue;
        left.emplace_back(window, it->second.pid);
        gone.push_back(window);
        mayLoseMain(window, it->second.pid);
        windows_.erase(it);
        unsubscribe(window);
    }
    // One walk of the list, with a look-up as cheap as a comparison when
    // one window went.
    std::sort(gone.begin(), gone.end());
    if (!gone.empty())
        std::erase_if(clientList_, [&gone](xcb_window_t window) {
            return std::binary_search(gone.begin(), gone.end(), window);
        });
    if (!announce)
        return;
    for (const auto& [window, pid] : left)
        listener_.windowLeft(window, pid);
}

// A window that left the list may live on, withdrawn; its events are no
// longer wanted. If it is gone the server's error is dropped unread.
void X11WindowMirror::unsubscribe(xcb_window_t window) {
    const std::uint32_t none = 0;
    xcb_change_window_attributes(connection_.connection(), window, XCB_CW_EVENT_MASK, &none);
}

void X11WindowMirror::mayBecomeMain(xcb_window_t window) {
    mainCandidates_.push_back(window);
}

void X11WindowMirror::mayLoseMain(xcb_window_t window, pid_t pid) {
    const auto it = mainWindows_.find(pid);
    if (it != mainWindows_.end() && it->second == window)
        mainsToRecount_.insert(pid);
}

std::optional<xcb_window_t> X11WindowMirror::mainWindowAmong(pid_t pid) const {
    std::optional<xcb_window_t> main;
    for (auto window : clientList_) {
        const auto& state = windows_.at(window);
        if (state.pid == pid && canBeMain(state) &&
            (!main || moreRecent(state, windows_.at(*main))))
            main = window;
    }
    return main;
}

// A process whose main window went, or whose main window the stacking
// order alone made so, is counted again over its windows; otherwise a
// window that joined, came back or was activated need only beat the main
// window there is.
void X11WindowMirror::settleMainWindows(bool announce) {
    const auto recount = std::exchange(mainsToRecount_, {});
    const auto candidates = std::exchange(mainCandidates_, {});
    std::unordered_map<pid_t, std::optional<xcb_window_t>> before;
    for (auto pid : recount) {
        before.emplace(pid, mainWindowOf(pid));
        if (auto main = mainWindowAmong(pid))
            mainWindows_[pid] = *main;
        else
            mainWindows_.erase(pid);
    }
    for (auto window : candidates) {
        const auto it = windows_.find(window);
        if (it == windows_.end() || !canBeMain(it->second) || recount.count(it->second.pid))
            continue;
        const pid_t pid = it->second.pid;
        const auto main = mainWindows_.find(pid);
        if (main != mainWindows_.end()) {
            const auto current = windows_.find(main->second);
            if (main->second == window ||
                (current != windows_.end() && !moreRecent(it->second, current->second)))
                continue;
        }
        before.emplace(pid, mainWindowOf(pid));
        mainWindows_[pid] = window;
    }
    if (!announce)
        return;
    for (const auto& [pid, previous] : before) {
        const auto now = mainWindowOf(pid);
        if (now && now != previous)
            listener_.mainWindowChanged(pid, *now);
    }
}

}  // namespace platform::x11
