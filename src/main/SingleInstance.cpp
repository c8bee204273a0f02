#include "main/SingleInstance.h"

#include <chrono>
#include <cstdio>
#include <string>

#include "platform/Platform.h"
#include "platform/xdg/XdgBundles.h"

namespace tarnwick {

namespace {

using platform::sessionbus::SessionBusApplication;
using platform::xdg::RuntimeLock;

const QString busName = QString::fromLatin1(platform::xdg::XdgBundles::mainBundleIdentifier);
const std::string lockFileName =
    std::string(platform::xdg::XdgBundles::mainBundleIdentifier) + ".lock";

// The named action of the desktop entry, and the plain activation.
constexpr const char* showPanelAction = "show-panel";

std::string actionFor(SingleInstance::Request request) {
    return request == SingleInstance::Request::showPanel ? showPanelAction : "";
}

SingleInstance::Request requestFor(const std::string& action) {
    return action == showPanelAction ? SingleInstance::Request::showPanel
                                     : SingleInstance::Request::showSettings;
}

// How long a start waits for a copy that holds the lock to own its name:
// the copy may be starting up still.
constexpr std::chrono::seconds ownerTimeout{5};

// A later start whose request reached the running copy ends at once.
int handOver(SingleInstance::Request request, QDBusConnection bus) {
    if (SessionBusApplication::ask(busName, actionFor(request), bus))
        return 0;
    std::fprintf(stderr, "tarnwick: a copy is running in this session but did not answer\n");
    return 1;
}

// The lock is held by another copy: it answers once it owns its name.
int handOverWhenOwned(SingleInstance::Request request, QDBusConnection bus) {
    if (bus.isConnected() && SessionBusApplication::waitForOwner(busName, bus, ownerTimeout))
        return handOver(request, bus);
    std::fprintf(stderr,
                 "tarnwick: a copy is running already and can't be reached over the session "
                 "bus (use its tray icon for Settings)\n");
    return 1;
}

}  // namespace

SingleInstance::Claim SingleInstance::claim(Request request) {
    std::unique_ptr<SingleInstance> instance(new SingleInstance());
    const auto bus = QDBusConnection::sessionBus();
    // The lock decides which copy runs; the name on the bus is how later
    // starts reach it. A copy that ends lets go of the lock first, so a
    // start in that moment runs and waits in the bus's queue for the name.
    auto [outcome, lock] = RuntimeLock::take(lockFileName);
    if (outcome == RuntimeLock::Outcome::heldByAnother)
        return {nullptr, handOverWhenOwned(request, bus)};
    instance->lock_ = std::move(lock);
    if (bus.isConnected()) {
        auto handler = instance->handler_;
        // Without a lock the name alone decides.
        const auto whenOwned = outcome == RuntimeLock::Outcome::taken
                                   ? SessionBusApplication::WhenOwned::queue
                                   : SessionBusApplication::WhenOwned::refuse;
        instance->busName_ = SessionBusApplication::claim(
            busName,
            [handler](const std::string& action) {
                platform::mainLoop().post([handler, request = requestFor(action)] {
                    if (*handler)
                        (*handler)(request);
                });
            },
            bus, whenOwned);
        if (!instance->busName_ && whenOwned == SessionBusApplication::WhenOwned::refuse)
            return {nullptr, handOver(request, bus)};
    }
    return {std::move(instance), 0};
}

void SingleInstance::setRequestHandler(std::function<void(Request)> handler) {
    *handler_ = std::move(handler);
}

}  // namespace tarnwick
