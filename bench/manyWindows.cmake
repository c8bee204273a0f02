# The real program with tens to a thousand windows of the application it
# lists, made by the harness itself on the display: chord to painted, CPU
# per new window, a burst and Escape in the middle of it, memory. Beside it
# runs a toolkit window that does nothing, whose CPU per new window is the
# floor under the program's.
pkg_check_modules(XCB_DAMAGE REQUIRED IMPORTED_TARGET xcb-damage)
find_package(Qt6 REQUIRED COMPONENTS Widgets)
add_executable(IdleToolkitWindow IdleToolkitWindow.cpp)
target_link_libraries(IdleToolkitWindow PRIVATE Qt6::Widgets)
tarnwick_warnings(IdleToolkitWindow)
tarnwick_benchmark(ManyWindows LIBS e2e_support platform_x11 PkgConfig::XCB_DAMAGE SMOKE --counts 10 --presses 2 --moves 10)
target_compile_definitions(ManyWindows PRIVATE IDLE_TOOLKIT_WINDOW="$<TARGET_FILE:IdleToolkitWindow>")
add_dependencies(ManyWindows tarnwick IdleToolkitWindow)
