#include "support/StandardOutput.h"

#include <cstdio>
#include <mutex>

namespace quillbox {

namespace {

std::mutex sinkMutex;

void writeToStandardOutput(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

std::function<void(std::string_view)>& sink() {
    static std::function<void(std::string_view)> current = writeToStandardOutput;
    return current;
}

}  // namespace

void printLine(std::string_view line) {
    std::lock_guard lock(sinkMutex);
    sink()(line);
}

CapturedOutput::CapturedOutput() {
    std::lock_guard lock(sinkMutex);
    previous_ = sink();
    sink() = [this](std::string_view line) { lines_.emplace_back(line); };
}

CapturedOutput::~CapturedOutput() {
    std::lock_guard lock(sinkMutex);
    sink() = previous_;
}

}  // namespace quillbox
