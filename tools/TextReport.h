#pragma once
// Readable text with aligned columns; colour only when asked for (a terminal without NO_COLOR).

#include <iosfwd>

#include "Report.h"

namespace zdsg {

class TextReport final : public Report {
public:
    // `bWkt`: print each coordinate system's full WKT under its name.
    TextReport(std::ostream& out, bool colour, bool bWkt);

    void Begin(const RunInfo& info) override;
    void File(const FileReport& file) override;
    void End(const Summary& summary) override;

private:
    void Dataset(const DatasetReport& dataset);
    std::string Paint(const char* code, const std::string& text) const;

    std::ostream& m_out;
    bool m_bColour;
    bool m_bWkt;
};

// Whether standard output should be coloured: a terminal, and NO_COLOR unset or empty.
bool bColourWanted();

}  // namespace zdsg
