# The X11 accessibility backend: reads and window listing against a real X
# server. Needs a display: run it under scripts/virtual-desktop.sh.
pkg_check_modules(BENCH_XCB REQUIRED IMPORTED_TARGET xcb)
tarnwick_benchmark(X11AccessibilityBenchmarks LIBS platform_x11 platform_sim PkgConfig::BENCH_XCB
                   SMOKE ${TARNWICK_BENCH_SMOKE_FEW_WINDOWS})
# The backend's memory while windows come and go; the long run is the soak,
# apart from the normal run.
tarnwick_benchmark(X11WindowChurn LIBS platform_x11 platform_sim PkgConfig::BENCH_XCB
                   SMOKE --cycles 10)
add_test(NAME x11_window_churn_soak COMMAND X11WindowChurn --cycles 20000)
set_tests_properties(x11_window_churn_soak PROPERTIES LABELS soak RUN_SERIAL TRUE TIMEOUT 1800)
