#pragma once
// An exclusive lock on a workspace directory, held by a run that changes the workspace from reading
// conf.json to writing it back, so that two runs at once cannot each write the entries they read
// and lose the other's. Runs that only read need none: conf.json is replaced whole, by a rename.

#include <filesystem>
#include <optional>
#include <string>

namespace zdsg {

class WorkspaceLock {
public:
    // Waits while another run holds the lock, saying so once on stderr. std::nullopt with `error` set
    // when the directory cannot be opened or locked.
    static std::optional<WorkspaceLock> s_Acquire(const std::filesystem::path& directory, std::string& error);

    WorkspaceLock(WorkspaceLock&& other) noexcept;
    WorkspaceLock& operator=(WorkspaceLock&& other) noexcept;
    WorkspaceLock(const WorkspaceLock&) = delete;
    WorkspaceLock& operator=(const WorkspaceLock&) = delete;
    ~WorkspaceLock();

private:
    explicit WorkspaceLock(int fd) : m_fd(fd) {}
    void Release();

    int m_fd = -1;  // the directory, open; closing it releases the lock
};

}  // namespace zdsg
