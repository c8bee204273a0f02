# The list window's refresh on the Linux backend, beside the simulated one:
# the core's model over the X11 accessibility service. Needs a display: run
# it under scripts/virtual-desktop.sh.
pkg_check_modules(BENCH_REFRESH_XCB REQUIRED IMPORTED_TARGET xcb)
tarnwick_benchmark(X11RefreshWindowsBenchmarks LIBS tarnwick_core platform_x11 platform_sim
                   PkgConfig::BENCH_REFRESH_XCB SMOKE ${TARNWICK_BENCH_SMOKE_FEW_WINDOWS})
