# The cancellable stream: how long a yielded element takes to reach its
# consumer.
tarnwick_benchmark(AsyncStreamBenchmarks LIBS quillbox)
