#include "support/ErrorText.h"

#include <stdexcept>

namespace quillbox {

std::string errorText(const std::exception_ptr& error) {
    if (!error)
        return "no error";
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "an error of an unknown type";
    }
}

}  // namespace quillbox
