# Our own code builds with warnings on and none left; third-party headers are
# included as system headers so that their warnings don't count against us.
function(tarnwick_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                           -Wold-style-cast -Wcast-align -Woverloaded-virtual)
  # Compiled a batch at a time, a file's classes in an anonymous namespace
  # sit in an included file, where GCC takes them for a header's and warns
  # of their linkage; compiled on its own the same file is fine.
  if(CMAKE_UNITY_BUILD)
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()
