#include "support/Log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

namespace quillbox {

namespace {

std::mutex sinkMutex;

Log::Sink& sink() {
    static Log::Sink current = Log::writeToStandardError;
    return current;
}

thread_local std::vector<std::string> activityStack;

LogLevel thresholdFromEnvironment() {
    const char* value = std::getenv("TARNWICK_LOG_LEVEL");
    if (!value)
        return LogLevel::error;
    std::string_view level(value);
    if (level == "debug")
        return LogLevel::debug;
    if (level == "info")
        return LogLevel::info;
    return LogLevel::error;
}

const char* levelName(LogLevel level) {
    switch (level) {
        case LogLevel::debug:
            return "debug";
        case LogLevel::info:
            return "info";
        case LogLevel::error:
            return "error";
        case LogLevel::fault:
            return "fault";
    }
    return "?";
}

}  // namespace

void Log::write(LogLevel level, std::string text) {
    LogRecord record{level, std::move(text), LogActivity::current()};
    Sink current;
    {
        std::lock_guard lock(sinkMutex);
        current = sink();
    }
    // Called without the lock, so that a sink may log in turn.
    if (current)
        current(record);
}

Log::Sink Log::exchangeSink(Sink replacement) {
    std::lock_guard lock(sinkMutex);
    return std::exchange(sink(), std::move(replacement));
}

void Log::writeToStandardError(const LogRecord& record) {
    static const LogLevel threshold = thresholdFromEnvironment();
    if (record.level < threshold)
        return;
    if (record.activity.empty()) {
        std::fprintf(stderr, "[%s] %s\n", levelName(record.level), record.text.c_str());
    } else {
        std::fprintf(stderr, "[%s] %s: %s\n", levelName(record.level), record.activity.c_str(),
                     record.text.c_str());
    }
}

LogActivity::LogActivity(std::string name) {
    activityStack.push_back(std::move(name));
}

LogActivity::~LogActivity() {
    activityStack.pop_back();
}

std::string LogActivity::current() {
    return activityStack.empty() ? std::string() : activityStack.back();
}

struct CapturedLog::State {
    mutable std::mutex mutex;
    std::vector<LogRecord> records;
};

CapturedLog::CapturedLog() : state_(std::make_shared<State>()) {
    previous_ = Log::exchangeSink([state = state_](const LogRecord& record) {
        std::lock_guard lock(state->mutex);
        state->records.push_back(record);
    });
}

CapturedLog::~CapturedLog() {
    Log::exchangeSink(std::move(previous_));
}

std::vector<LogRecord> CapturedLog::records() const {
    std::lock_guard lock(state_->mutex);
    return state_->records;
}

std::vector<std::string> CapturedLog::texts() const {
    std::vector<std::string> texts;
    for (const auto& record : records())
        texts.push_back(record.text);
    return texts;
}

bool CapturedLog::contains(std::string_view text) const {
    for (const auto& record : records()) {
        if (record.text == text)
            return true;
    }
    return false;
}

bool CapturedLog::contains(LogLevel level, std::string_view text) const {
    for (const auto& record : records()) {
        if (record.level == level && record.text == text)
            return true;
    }
    return false;
}

void CapturedLog::clear() {
    std::lock_guard lock(state_->mutex);
    state_->records.clear();
}

std::string formatText(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string text;
    if (length > 0) {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, arguments);
        text.resize(static_cast<std::size_t>(length));
    }
    va_end(arguments);
    return text;
}

}  // namespace quillbox
