#pragma once

#include <string>

namespace quillbox {

// Text masked for logs: a secret or personal value shows as asterisks, with
// as much of its shape as the level allows.
class Censor {
  public:
    enum class Level {
        complete,                          // "***"
        allowCharCount,                    // one asterisk a character
        firstAndLastRevealedNoCharCount,   // "a***z"
        firstAndLastRevealedAndCharCount,  // "a****z", as long as the text
    };

    explicit Censor(std::string rawValue, Level level = Level::complete)
        : rawValue_(std::move(rawValue)), level_(level) {}

    const std::string& rawValue() const { return rawValue_; }
    Level level() const { return level_; }

    // The masked text. Texts of fewer than five characters show as "***" at
    // both revealing levels, since their ends would give away too much.
    std::string description() const;
    std::string debugDescription() const { return description(); }

  private:
    std::string rawValue_;
    Level level_;
};

}  // namespace quillbox
