#include "SelfProcess.h"

#include <cerrno>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace zdsg_bench {

namespace {

// A file descriptor closed once, when the object goes or on Close().
class Descriptor {
public:
    explicit Descriptor(int fd = -1) : m_fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { Close(); }
    int Get() const { return m_fd; }
    void Close() {
        if (m_fd != -1) {
            ::close(m_fd);
            m_fd = -1;
        }
    }

private:
    int m_fd;
};

}  // namespace

std::string RunSelf(const std::vector<std::string>& arguments) {
    std::string program = "/proc/self/exe";
    std::vector<char*> argv{program.data()};
    std::vector<std::string> copies = arguments;
    for (std::string& argument : copies) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);

    int fds[2];
    if (::pipe(fds) != 0) {
        throw std::runtime_error("pipe failed");
    }
    Descriptor readEnd(fds[0]);
    Descriptor writeEnd(fds[1]);
    const pid_t pid = ::fork();
    if (pid < 0) {
        throw std::runtime_error("fork failed");
    }
    if (pid == 0) {
        // Only async-signal-safe calls between fork and exec.
        ::dup2(writeEnd.Get(), STDOUT_FILENO);
        ::close(readEnd.Get());
        ::close(writeEnd.Get());
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    writeEnd.Close();
    std::string output;
    char buffer[512];
    for (;;) {
        const ssize_t n = ::read(readEnd.Get(), buffer, sizeof buffer);
        if (n > 0) {
            output.append(buffer, static_cast<size_t>(n));
        } else if (n == 0 || errno != EINTR) {
            break;
        }
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("child benchmark process failed");
    }
    return output;
}

}  // namespace zdsg_bench
