# The Settings window on the simulated desktop: opening and closing it, and
# listing many hidden applications; and reading launch at login back from a
# real autostart entry.
tarnwick_benchmark(SettingsBenchmarks LIBS tarnwick_core platform_sim platform_xdg)
