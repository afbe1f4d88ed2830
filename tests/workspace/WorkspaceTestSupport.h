#pragma once
// Paths of the fixtures and examples the workspace tests add, and copies of them under other names.

#include <filesystem>
#include <string>
#include <vector>

#include <zorvodsg/values/Message.h>
#include <zorvodsg/values/ILog.h>

namespace zdsg_test {

inline std::filesystem::path ExamplePath(const std::string& name) {
    return std::filesystem::path(ZDSG_EXAMPLES_DIR) / name;
}

inline std::filesystem::path FixturePath(const std::string& name) {
    return std::filesystem::path(ZDSG_TEST_DATA_DIR) / name;
}

// The codes of a log's messages, in order.
inline std::vector<long> Codes(const ZorvoDSG::System::ILog& log) {
    std::vector<long> codes;
    for (long i = 0; i < log.cMessages(); ++i) {
        codes.push_back(log.GetMessage(i).Code());
    }
    return codes;
}

}  // namespace zdsg_test
