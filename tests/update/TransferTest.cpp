// A transfer on its thread, against the loopback server: taking it down
// while the server keeps it waiting.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "LoopbackServer.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/update/MainLoopMailbox.h"
#include "platform/update/Transfer.h"

namespace {

using platform::update::Transfer;
using platform::update::TransferResult;
using Clock = std::chrono::steady_clock;

bool waitFor(const std::function<bool()>& condition) {
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    while (!condition() && Clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    return condition();
}

// A program that quits while its update check waits on a server that sends
// nothing ends without waiting for the network library's next progress tick
// (about a second); the transfer, taken down, says nothing more.
TEST(TransferTest, TakenDownWhileTheServerSaysNothingItEndsAtOnceAndQuietly) {
    using Behaviour = testsupport::LoopbackServer::Response::Behaviour;
    for (const auto behaviour : {Behaviour::silent, Behaviour::stall}) {
        testsupport::LoopbackServer server;
        server.serve("/appcast.xml", {.body = "never sent", .behaviour = behaviour});
        platform::sim::SimMainLoop loop;
        platform::update::MainLoopMailbox mailbox(loop);
        bool completed = false;
        auto transfer = std::make_unique<Transfer>(mailbox, server.url("/appcast.xml"),
                                                   platform::update::TransferLimits{}, nullptr,
                                                   [&](TransferResult) { completed = true; });
        ASSERT_TRUE(waitFor([&] { return server.requests().size() == 1; }));
        // Settled into waiting for the answer.
        std::this_thread::sleep_for(std::chrono::milliseconds(300));

        const auto before = Clock::now();
        transfer.reset();
        const std::chrono::duration<double> took = Clock::now() - before;
        // Generous for a loaded machine, and still well below the tick.
        EXPECT_LT(took.count(), 0.5)
            << "behaviour " << static_cast<int>(behaviour) << " took " << took.count() << " s";
        loop.runUntilIdle();
        EXPECT_FALSE(completed);
    }
}

}  // namespace
