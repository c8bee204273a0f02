# The real program with tens to a thousand windows of the application it
# lists, made by the harness itself on the display: chord to painted, CPU
# per new window, a burst and Escape in the middle of it, memory.
pkg_check_modules(XCB_DAMAGE REQUIRED IMPORTED_TARGET xcb-damage)
tarnwick_benchmark(ManyWindows LIBS e2e_support PkgConfig::XCB_DAMAGE SMOKE --counts 10 --presses 2 --moves 10)
add_dependencies(ManyWindows tarnwick)
