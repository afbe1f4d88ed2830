#include "ToolRunner.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <fstream>

extern char** environ;

namespace {

// Long enough for the whole corpus under the sanitizers; a run that takes longer hangs.
constexpr auto kTimeLimit = std::chrono::seconds(300);

struct Pipe {
    int fd[2] = {-1, -1};
    Pipe() {
        // Close-on-exec, so that a child spawned by another thread does not hold this pipe open.
        if (pipe2(fd, O_CLOEXEC) != 0) {
            fd[0] = fd[1] = -1;
        }
    }
    ~Pipe() {
        CloseRead();
        CloseWrite();
    }
    void CloseRead() {
        if (fd[0] >= 0) {
            close(fd[0]);
            fd[0] = -1;
        }
    }
    void CloseWrite() {
        if (fd[1] >= 0) {
            close(fd[1]);
            fd[1] = -1;
        }
    }
};

std::vector<std::string> Environment(const std::vector<std::string>& extra, const std::vector<std::string>& unset) {
    auto nameOf = [](const std::string& entry) { return entry.substr(0, entry.find('=')); };
    std::vector<std::string> result;
    for (char** e = environ; *e != nullptr; ++e) {
        const std::string entry(*e);
        bool drop = false;
        for (const auto& name : unset) {
            drop = drop || nameOf(entry) == name;
        }
        for (const auto& replacement : extra) {
            drop = drop || nameOf(entry) == nameOf(replacement);
        }
        if (!drop) {
            result.push_back(entry);
        }
    }
    result.insert(result.end(), extra.begin(), extra.end());
    return result;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (auto& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

ToolRun RunTool(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
                const std::vector<std::string>& unset, const std::string& stdoutPath) {
    ToolRun run;
    Pipe out;
    Pipe err;
    if (out.fd[0] < 0 || err.fd[0] < 0) {
        ADD_FAILURE() << "pipe failed";
        return run;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (stdoutPath.empty()) {
        posix_spawn_file_actions_adddup2(&actions, out.fd[1], STDOUT_FILENO);
    } else {
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, stdoutPath.c_str(), O_WRONLY, 0);
        posix_spawn_file_actions_addclose(&actions, out.fd[1]);
    }
    posix_spawn_file_actions_adddup2(&actions, err.fd[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, out.fd[0]);
    posix_spawn_file_actions_addclose(&actions, err.fd[0]);

    std::vector<std::string> argv{ZDSG_TOOL_PATH};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<std::string> envp = Environment(environment, unset);
    auto argvPointers = Pointers(argv);
    auto envpPointers = Pointers(envp);
    pid_t pid = 0;
    const int spawned = posix_spawn(&pid, ZDSG_TOOL_PATH, &actions, nullptr, argvPointers.data(), envpPointers.data());
    posix_spawn_file_actions_destroy(&actions);
    out.CloseWrite();
    err.CloseWrite();
    if (spawned != 0) {
        ADD_FAILURE() << "cannot run " << ZDSG_TOOL_PATH << ": " << spawned;
        return run;
    }

    // Both pipes are drained together, so a child that fills one of them never blocks.
    const auto deadline = std::chrono::steady_clock::now() + kTimeLimit;
    pollfd fds[2] = {{out.fd[0], POLLIN, 0}, {err.fd[0], POLLIN, 0}};
    std::string* sinks[2] = {&run.out, &run.err};
    int open = 2;
    while (open > 0) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            run.timedOut = true;
            kill(pid, SIGKILL);
            break;
        }
        const int ready = poll(fds, 2, static_cast<int>(left.count()));
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd >= 0 && (fds[i].revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
                char buffer[65536];
                const ssize_t n = read(fds[i].fd, buffer, sizeof buffer);
                if (n > 0) {
                    sinks[i]->append(buffer, static_cast<size_t>(n));
                } else if (n == 0 || errno != EINTR) {
                    fds[i].fd = -1;
                    --open;
                }
            }
        }
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFEXITED(status)) {
        run.exitStatus = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        run.signal = WTERMSIG(status);
    }
    return run;
}

std::filesystem::path ExamplePath(const std::string& name) { return std::filesystem::path(ZDSG_EXAMPLES_DIR) / name; }

std::filesystem::path ScratchDirectory(const std::string& name) {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::filesystem::path dir = std::filesystem::path(ZDSG_TOOL_SCRATCH_DIR) /
                                (std::string(info->test_suite_name()) + "." + info->name()) / name;
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    return dir;
}

void WriteFile(const std::filesystem::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

bool ParseJson(const ToolRun& run, rapidjson::Document& document) {
    document.Parse(run.out.c_str(), run.out.size());
    if (document.HasParseError()) {
        ADD_FAILURE() << "invalid JSON at offset " << document.GetErrorOffset() << ":\n" << run.out.substr(0, 2000);
        return false;
    }
    if (!document.IsObject() || !document.HasMember("files") || !document["files"].IsArray() ||
        !document.HasMember("summary")) {
        ADD_FAILURE() << "JSON without files and summary";
        return false;
    }
    return true;
}

const rapidjson::Value* FindDataset(const rapidjson::Document& document, const std::string& name) {
    for (const auto& file : document["files"].GetArray()) {
        for (const auto& dataset : file["datasets"].GetArray()) {
            if (dataset["name"].GetString() == name) {
                return &dataset;
            }
        }
    }
    return nullptr;
}

const rapidjson::Value* FindVariable(const rapidjson::Value& dataset, const std::string& name) {
    for (const auto& variable : dataset["variables"].GetArray()) {
        if (variable["name"].GetString() == name) {
            return &variable;
        }
    }
    return nullptr;
}
