#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QThread>
#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "platform/sessionbus/SessionBusScreenSaverInhibition.h"
#include "support/PrivateSessionBus.h"

using platform::PowerManagement;
using platform::sessionbus::SessionBusScreenSaverInhibition;
using testsupport::PrivateSessionBus;

namespace {

// What answers Inhibit and UnInhibit on the bus in these tests, on a thread
// of its own so that the blocking calls under test can be answered.
class StandInScreenSaver final : public QDBusVirtualObject {
  public:
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == "Inhibit" && message.arguments().size() == 2) {
            std::lock_guard lock(mutex_);
            const auto cookie = ++lastCookie_;
            inhibitions_[cookie] = message.arguments()[0].toString().toStdString() + ": " +
                                   message.arguments()[1].toString().toStdString();
            connection.send(message.createReply(QVariant::fromValue(cookie)));
            return true;
        }
        if (message.member() == "UnInhibit" && message.arguments().size() == 1) {
            std::lock_guard lock(mutex_);
            inhibitions_.erase(message.arguments()[0].toUInt());
            connection.send(message.createReply());
            return true;
        }
        return false;
    }
    QString introspect(const QString&) const override { return {}; }

    std::map<quint32, std::string> inhibitions() {
        std::lock_guard lock(mutex_);
        return inhibitions_;
    }

  private:
    std::mutex mutex_;
    quint32 lastCookie_ = 0;
    std::map<quint32, std::string> inhibitions_;
};

// Records assertions; stands for the X server's suspension.
class RecordingFallback final : public PowerManagement {
  public:
    std::optional<AssertionID> assertionCreateWithName(const std::string&) override {
        held.insert(++last);
        return last;
    }
    void assertionRelease(AssertionID assertion) override { held.erase(assertion); }

    std::set<AssertionID> held;
    AssertionID last = 0;
};

}  // namespace

TEST(SessionBusInhibition, FallsBackWhenNoServiceAnswers) {
    PrivateSessionBus bus;
    ASSERT_TRUE(bus.isRunning());
    RecordingFallback fallback;
    SessionBusScreenSaverInhibition power("Tarnwick", fallback, bus.connect("client"));
    const auto assertion = power.assertionCreateWithName("NoDisplaySleepAssertion");
    ASSERT_TRUE(assertion);
    EXPECT_FALSE(power.isHeldByService(*assertion));
    EXPECT_EQ(fallback.held.size(), 1u);
    power.assertionRelease(*assertion);
    EXPECT_TRUE(fallback.held.empty());

    SessionBusScreenSaverInhibition disconnected(
        "Tarnwick", fallback,
        QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent"),
                                      QStringLiteral("nowhere")));
    EXPECT_TRUE(disconnected.assertionCreateWithName("NoDisplaySleepAssertion"));
    EXPECT_EQ(fallback.held.size(), 1u);
}

TEST(SessionBusInhibition, InhibitsThroughTheServiceWhereOneAnswers) {
    PrivateSessionBus bus;
    ASSERT_TRUE(bus.isRunning());
    QThread serviceThread;
    serviceThread.start();
    StandInScreenSaver service;
    service.moveToThread(&serviceThread);
    auto serviceConnection = bus.connect("service");
    ASSERT_TRUE(serviceConnection.registerService("org.freedesktop.ScreenSaver"));
    ASSERT_TRUE(serviceConnection.registerVirtualObject("/org/freedesktop/ScreenSaver", &service));

    RecordingFallback fallback;
    SessionBusScreenSaverInhibition power("Tarnwick", fallback, bus.connect("client"));
    const auto first = power.assertionCreateWithName("NoDisplaySleepAssertion");
    const auto second = power.assertionCreateWithName("Another");
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(power.isHeldByService(*first));
    EXPECT_TRUE(fallback.held.empty());
    EXPECT_EQ(service.inhibitions().size(), 2u);
    EXPECT_EQ(service.inhibitions().begin()->second, "Tarnwick: NoDisplaySleepAssertion");

    power.assertionRelease(*first);
    EXPECT_EQ(service.inhibitions().size(), 1u);
    power.assertionRelease(*second);
    EXPECT_TRUE(service.inhibitions().empty());

    serviceConnection.unregisterObject("/org/freedesktop/ScreenSaver");
    serviceThread.quit();
    serviceThread.wait();
}
