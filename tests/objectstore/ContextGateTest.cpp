#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/sqlite/ContextGate.h"

using platform::sqlite::ContextGate;

TEST(ContextGate, WorkPostedByTheHolderWaitsForItsLastUnlock) {
    ContextGate gate;
    std::vector<int> order;
    gate.post([&] { order.push_back(1); });  // a free gate runs it at once
    gate.lock();
    gate.lock();
    gate.post([&] { order.push_back(3); });
    order.push_back(2);
    gate.unlock();
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    gate.unlock();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(ContextGateThreads, PostingNeverWaitsAndEveryPostRunsUnderTheGate) {
    ContextGate first;
    ContextGate second;
    std::atomic<int> ran = 0;
    int insideFirst = 0;  // only touched with `first` held
    auto worker = [&](ContextGate& own, ContextGate& other, bool ownIsFirst) {
        for (int i = 0; i < 500; ++i) {
            std::lock_guard held(own);
            if (ownIsFirst)
                ++insideFirst;
            // Two holders posting to each other would deadlock if posting
            // waited for the gate.
            other.post([&, ownIsFirst] {
                if (!ownIsFirst)
                    ++insideFirst;
                ++ran;
            });
        }
    };
    std::thread a(worker, std::ref(first), std::ref(second), true);
    std::thread b(worker, std::ref(second), std::ref(first), false);
    a.join();
    b.join();
    std::lock_guard settle(first);  // runs anything still queued
    std::lock_guard settleToo(second);
    EXPECT_EQ(ran, 1000);
    EXPECT_EQ(insideFirst, 1000);
}
