#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// Severity of a log record. Texts carry their own tags ("#Error ...",
// "#Critical ..."); the level decides only where a record goes.
enum class LogLevel { debug, info, error, fault };

struct LogRecord {
    LogLevel level = LogLevel::debug;
    std::string text;
    // The innermost activity open on the logging thread; empty outside any.
    std::string activity;
};

// The unified log of the library code: records with a level, kept with the
// name of the activity they happened in.
class Log {
  public:
    using Sink = std::function<void(const LogRecord&)>;

    static void debug(std::string text) { write(LogLevel::debug, std::move(text)); }
    static void info(std::string text) { write(LogLevel::info, std::move(text)); }
    static void error(std::string text) { write(LogLevel::error, std::move(text)); }
    static void fault(std::string text) { write(LogLevel::fault, std::move(text)); }
    static void write(LogLevel level, std::string text);

    // Replaces the sink; gives the previous one back.
    static Sink exchangeSink(Sink sink);
    // Errors and faults to standard error; info and debug only when the
    // environment variable TARNWICK_LOG_LEVEL asks for them ("info", "debug").
    static void writeToStandardError(const LogRecord& record);
};

// A named activity for as long as it lives: records written on this thread
// meanwhile carry its name. Activities nest.
class LogActivity {
  public:
    explicit LogActivity(std::string name);
    ~LogActivity();
    LogActivity(const LogActivity&) = delete;
    LogActivity& operator=(const LogActivity&) = delete;

    // The innermost activity of the calling thread; empty when none is open.
    static std::string current();
};

// Collects every record, at every level, for as long as it lives.
class CapturedLog {
  public:
    CapturedLog();
    ~CapturedLog();
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    std::vector<LogRecord> records() const;
    std::vector<std::string> texts() const;
    bool contains(std::string_view text) const;
    bool contains(LogLevel level, std::string_view text) const;
    void clear();

  private:
    struct State;
    std::shared_ptr<State> state_;
    Log::Sink previous_;
};

// printf-style formatting for the log texts that carry numbers ("%hu",
// "%lu", "%d").
std::string formatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace quillbox
