# From the chord pressed through the test extension to the panel mapped, in
# the real program on a real display; run it under scripts/virtual-desktop.sh.
if(TARGET e2e_support)
  add_executable(PanelLatency PanelLatency.cpp)
  target_link_libraries(PanelLatency PRIVATE e2e_support)
  add_dependencies(PanelLatency tarnwick)
  tarnwick_warnings(PanelLatency)
endif()
