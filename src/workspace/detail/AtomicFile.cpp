#include <zorvodsg/workspace/detail/AtomicFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

namespace ZorvoNetCDFDSG::detail {

namespace {

[[noreturn]] void Fail(const char* operation, const std::filesystem::path& path, int error) {
    throw std::filesystem::filesystem_error(operation, path, std::error_code(error, std::generic_category()));
}

// The process's file-creation mask, read without changing it (umask() would, for every thread).
mode_t ProcessUmask() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("Umask:", 0) == 0) {
            return static_cast<mode_t>(std::stoul(line.substr(6), nullptr, 8));
        }
    }
    return 022;
}

// The temporary file: removed unless it was renamed into place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& target)
        : m_name(target.string() + std::string(kTemporaryMarker) + std::string(kTemporaryRandomChars, 'X')) {
        m_fd = ::mkstemp(m_name.data());
        if (m_fd < 0) {
            Fail("mkstemp", target, errno);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
        if (!m_bKept) {
            ::unlink(m_name.c_str());
        }
    }

    void Write(std::string_view text) {
        while (!text.empty()) {
            const ssize_t written = ::write(m_fd, text.data(), text.size());
            if (written < 0) {
                if (errno == EINTR) {
                    continue;
                }
                Fail("write", m_name, errno);
            }
            text.remove_prefix(static_cast<size_t>(written));
        }
    }
    void Commit(const std::filesystem::path& target) {
        // mkstemp makes the file readable by its owner only; the file gets the usual permissions.
        if (::fchmod(m_fd, 0666 & ~ProcessUmask()) != 0 || ::fsync(m_fd) != 0) {
            Fail("fsync", m_name, errno);
        }
        const int closed = ::close(m_fd);
        m_fd = -1;
        if (closed != 0) {
            Fail("close", m_name, errno);
        }
        if (::rename(m_name.c_str(), target.c_str()) != 0) {
            Fail("rename", target, errno);
        }
        m_bKept = true;
    }

private:
    std::string m_name;
    int m_fd = -1;
    bool m_bKept = false;
};

}  // namespace

bool bTemporaryFileName(std::string_view name, std::string_view target) {
    return name.size() == target.size() + kTemporaryMarker.size() + kTemporaryRandomChars &&
           name.substr(0, target.size()) == target && name.substr(target.size(), kTemporaryMarker.size()) == kTemporaryMarker;
}

void ReplaceFileContent(const std::filesystem::path& path, std::string_view text) {
    TemporaryFile temporary(path);
    temporary.Write(text);
    temporary.Commit(path);
}

}  // namespace ZorvoNetCDFDSG::detail
