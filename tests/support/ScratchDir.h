#pragma once
// A test fixture with a scratch directory of its own, removed after each test.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zdsg_test {

class ScratchDirTest : public ::testing::Test {
protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        m_dir = std::filesystem::temp_directory_path() /
                ("zdsg_" + std::to_string(::getpid()) + "_" + info->test_suite_name() + "_" + info->name());
        std::filesystem::remove_all(m_dir);
        std::filesystem::create_directories(m_dir);
    }
    void TearDown() override { std::filesystem::remove_all(m_dir); }

    std::filesystem::path Write(const std::string& name, const std::string& bytes) const {
        const std::filesystem::path path = m_dir / name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

    static std::string Read(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    std::filesystem::path m_dir;
};

}  // namespace zdsg_test
