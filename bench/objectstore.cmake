# The object store beside the same work done in plain SQLite, so that the
# wrapper's own cost shows.
pkg_check_modules(BENCH_SQLITE3 REQUIRED IMPORTED_TARGET sqlite3)
tarnwick_benchmark(ObjectStoreBenchmarks LIBS quillbox platform_sqlite PkgConfig::BENCH_SQLITE3)
target_include_directories(ObjectStoreBenchmarks PRIVATE ${PROJECT_SOURCE_DIR}/tests)
