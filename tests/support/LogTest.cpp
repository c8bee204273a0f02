#include <gtest/gtest.h>

#include <thread>

#include "support/Log.h"

using quillbox::CapturedLog;
using quillbox::Log;
using quillbox::LogActivity;
using quillbox::LogLevel;

TEST(Log, CapturesEveryLevelAsGivenAndNestedCapturesRestoreTheirSink) {
    CapturedLog outer;
    {
        CapturedLog log;
        Log::debug("Translation cache miss");
        Log::info("plain info");
        Log::error("#Error Invalid key code");
        Log::fault("#Critical Failed to create an input source");
        const auto records = log.records();
        ASSERT_EQ(records.size(), 4u);
        EXPECT_EQ(records[0].level, LogLevel::debug);
        EXPECT_EQ(records[3].level, LogLevel::fault);
        EXPECT_TRUE(log.contains(LogLevel::error, "#Error Invalid key code"));
        EXPECT_FALSE(log.contains(LogLevel::debug, "#Error Invalid key code"));
    }
    Log::error("to outer");
    EXPECT_EQ(outer.texts(), std::vector<std::string>{"to outer"});
}

TEST(Log, RecordsCarryTheInnermostActivityOfTheirThread) {
    CapturedLog log;
    {
        LogActivity outer("outer");
        Log::error("in outer");
        {
            LogActivity inner("Key Code -> Literal");
            Log::error("in inner");
            std::thread([] { Log::error("other thread"); }).join();
        }
        Log::error("back in outer");
    }
    Log::error("outside");

    const auto records = log.records();
    ASSERT_EQ(records.size(), 5u);
    EXPECT_EQ(records[0].activity, "outer");
    EXPECT_EQ(records[1].activity, "Key Code -> Literal");
    EXPECT_EQ(records[2].activity, "");
    EXPECT_EQ(records[3].activity, "outer");
    EXPECT_EQ(records[4].activity, "");
}

TEST(Log, FormatsThePrintfTextsOfTheLibrary) {
    EXPECT_EQ(
        quillbox::formatText("#Error Unable to translate keyCode %hu and modifierFlags %lu: %d",
                             static_cast<unsigned short>(0), 131072ul, -50),
        "#Error Unable to translate keyCode 0 and modifierFlags 131072: -50");
    EXPECT_EQ(quillbox::formatText("<%hu>", static_cast<unsigned short>(65535)), "<65535>");
}
