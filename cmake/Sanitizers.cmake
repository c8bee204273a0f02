# GCC's flow analysis for -Wmaybe-uninitialized sees through the
# sanitizers' instrumentation badly and warns about values held in
# std::optional and std::variant that are always set; the warning stays on
# in the plain build, where it means something.
if(TARNWICK_SANITIZE OR TARNWICK_SANITIZE_THREADS)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()

if(TARNWICK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

if(TARNWICK_SANITIZE_THREADS)
  add_compile_options(-fsanitize=thread)
  add_link_options(-fsanitize=thread)
endif()
