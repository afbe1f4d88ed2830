// The one entry point of the benchmark program; each benchmark lives in its own file.
#include <benchmark/benchmark.h>

BENCHMARK_MAIN();
