#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <map>
#include <set>
#include <string>

#include "StoreFixture.h"

using namespace quillbox;

namespace {

constexpr int booksPerRound = 1000;

// Round after round, one save adds a thousand books of that round and moves
// every book already there to the round's shelf; it reports each finished
// save on the pipe, and never stops by itself.
[[noreturn]] void saveRoundsForever(CoreDataStack& stack, int reportTo) {
    auto context = stack.newBackgroundContext();
    for (std::int64_t round = 1;; ++round) {
        const auto shelf = "round " + std::to_string(round);
        for (const auto& book : context->fetch({"Book", {}, {}, 0}))
            book->setValue("shelf", shelf);
        for (int i = 0; i < booksPerRound; ++i) {
            auto book = context->insertNewObject("Book");
            book->setValue("title", "Book " + std::to_string(i));
            book->setValue("pages", round);
            book->setValue("shelf", shelf);
        }
        context->save();
        if (::write(reportTo, &round, sizeof round) != sizeof round)
            ::_exit(2);
    }
}

// The rounds the child reported, once it has reported `count` of them; the
// child is killed either way.
std::int64_t killAfterRounds(pid_t child, int reports, std::int64_t count) {
    std::int64_t round = 0;
    pollfd readable{reports, POLLIN, 0};
    while (round < count && ::poll(&readable, 1, 60'000) == 1 &&
           ::read(reports, &round, sizeof round) == sizeof round) {
    }
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    return round;
}

}  // namespace

class DurabilityTest : public objectstore::StoreFixture {};

TEST_F(DurabilityTest, AProcessKilledWhileSavingLeavesOnlyWholeSaves) {
    const auto file = root() / "durable.sqlite";
    int pipeEnds[2];
    ASSERT_EQ(::pipe(pipeEnds), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::close(pipeEnds[0]);
        saveRoundsForever(*makeStack(fileStore(file)), pipeEnds[1]);
    }
    ::close(pipeEnds[1]);
    const auto reported = killAfterRounds(child, pipeEnds[0], 3);
    ::close(pipeEnds[0]);
    ASSERT_GE(reported, 3);

    EXPECT_EQ(queryNumber(file,
                          "SELECT COUNT(*) FROM pragma_integrity_check WHERE "
                          "integrity_check = 'ok'"),
              1);
    auto context = makeStack(fileStore(file))->mainContext();
    std::map<std::int64_t, int> booksOfRound;
    std::set<std::string> shelves;
    for (const auto& book : context->fetch({"Book", {}, {}, 0})) {
        ++booksOfRound[std::get<std::int64_t>(book->value("pages"))];
        shelves.insert(std::get<std::string>(book->value("shelf")));
    }
    ASSERT_GE(static_cast<std::int64_t>(booksOfRound.size()), reported);
    for (const auto& [round, books] : booksOfRound)
        EXPECT_EQ(books, booksPerRound) << "round " << round;
    EXPECT_EQ(shelves,
              (std::set<std::string>{"round " + std::to_string(booksOfRound.rbegin()->first)}));
}
