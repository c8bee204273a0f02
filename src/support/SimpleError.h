#pragma once

#include <exception>
#include <optional>
#include <string>

#include "support/SourceLocation.h"

namespace quillbox {

// A general error that carries a message and where it was made.
class SimpleError : public std::exception {
  public:
    explicit SimpleError(std::string message,
                         std::optional<std::string> userRecoverySuggestion = std::nullopt,
                         SourceLocation location = SourceLocation::current());
    SimpleError(std::string message, std::optional<std::string> userRecoverySuggestion, long line,
                std::string function, std::string file);

    const std::string& message() const { return message_; }
    const std::optional<std::string>& userRecoverySuggestion() const {
        return userRecoverySuggestion_;
    }
    long line() const { return line_; }
    const std::string& function() const { return function_; }
    const std::string& file() const { return file_; }

    // "SimpleError: '<message>'"
    const std::string& description() const { return description_; }
    // The description, then " in <file>:<line> - <function>".
    const std::string& debugDescription() const { return debugDescription_; }
    std::optional<std::string> errorDescription() const { return debugDescription_; }

    const char* what() const noexcept override { return description_.c_str(); }

  private:
    std::string message_;
    std::optional<std::string> userRecoverySuggestion_;
    long line_;
    std::string function_;
    std::string file_;
    std::string description_;
    std::string debugDescription_;
};

}  // namespace quillbox
