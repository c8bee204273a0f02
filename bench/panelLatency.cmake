# From the chord pressed through the test extension to the panel mapped and
# painted, in the real program on a real display; run it under
# scripts/virtual-desktop.sh.
if(TARGET e2e_support)
  add_executable(PanelLatency PanelLatency.cpp)
  pkg_check_modules(XCB_DAMAGE REQUIRED IMPORTED_TARGET xcb-damage)
  target_link_libraries(PanelLatency PRIVATE e2e_support PkgConfig::XCB_DAMAGE)
  add_dependencies(PanelLatency tarnwick)
  tarnwick_warnings(PanelLatency)
endif()
