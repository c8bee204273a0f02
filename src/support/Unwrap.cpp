#include "support/Unwrap.h"

namespace quillbox::detail {

void unwrapFailed(std::string_view message, const SourceLocation& location) {
    fatalError(std::string(location.file_name()) + ":" + std::to_string(location.line()) + " - " +
               std::string(message));
}

}  // namespace quillbox::detail
