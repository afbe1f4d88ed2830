#pragma once
// "\r[done/total] current-file" on stderr while many files are read, only when stderr is a terminal.

#include <cstddef>
#include <string>

namespace zdsg {

class Progress {
public:
    explicit Progress(size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void Show(size_t done, const std::string& current);
    // Erases the line, so that other output starts on a clean line.
    void Clear();

private:
    size_t m_total;
    bool m_bEnabled;
    bool m_bShown = false;
    size_t m_width;
};

}  // namespace zdsg
