# The real program on a real display, driven as the end-to-end tests drive
# it: from the chord pressed through the test extension to the panel mapped
# and painted; and what must not grow (wake-ups while idle, memory over many
# showings of the panel). Run them under scripts/virtual-desktop.sh.
pkg_check_modules(XCB_DAMAGE REQUIRED IMPORTED_TARGET xcb-damage)
tarnwick_benchmark(PanelLatency LIBS e2e_support PkgConfig::XCB_DAMAGE SMOKE --presses 5)
add_dependencies(PanelLatency tarnwick)
tarnwick_benchmark(ProgramFootprint LIBS e2e_support SMOKE --idle-seconds 1 --cycles 5)
add_dependencies(ProgramFootprint tarnwick)
