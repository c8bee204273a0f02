#include "support/MultiError.h"

#include "support/ErrorText.h"

namespace quillbox {

MultiError::MultiError(std::vector<std::exception_ptr> errors) : errors_(std::move(errors)) {
    description_ = "MultiError: [";
    for (std::size_t i = 0; i < errors_.size(); ++i) {
        if (i)
            description_ += ", ";
        description_ += errorText(errors_[i]);
    }
    description_ += "]";
}

MultiError::MultiError(std::initializer_list<std::exception_ptr> errors)
    : MultiError(std::vector<std::exception_ptr>(errors)) {}

}  // namespace quillbox
