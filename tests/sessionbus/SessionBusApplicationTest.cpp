#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QTimer>
#include <chrono>
#include <future>
#include <string>
#include <vector>

#include "platform/sessionbus/SessionBusApplication.h"
#include "support/PrivateSessionBus.h"

using platform::sessionbus::SessionBusApplication;
using testsupport::PrivateSessionBus;

namespace {

const QString name = QStringLiteral("harrowmere.Tarnwick");

// Runs the asking on a thread of its own while this thread's event loop
// lets the owner answer, as two processes would.
template <typename Work>
auto whileAnswering(Work work) {
    auto result = std::async(std::launch::async, std::move(work));
    while (result.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready)
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    return result.get();
}

class SessionBusApplicationTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(bus_.isRunning()) << "no dbus-daemon"; }

    std::unique_ptr<SessionBusApplication> claimAs(const QString& connection) {
        return SessionBusApplication::claim(
            name, [this](const std::string& action) { requests_.push_back(action); },
            bus_.connect(connection));
    }

    PrivateSessionBus bus_;
    std::vector<std::string> requests_;
};

TEST_F(SessionBusApplicationTest, TheFirstClaimOwnsTheNameAndALaterOneIsRefused) {
    auto first = claimAs("first");
    ASSERT_TRUE(first);
    EXPECT_FALSE(claimAs("second"));
    EXPECT_TRUE(bus_.connect("observer").interface()->isServiceRegistered(name));

    // The name is free again once its owner is gone.
    first.reset();
    EXPECT_TRUE(claimAs("third"));
}

TEST_F(SessionBusApplicationTest, ALaterStartsRequestsReachTheOwnerInOrder) {
    auto owner = claimAs("owner");
    ASSERT_TRUE(owner);
    auto later = bus_.connect("later");
    EXPECT_TRUE(whileAnswering([&] { return SessionBusApplication::ask(name, "", later); }));
    EXPECT_TRUE(
        whileAnswering([&] { return SessionBusApplication::ask(name, "show-panel", later); }));
    EXPECT_EQ(requests_, (std::vector<std::string>{"", "show-panel"}));
}

TEST_F(SessionBusApplicationTest, AQueuedClaimOwnsTheNameOnceTheOwnerLetsGo) {
    auto first = claimAs("first");
    ASSERT_TRUE(first);
    auto queued = SessionBusApplication::claim(
        name, [this](const std::string& action) { requests_.push_back("queued:" + action); },
        bus_.connect("queued"), SessionBusApplication::WhenOwned::queue);
    ASSERT_TRUE(queued);

    first.reset();
    auto later = bus_.connect("later");
    EXPECT_TRUE(whileAnswering([&] { return SessionBusApplication::ask(name, "", later); }));
    EXPECT_EQ(requests_, (std::vector<std::string>{"queued:"}));
}

// A copy that is starting owns its name a moment after a later start looked.
TEST_F(SessionBusApplicationTest, WaitingForAnOwnerEndsWhenTheNameIsClaimed) {
    using namespace std::chrono_literals;
    auto waiter = bus_.connect("waiter");
    EXPECT_FALSE(SessionBusApplication::waitForOwner(name, waiter, 100ms));

    std::unique_ptr<SessionBusApplication> owner;
    QTimer::singleShot(50ms, [&] { owner = claimAs("owner"); });
    const auto start = std::chrono::steady_clock::now();
    const auto timeout = 30s;
    EXPECT_TRUE(SessionBusApplication::waitForOwner(name, waiter, timeout));
    // Woken by the name's owner, not by the end of the time.
    EXPECT_LT(std::chrono::steady_clock::now() - start, timeout / 2);
    EXPECT_TRUE(owner);

    // An owner already there is found without waiting.
    EXPECT_TRUE(SessionBusApplication::waitForOwner(name, waiter, 0ms));
}

TEST_F(SessionBusApplicationTest, AskingWithNoOwnerFailsAtOnce) {
    EXPECT_FALSE(SessionBusApplication::ask(name, "", bus_.connect("alone")));
    EXPECT_TRUE(requests_.empty());
}

TEST_F(SessionBusApplicationTest, OtherCallsOnTheObjectAreRefusedWithoutAction) {
    auto owner = claimAs("owner");
    ASSERT_TRUE(owner);
    auto caller = bus_.connect("caller");
    const auto reply = whileAnswering([&] {
        auto call = QDBusMessage::createMethodCall(name, QStringLiteral("/harrowmere/Tarnwick"),
                                                   QStringLiteral("org.freedesktop.Application"),
                                                   QStringLiteral("Quit"));
        return caller.call(call, QDBus::Block, 5000);
    });
    EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
    EXPECT_TRUE(requests_.empty());
}

TEST(SessionBusApplicationPath, IsTheNameWithSlashes) {
    EXPECT_EQ(SessionBusApplication::objectPathFor(name), QStringLiteral("/harrowmere/Tarnwick"));
}

}  // namespace
