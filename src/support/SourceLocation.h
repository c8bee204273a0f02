#pragma once

#include <cstdint>
#include <version>

#ifdef __cpp_lib_source_location
#include <source_location>
#endif

namespace quillbox {

#ifdef __cpp_lib_source_location
using SourceLocation = std::source_location;
#else
// The same interface for compilers whose library lacks std::source_location
// (clang before 15 with libstdc++), from the builtins both compilers have.
class SourceLocation {
  public:
    static constexpr SourceLocation current(std::uint_least32_t line = __builtin_LINE(),
                                            const char* file = __builtin_FILE(),
                                            const char* function = __builtin_FUNCTION()) noexcept {
        SourceLocation location;
        location.line_ = line;
        location.file_ = file;
        location.function_ = function;
        return location;
    }
    constexpr std::uint_least32_t line() const noexcept { return line_; }
    constexpr std::uint_least32_t column() const noexcept { return 0; }
    constexpr const char* file_name() const noexcept { return file_; }
    constexpr const char* function_name() const noexcept { return function_; }

  private:
    std::uint_least32_t line_ = 0;
    const char* file_ = "";
    const char* function_ = "";
};
#endif

}  // namespace quillbox
