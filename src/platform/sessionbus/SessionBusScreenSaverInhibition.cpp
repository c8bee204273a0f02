#include "platform/sessionbus/SessionBusScreenSaverInhibition.h"

#include <QDBusMessage>
#include <QVariant>

namespace platform::sessionbus {

namespace {

const QString service = QStringLiteral("org.freedesktop.ScreenSaver");
const QString path = QStringLiteral("/org/freedesktop/ScreenSaver");
const QString interface = QStringLiteral("org.freedesktop.ScreenSaver");

// A service that is there answers at once; one that hangs must not hold up
// the caller for the bus's default of 25 seconds.
constexpr int callTimeoutMilliseconds = 2000;

}  // namespace

SessionBusScreenSaverInhibition::SessionBusScreenSaverInhibition(QString applicationName,
                                                                 PowerManagement& fallback,
                                                                 QDBusConnection bus)
    : applicationName_(std::move(applicationName)), fallback_(fallback), bus_(std::move(bus)) {}

std::optional<PowerManagement::AssertionID>
SessionBusScreenSaverInhibition::assertionCreateWithName(const std::string& name) {
    std::lock_guard lock(mutex_);
    Held held;
    if (const auto cookie = inhibit(QString::fromStdString(name))) {
        held = Inhibition{*cookie};
    } else if (const auto id = fallback_.assertionCreateWithName(name)) {
        held = FallbackAssertion{*id};
    } else {
        return std::nullopt;
    }
    held_.emplace(++lastID_, held);
    return lastID_;
}

void SessionBusScreenSaverInhibition::assertionRelease(AssertionID assertion) {
    std::lock_guard lock(mutex_);
    const auto found = held_.find(assertion);
    if (found == held_.end())
        return;
    if (const auto* inhibition = std::get_if<Inhibition>(&found->second))
        uninhibit(inhibition->cookie);
    else
        fallback_.assertionRelease(std::get<FallbackAssertion>(found->second).id);
    held_.erase(found);
}

bool SessionBusScreenSaverInhibition::isHeldByService(AssertionID assertion) {
    std::lock_guard lock(mutex_);
    const auto found = held_.find(assertion);
    return found != held_.end() && std::holds_alternative<Inhibition>(found->second);
}

std::optional<quint32> SessionBusScreenSaverInhibition::inhibit(const QString& reason) {
    if (!bus_.isConnected())
        return std::nullopt;
    auto call = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Inhibit"));
    call << applicationName_ << reason;
    const auto reply = bus_.call(call, QDBus::Block, callTimeoutMilliseconds);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() != 1)
        return std::nullopt;
    bool isNumber = false;
    const auto cookie = reply.arguments().front().toUInt(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return cookie;
}

void SessionBusScreenSaverInhibition::uninhibit(quint32 cookie) {
    auto call =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("UnInhibit"));
    call << cookie;
    bus_.call(call, QDBus::Block, callTimeoutMilliseconds);
}

}  // namespace platform::sessionbus
