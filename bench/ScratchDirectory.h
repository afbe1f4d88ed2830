#pragma once
// A directory of its own under the system's temporary directory, removed with everything in it
// when the object goes.

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace zdsg_bench {

class ScratchDirectory {
public:
    explicit ScratchDirectory(const std::string& prefix) {
        std::string pattern = (std::filesystem::temp_directory_path() / (prefix + "XXXXXX")).string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot create a temporary directory: " + pattern);
        }
        m_path = pattern;
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ~ScratchDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace zdsg_bench
