#include <gtest/gtest.h>

#include "X11DesktopFixture.h"

namespace x11test {
namespace {

namespace axError = platform::axError;
using platform::AXObserverRef;

void ignoreNotification(const platform::AXObserverRef&, const AXUIElementRef&, const std::string&,
                        void*) {}

// A client makes and ends windows as fast as it can while the backend lists
// them, reads each one and subscribes to the new ones, as the program does.
// Every answer must be a value or a vanished window; nothing may crash, and
// the connection must survive. (What the churn costs in memory, the
// X11WindowChurn benchmark tells.)
class WindowChurnOnDesktopTest : public X11DesktopTest {
  protected:
    void churnWhileReading(double seconds) {
        TestClient client;
        AXObserverRef observer;
        ASSERT_EQ(ax->observerCreate(client.pid(), ignoreNotification, observer), axError::success);
        ax->runLoopAddSource(observer);
        const auto application = ax->createApplication(client.pid());
        ax->observerAddNotification(observer, application, "AXWindowCreated", nullptr);

        const long reads = readThroughChurn(client, observer, seconds);
        EXPECT_GT(reads, 0);
        EXPECT_TRUE(ax->isConnected());
        EXPECT_TRUE(eventually([&] { return windowsOf(client.pid()).empty(); }, 10));
    }

    long readThroughChurn(TestClient& client, const AXObserverRef& observer, double seconds) {
        client.startChurn(seconds);
        long reads = 0;
        long made = -1;
        while ((made = client.churnResult()) < 0) {
            // One round of events at a time: under churn the connection is
            // never quiet, so running the loop until idle would never end.
            ax->processEvents();
            loop.runOneTurn();
            for (const auto& window : windowsOf(client.pid())) {
                for (const char* attribute : {"AXRole", "AXTitle", "AXMain", "AXFrame"}) {
                    std::optional<CFValue> result;
                    const auto code = read(window, attribute, result);
                    EXPECT_TRUE(code == axError::success || code == axError::invalidUIElement)
                        << attribute << " answered " << code;
                    ++reads;
                }
                const auto code = ax->observerAddNotification(observer, window, "AXMoved", nullptr);
                EXPECT_TRUE(code == axError::success || code == axError::invalidUIElement ||
                            code == axError::notificationAlreadyRegistered)
                    << code;
            }
        }
        EXPECT_GT(made, 0);
        return reads;
    }
};

TEST_F(WindowChurnOnDesktopTest, ReadsStayCorrectWhileWindowsComeAndGo) {
    churnWhileReading(3);
}

}  // namespace
}  // namespace x11test
