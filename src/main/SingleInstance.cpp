#include "main/SingleInstance.h"

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

// A later start whose request reached the running copy ends at once.
int handOver(SingleInstance::Request request, QDBusConnection bus) {
    if (SessionBusApplication::ask(busName, actionFor(request), bus))
        return 0;
    std::fprintf(stderr, "tarnwick: a copy is running in this session but did not answer\n");
    return 1;
}

}  // namespace

SingleInstance::Claim SingleInstance::claim(Request request) {
    std::unique_ptr<SingleInstance> instance(new SingleInstance());
    const auto bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        auto handler = instance->handler_;
        instance->busName_ = SessionBusApplication::claim(
            busName,
            [handler](const std::string& action) {
                platform::mainLoop().post([handler, request = requestFor(action)] {
                    if (*handler)
                        (*handler)(request);
                });
            },
            bus);
        if (!instance->busName_)
            return {nullptr, handOver(request, bus)};
    }
    // Also with the name: a copy started without the bus holds only the lock.
    auto [outcome, lock] = RuntimeLock::take(lockFileName);
    if (outcome == RuntimeLock::Outcome::heldByAnother) {
        std::fprintf(stderr,
                     "tarnwick: a copy is running already; without a session bus this start "
                     "can't reach it (use its tray icon for Settings)\n");
        return {nullptr, 1};
    }
    instance->lock_ = std::move(lock);
    return {std::move(instance), 0};
}

void SingleInstance::setRequestHandler(std::function<void(Request)> handler) {
    *handler_ = std::move(handler);
}

}  // namespace tarnwick
