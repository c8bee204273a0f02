# The preference file reader: any bytes on disk must read as a dictionary or
# as damage, never crash.
tarnwick_fuzzer(PreferencesFileFuzzer LIBS platform_xdg platform)
