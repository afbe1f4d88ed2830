#include "OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace zdsg {

OutputFile::OutputFile(const std::string& path) {
    m_buffer.resize(kBufferSize);
    if (path.empty() || path == "-") {
        m_name = "standard output";
        m_fd = STDOUT_FILENO;
        return;
    }
    m_name = path;
    m_fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (m_fd < 0) {
        Fail(errno);
    }
    m_bOwned = true;
}

OutputFile::~OutputFile() {
    // Close() reports errors; here the run is already failing, or Close() has been called.
    if (m_bOwned) {
        ::close(m_fd);
    }
}

bool OutputFile::bTerminal() const { return isatty(m_fd) != 0; }

void OutputFile::Fail(int error) const {
    throw OutputError("cannot write " + m_name + ": " + std::strerror(error));
}

void OutputFile::MakeRoom(size_t count) {
    Flush();
    if (count > m_buffer.size()) {
        m_buffer.resize(count);  // one text longer than the buffer
    }
}

void OutputFile::Flush() {
    if (m_bFailed) {
        m_size = 0;
        return;
    }
    const char* data = m_buffer.data();
    size_t left = m_size;
    while (left > 0) {
        const ssize_t written = ::write(m_fd, data, left);
        if (written < 0) {
            const int error = errno;
            if (error == EINTR) {
                continue;
            }
            m_bFailed = true;
            m_size = 0;
            Fail(error);
        }
        data += written;
        left -= static_cast<size_t>(written);
    }
    m_size = 0;
}

void OutputFile::Close() {
    Flush();
    if (m_bOwned) {
        m_bOwned = false;
        if (::close(m_fd) != 0) {
            Fail(errno);
        }
    }
}

}  // namespace zdsg
