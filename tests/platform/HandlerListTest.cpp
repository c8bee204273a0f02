#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/HandlerList.h"
#include "platform/LifetimeGuard.h"

using platform::HandlerList;
using platform::LifetimeGuard;
using platform::Subscription;
using platform::Token;

TEST(HandlerList, ChangesDuringARoundFollowOneRule) {
    HandlerList<int> list;
    std::vector<std::string> calls;
    Token second;
    Token third;
    Token added;
    list.add([&](int round) {
        calls.push_back("first " + std::to_string(round));
        if (round == 1) {
            list.remove(third);  // later in this round: skipped
            added = list.add([&](int r) { calls.push_back("added " + std::to_string(r)); });
        }
    });
    second = list.add([&](int round) {
        calls.push_back("second " + std::to_string(round));
        list.remove(second);  // itself, while running
    });
    third = list.add([&](int round) { calls.push_back("third " + std::to_string(round)); });

    list.call(1);
    list.call(2);
    EXPECT_EQ(calls, (std::vector<std::string>{"first 1", "second 1", "first 2", "added 2"}));
    EXPECT_EQ(list.size(), 2u);
    EXPECT_FALSE(list.remove(third));  // gone already
    EXPECT_TRUE(list.remove(added));
    EXPECT_FALSE(list.add({}));  // an empty handler is no handler
}

TEST(HandlerList, AnInnerRoundKeepsTheRuleAndTheOuterOneSeesItsRemovals) {
    HandlerList<int> list;
    std::vector<std::string> calls;
    Token last;
    list.add([&](int depth) {
        calls.push_back("outer handler at " + std::to_string(depth));
        if (depth == 0) {
            list.call(1);
            list.remove(last);  // removed after the inner round called it
        }
    });
    last = list.add([&](int depth) { calls.push_back("last at " + std::to_string(depth)); });

    list.call(0);
    EXPECT_EQ(calls,
              (std::vector<std::string>{"outer handler at 0", "outer handler at 1", "last at 1"}));
}

TEST(HandlerList, AHandlerMayDestroyTheListItsCalledFromAndItsOwnClosure) {
    auto list = std::make_unique<HandlerList<>>();
    auto captured = std::make_shared<int>(7);
    int seen = 0;
    Token self;
    self = list->add([&, captured] {
        list->remove(self);  // destroys nothing yet: the round holds the handler
        list.reset();
        seen = *captured;  // the closure is still alive while it runs
    });
    list->add([&] { seen = -1; });
    list->call();
    EXPECT_EQ(seen, 7);
    EXPECT_EQ(captured.use_count(), 1);  // released once the round ended
}

TEST(HandlerList, ASubscriptionRemovesItsHandlerAndOutlivesTheList) {
    int calls = 0;
    Subscription outliving;
    {
        HandlerList<> list;
        {
            auto subscription = list.subscribe([&] { ++calls; });
            list.call();
        }
        list.call();
        EXPECT_TRUE(list.empty());
        outliving = list.subscribe([&] { ++calls; });
    }
    outliving.cancel();  // the list is gone: nothing to do, nothing touched
    EXPECT_EQ(calls, 1);
}

TEST(HandlerList, ThreadsAddRemoveAndCallAtOnce) {
    HandlerList<int> list;
    std::atomic<long> sum = 0;
    std::atomic<bool> stop = false;
    std::thread caller([&] {
        while (!stop)
            list.call(1);
    });
    std::vector<std::thread> changers;
    for (int t = 0; t < 3; ++t) {
        changers.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                const Token token = list.add([&](int n) { sum += n; });
                list.call(0);
                list.remove(token);
            }
        });
    }
    for (auto& thread : changers)
        thread.join();
    stop = true;
    caller.join();
    EXPECT_TRUE(list.empty());
}

TEST(LifetimeGuard, GuardedCallbacksDoNothingOnceTheObjectIsGone) {
    std::vector<std::string> calls;
    std::function<void(const std::string&)> callback;
    LifetimeGuard::Watch watch;
    {
        LifetimeGuard lifetime;
        callback = lifetime.guard([&](const std::string& text) { calls.push_back(text); });
        watch = lifetime.watch();
        callback("while alive");
        EXPECT_TRUE(watch.alive());
    }
    callback("after");
    EXPECT_FALSE(watch.alive());
    EXPECT_FALSE(LifetimeGuard::Watch().alive());  // watching nothing
    EXPECT_EQ(calls, (std::vector<std::string>{"while alive"}));
}
