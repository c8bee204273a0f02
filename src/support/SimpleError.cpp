#include "support/SimpleError.h"

namespace quillbox {

SimpleError::SimpleError(std::string message, std::optional<std::string> userRecoverySuggestion,
                         SourceLocation location)
    : SimpleError(std::move(message), std::move(userRecoverySuggestion),
                  static_cast<long>(location.line()), location.function_name(),
                  location.file_name()) {}

SimpleError::SimpleError(std::string message, std::optional<std::string> userRecoverySuggestion,
                         long line, std::string function, std::string file)
    : message_(std::move(message)),
      userRecoverySuggestion_(std::move(userRecoverySuggestion)),
      line_(line),
      function_(std::move(function)),
      file_(std::move(file)) {
    description_ = "SimpleError: '" + message_ + "'";
    debugDescription_ =
        description_ + " in " + file_ + ":" + std::to_string(line_) + " - " + function_;
}

}  // namespace quillbox
