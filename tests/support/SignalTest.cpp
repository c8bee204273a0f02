#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/Signal.h"

using quillbox::Signal;

TEST(Signal, CallsConnectedSlotsUntilTheirSubscriptionEndsEvenAfterTheSignal) {
    Signal<int, std::string> signal;
    std::vector<std::string> calls;
    auto first = signal.connect([&](int n, const std::string& text) {
        calls.push_back("first " + std::to_string(n) + text);
    });
    {
        auto second = signal.connect(
            [&](int n, const std::string&) { calls.push_back("second " + std::to_string(n)); });
        signal.emit(1, "a");
    }
    signal.emit(2, "b");
    first.cancel();
    signal.emit(3, "c");
    EXPECT_EQ(calls, (std::vector<std::string>{"first 1a", "second 1", "first 2b"}));
    EXPECT_EQ(signal.slotCount(), 0u);

    platform::Subscription outliving;
    {
        Signal<> shortLived;
        outliving = shortLived.connect([] {});
    }
    outliving.cancel();  // must not touch the destroyed signal
}

TEST(Signal, SlotsMayChangeTheConnectionsWhileBeingCalled) {
    Signal<> signal;
    int late = 0;
    std::optional<platform::Subscription> added;
    platform::Subscription self;
    self = signal.connect([&] {
        added = signal.connect([&] { ++late; });
        self.cancel();
    });
    signal.emit();  // the slot connected meanwhile waits for the next emit
    EXPECT_EQ(late, 0);
    signal.emit();
    EXPECT_EQ(late, 1);
    EXPECT_EQ(signal.slotCount(), 1u);
}
