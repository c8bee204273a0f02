# The X11 workspace and the backend it belongs to: opening the backend,
# listing the running applications, and reading one application's windows
# through the accessibility service. Needs a display: run it under
# scripts/virtual-desktop.sh.
pkg_check_modules(BENCH_WORKSPACE_XCB REQUIRED IMPORTED_TARGET xcb)
tarnwick_benchmark(X11WorkspaceBenchmarks LIBS platform_x11 platform_sim
                   PkgConfig::BENCH_WORKSPACE_XCB SMOKE ${TARNWICK_BENCH_SMOKE_FEW_WINDOWS})
