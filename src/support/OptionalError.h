#pragma once

#include <exception>
#include <optional>
#include <string>

#include "support/SourceLocation.h"
#include "support/TypeName.h"

namespace quillbox {

// Raised when an optional that had to hold a value was empty. Its one kind,
// nilValue, names the type that was expected, an optional message and where
// the unwrap happened.
class OptionalError : public std::exception {
  public:
    enum class Kind { nilValue };

    template <typename Wrapped>
    static OptionalError nilValue(std::optional<std::string> message = std::nullopt,
                                  SourceLocation location = SourceLocation::current()) {
        return OptionalError(typeName<Wrapped>(), std::move(message),
                             static_cast<long>(location.line()), location.file_name());
    }

    OptionalError(std::string ofType, std::optional<std::string> message, long line,
                  std::string file);

    Kind kind() const { return Kind::nilValue; }
    const std::string& ofType() const { return ofType_; }
    const std::optional<std::string>& message() const { return message_; }
    long line() const { return line_; }
    const std::string& file() const { return file_; }

    // "OptionalError.nilValue of <type>", then " - <message>" when there is one.
    const std::string& debugDescription() const { return description_; }
    std::optional<std::string> errorDescription() const { return description_; }
    std::optional<std::string> failureReason() const { return description_; }
    std::optional<std::string> recoverySuggestion() const { return description_; }
    std::optional<std::string> helpAnchor() const { return description_; }

    const char* what() const noexcept override { return description_.c_str(); }

  private:
    std::string ofType_;
    std::optional<std::string> message_;
    long line_;
    std::string file_;
    std::string description_;
};

}  // namespace quillbox
