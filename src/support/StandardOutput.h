#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillbox {

// The program's diagnostic lines: plain lines on standard output, no
// timestamp, no level, recognised by their fixed prefixes.
void printLine(std::string_view line);

// Collects the printed lines instead of writing them, for as long as it
// lives. Tests use it to check the exact texts.
class CapturedOutput {
  public:
    CapturedOutput();
    ~CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    const std::vector<std::string>& lines() const { return lines_; }
    void clear() { lines_.clear(); }

  private:
    std::vector<std::string> lines_;
    std::function<void(std::string_view)> previous_;
};

}  // namespace quillbox
