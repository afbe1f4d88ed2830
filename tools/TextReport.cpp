#include "TextReport.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <sstream>
#include <vector>

#include "CrsLabel.h"
#include "Names.h"
#include "OpenFlags.h"

namespace zdsg {

namespace {

constexpr const char* kBold = "1";
constexpr const char* kRed = "31";
constexpr const char* kGreen = "32";
constexpr const char* kYellow = "33";
constexpr const char* kDim = "2";

using Row = std::vector<std::string>;

// Columns are aligned on code points: names and texts from files are UTF-8.
size_t DisplayWidth(const std::string& text) {
    size_t width = 0;
    for (const char c : text) {
        width += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    }
    return width;
}

std::string OrDash(const std::optional<std::string>& text) { return text ? Printable(*text) : "-"; }

std::string Join(const std::vector<std::string>& parts, const char* separator) {
    std::string out;
    for (const auto& part : parts) {
        out += (out.empty() ? "" : separator) + Printable(part);
    }
    return out;
}

std::string RoleText(const std::optional<CoordinateReport>& coordinate) {
    if (!coordinate) {
        return "-";
    }
    std::string text = coordinate->axis;
    if (coordinate->zUp) {
        text += std::string(*coordinate->zUp ? " up" : " down") + ", datum " + coordinate->verticalDatumModel;
    }
    if (coordinate->axis == "T") {
        text += " " + coordinate->timeUnit;
        text += coordinate->baseTime.empty() ? " (" + Printable(coordinate->error) + ")"
                                             : " since " + coordinate->baseTime;
    }
    return text;
}

std::string PackingText(
    const std::optional<std::pair<ZorvoDSG::System::NcVariant, ZorvoDSG::System::NcVariant>>& packing) {
    if (!packing) {
        return "-";
    }
    return "scale " + ValueText(packing->first) + ", offset " + ValueText(packing->second);
}

}  // namespace

bool bColourWanted() {
    const char* noColour = std::getenv("NO_COLOR");
    return isatty(STDOUT_FILENO) != 0 && (noColour == nullptr || *noColour == '\0');
}

TextReport::TextReport(std::ostream& out, bool colour, bool bWkt) : m_out(out), m_bColour(colour), m_bWkt(bWkt) {}

std::string TextReport::Paint(const char* code, const std::string& text) const {
    if (!m_bColour || text.empty()) {
        return text;
    }
    return "\x1b[" + std::string(code) + "m" + text + "\x1b[0m";
}

namespace {

// Writes rows with every column but the last padded to its widest cell.
void Table(std::ostream& out, const std::string& indent, const std::vector<Row>& rows) {
    std::vector<size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(row[i]));
        }
    }
    for (const auto& row : rows) {
        std::string line = indent;
        for (size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) {
                line += std::string(widths[i] - DisplayWidth(row[i]) + 2, ' ');
            }
        }
        out << line << '\n';
    }
}

}  // namespace

void TextReport::Begin(const RunInfo& info) {
    if (!info.udunits2) {
        m_out << Paint(kYellow, "units: no UDUNITS-2 database loaded; unit-based coordinates are not classified")
              << '\n';
    }
    if (info.ncml) {
        m_out << Paint(kDim, "NcML: " + Printable(*info.ncml)) << '\n';
    }
    m_out << Paint(kDim, "time units: " + TimeUnitsReadingText(info.openOptions)) << '\n';
}

void TextReport::File(const FileReport& file) {
    const std::string path = Printable(file.path);
    if (!file.read) {
        m_out << Paint(kBold, path) << "  " << Paint(kRed, "refused") << '\n';
        m_out << "  " << Printable(file.error) << '\n';
    } else {
        const size_t n = file.datasets.size();
        m_out << Paint(kBold, path) << "  " << Paint(kGreen, "read") << ", " << n
              << (n == 1 ? " dataset" : " datasets") << '\n';
        for (const auto& dataset : file.datasets) {
            Dataset(dataset);
        }
    }
    if (!file.messages.empty()) {
        m_out << "  " << Paint(kBold, "messages") << '\n';
        std::vector<Row> rows;
        for (const auto& message : file.messages) {
            rows.push_back({std::to_string(message.code), message.name, Printable(message.text)});
        }
        Table(m_out, "    ", rows);
    }
    m_out << '\n';
    m_out.flush();
}

