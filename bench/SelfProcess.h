#pragma once
// Runs this benchmark program again as a child process, for measurements that need a process of
// their own (a peak resident set that nothing else has raised).

#include <string>
#include <vector>

namespace zdsg_bench {

// Runs /proc/self/exe with `arguments` and returns what it wrote to stdout; std::runtime_error when
// it cannot be started or does not exit with status 0.
std::string RunSelf(const std::vector<std::string>& arguments);

}  // namespace zdsg_bench
