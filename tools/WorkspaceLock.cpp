#include "WorkspaceLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include "Names.h"

namespace zdsg {

namespace {

std::string SystemError(const std::string& what, int error) { return what + ": " + std::strerror(error); }

// flock, retried when a signal interrupts the wait.
int Flock(int fd, int operation) {
    int result = 0;
    do {
        result = ::flock(fd, operation);
    } while (result != 0 && errno == EINTR);
    return result;
}

}  // namespace

std::optional<WorkspaceLock> WorkspaceLock::s_Acquire(const std::filesystem::path& directory, std::string& error) {
    const int fd = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) {
        error = SystemError(directory.string(), errno);
        return std::nullopt;
    }
    WorkspaceLock lock(fd);
    if (Flock(fd, LOCK_EX | LOCK_NB) == 0) {
        return lock;
    }
    if (errno != EWOULDBLOCK) {
        error = SystemError(directory.string() + ": cannot be locked", errno);
        return std::nullopt;
    }
    std::cerr << "zdsg: waiting for another run to finish with " << Printable(directory.string()) << '\n';
    if (Flock(fd, LOCK_EX) != 0) {
        error = SystemError(directory.string() + ": cannot be locked", errno);
        return std::nullopt;
    }
    return lock;
}

WorkspaceLock::WorkspaceLock(WorkspaceLock&& other) noexcept : m_fd(other.m_fd) { other.m_fd = -1; }

WorkspaceLock& WorkspaceLock::operator=(WorkspaceLock&& other) noexcept {
    if (this != &other) {
        Release();
        m_fd = other.m_fd;
        other.m_fd = -1;
    }
    return *this;
}

WorkspaceLock::~WorkspaceLock() { Release(); }

void WorkspaceLock::Release() {
    if (m_fd >= 0) {
        ::close(m_fd);
        m_fd = -1;
    }
}

}  // namespace zdsg