void TextReport::Dataset(const DatasetReport& d) {
    m_out << "  " << Paint(kBold, "dataset " + Printable(d.name)) << '\n';
    std::string roles;
    for (const auto& role : d.cfRoles) {
        roles += (roles.empty() ? "" : ", ") + Printable(role.variable) + " = " + Printable(role.value);
    }
    Table(m_out, "    ",
          {{"group", d.fullGroupName.empty() ? "-" : Printable(d.fullGroupName)},
           {"format", d.format},
           {"CF conventions", OrDash(d.cfVersion)},
           {"feature type", d.featureType},
           {"cf_role", roles.empty() ? "-" : roles}});
    for (const auto& error : d.errors) {
        m_out << "    " << Paint(kRed, "error") << "  " << Printable(error) << '\n';
    }

    if (!d.globalAttributes.empty()) {
        m_out << "    " << Paint(kBold, "global attributes") << '\n';
        std::vector<Row> rows;
        for (const auto& [name, value] : d.globalAttributes) {
            rows.push_back({Printable(name), ValueText(value)});
        }
        Table(m_out, "      ", rows);
    }

    m_out << "    " << Paint(kBold, "dimensions") << '\n';
    if (d.dimensions.empty()) {
        m_out << "      -\n";
    } else {
        std::vector<Row> rows;
        for (const auto& dimension : d.dimensions) {
            rows.push_back({Printable(dimension.name), std::to_string(dimension.length)});
        }
        Table(m_out, "      ", rows);
    }

    m_out << "    " << Paint(kBold, "variables") << '\n';
    if (d.variables.empty()) {
        m_out << "      -\n";
    } else {
        std::vector<Row> rows{{"name", "type", "dimensions", "role", "packing", "fill value"}};
        for (const auto& v : d.variables) {
            rows.push_back({Printable(v.name), v.type, v.dimensions.empty() ? "-" : Join(v.dimensions, ","),
                            RoleText(v.coordinate), PackingText(v.packing), ValueText(v.fillValue)});
        }
        // The header is painted after alignment so that escape codes do not count as width.
        std::ostringstream aligned;
        Table(aligned, "      ", rows);
        std::istringstream lines(aligned.str());
        std::string line;
        bool first = true;
        while (std::getline(lines, line)) {
            m_out << (first ? "      " + Paint(kDim, line.substr(6)) : line) << '\n';
            first = false;
        }
    }

    if (!d.crs.empty()) {
        m_out << "    " << Paint(kBold, "grid mappings") << '\n';
        for (const auto& crs : d.crs) {
            m_out << "      " << Printable(crs.gridMapping) << Paint(kDim, " (used by " + Join(crs.usedBy, ", ") + ")")
                  << '\n';
            // A CRS by name and identifier; its WKT, a screenful, only on request.
            std::vector<Row> rows;
            const std::string error = Paint(kRed, "error: ");
            rows.push_back({"horizontal", crs.wkt ? Printable(CrsLabel(*crs.wkt))
                                                  : error + Printable(crs.wktError.value_or(""))});
            if (crs.vwktError) {
                rows.push_back({"vertical", error + Printable(*crs.vwktError)});
            } else if (crs.wkt || crs.vwkt) {
                rows.push_back({"vertical", crs.vwkt ? Printable(CrsLabel(*crs.vwkt)) : "-"});
            }
            if (m_bWkt && crs.wkt) {
                rows.push_back({"horizontal WKT", Printable(*crs.wkt)});
            }
            if (m_bWkt && crs.vwkt) {
                rows.push_back({"vertical WKT", Printable(*crs.vwkt)});
            }
            Table(m_out, "        ", rows);
        }
    }
}

void TextReport::End(const Summary& summary) {
    auto plural = [](size_t n, const char* word) { return std::to_string(n) + " " + word + (n == 1 ? "" : "s"); };
    std::string line = plural(summary.files, "file") + ": " + std::to_string(summary.read) + " read, " +
                       std::to_string(summary.refused) + " refused; " + plural(summary.datasets, "dataset") + ", " +
                       plural(summary.variables, "variable") + ", " + plural(summary.messages, "message");
    m_out << Paint(summary.refused != 0 ? kRed : kBold, line) << '\n';
    m_out.flush();
}

}  // namespace zdsg
