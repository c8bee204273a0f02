# The X11 accessibility backend: reads and window listing against a real X
# server. Needs a display: run it under scripts/virtual-desktop.sh.
pkg_check_modules(BENCH_XCB REQUIRED IMPORTED_TARGET xcb)
tarnwick_benchmark(X11AccessibilityBenchmarks LIBS platform_x11 platform_sim PkgConfig::BENCH_XCB)
