#pragma once

#include <exception>
#include <initializer_list>
#include <string>
#include <vector>

namespace quillbox {

// Several errors reported as one.
class MultiError : public std::exception {
  public:
    explicit MultiError(std::vector<std::exception_ptr> errors);
    MultiError(std::initializer_list<std::exception_ptr> errors);

    const std::vector<std::exception_ptr>& errors() const { return errors_; }

    // "MultiError: [<text>, <text>]"
    const char* what() const noexcept override { return description_.c_str(); }

  private:
    std::vector<std::exception_ptr> errors_;
    std::string description_;
};

}  // namespace quillbox
