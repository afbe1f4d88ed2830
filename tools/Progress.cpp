#include "Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>

#include "Names.h"

namespace zdsg {

namespace {

size_t TerminalWidth() {
    winsize size{};
    if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        return size.ws_col;
    }
    return 80;
}

}  // namespace

bool bStderrTerminal() { return isatty(STDERR_FILENO) != 0; }

Progress::Progress(size_t total, bool bEnabled)
    : m_total(total), m_bEnabled(bEnabled), m_width(m_bEnabled ? TerminalWidth() : 0) {}

Progress::~Progress() { Clear(); }

void Progress::Show(size_t done, const std::string& current) {
    if (!m_bEnabled) {
        return;
    }
    std::string line = "[" + std::to_string(done) + "/" + std::to_string(m_total) + "] " + Printable(current);
    // One terminal line at most, or the carriage return would not get back to its start; cut on a
    // character boundary.
    if (m_width > 1 && line.size() >= m_width) {
        size_t cut = m_width - 1;
        while (cut > 0 && (static_cast<unsigned char>(line[cut]) & 0xC0) == 0x80) {
            --cut;
        }
        line.resize(cut);
    }
    std::fprintf(stderr, "\r\x1b[K%s", line.c_str());
    std::fflush(stderr);
    m_bShown = true;
}

void Progress::Clear() {
    if (m_bShown) {
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
        m_bShown = false;
    }
}

}  // namespace zdsg
