#include "support/OptionalError.h"

namespace quillbox {

OptionalError::OptionalError(std::string ofType, std::optional<std::string> message, long line,
                             std::string file)
    : ofType_(std::move(ofType)),
      message_(std::move(message)),
      line_(line),
      file_(std::move(file)) {
    description_ = "OptionalError.nilValue of " + ofType_;
    if (message_)
        description_ += " - " + *message_;
}

}  // namespace quillbox
