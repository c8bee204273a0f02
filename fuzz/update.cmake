# The update feed reader: any bytes from the network must read as a feed or
# as damage, never crash.
tarnwick_fuzzer(AppcastFuzzer LIBS platform_update platform)
