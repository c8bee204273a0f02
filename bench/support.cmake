# Address validation, persistent hashing and curve measurement.
tarnwick_benchmark(SupportBenchmarks LIBS plumbline quillbox)
