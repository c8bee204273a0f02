# Our own code builds with warnings on and none left; third-party headers are
# included as system headers so that their warnings don't count against us.
function(tarnwick_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
                                           -Wold-style-cast -Wcast-align -Woverloaded-virtual)
endfunction()
