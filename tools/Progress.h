#pragma once
// "\r[done/total] current-file" on stderr while files are read, when the command wants it (stderr a
// terminal, see bStderrTerminal()).

#include <cstddef>
#include <string>

namespace zdsg {

class Progress {
public:
    Progress(size_t total, bool bEnabled);
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

bool bStderrTerminal();

}  // namespace zdsg
