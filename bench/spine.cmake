# The per-event cost of the root coordinator's monitors on the simulated
# desktop.
tarnwick_benchmark(RootCoordinatorBenchmarks LIBS tarnwick_core platform_sim)
