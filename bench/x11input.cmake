# The cost of turning raw X input into the program's events.
tarnwick_benchmark(X11InputBenchmarks LIBS platform_x11)
pkg_check_modules(X11_BENCH_INPUT REQUIRED IMPORTED_TARGET xcb xcb-xinput xkbcommon)
target_link_libraries(X11InputBenchmarks PRIVATE PkgConfig::X11_BENCH_INPUT)
