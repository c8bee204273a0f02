# The list window's refresh on the simulated desktop: the cost of the model
# and the accessibility client above the platform.
tarnwick_benchmark(RefreshWindowsBenchmarks LIBS tarnwick_core platform_sim)
