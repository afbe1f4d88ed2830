#include "BoundingBox.h"

#include <charconv>
#include <cmath>
#include <vector>

namespace zdsg {

namespace {

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

// Locale-independent, whole text only.
std::optional<double> Number(std::string_view text) {
    text = Trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

std::optional<BoundingBox> ParseBoundingBox(const std::string& text, std::string& error) {
    std::vector<double> values;
    std::string_view rest(text);
    while (true) {
        const size_t comma = rest.find(',');
        const std::string_view part = rest.substr(0, comma);
        const std::optional<double> value = Number(part);
        if (!value) {
            error = "not a finite number: '" + std::string(Trimmed(part)) + "'";
            return std::nullopt;
        }
        values.push_back(*value);
        if (comma == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(comma + 1);
    }
    if (values.size() != 4 && values.size() != 6) {
        error = "4 or 6 numbers expected (XMIN,YMIN,XMAX,YMAX[,ZMIN,ZMAX]), got " + std::to_string(values.size());
        return std::nullopt;
    }
    BoundingBox box{values[0], values[1], values[2], values[3]};
    if (values.size() == 6) {
        box.bHasZ = true;
        box.zMin = values[4];
        box.zMax = values[5];
    }
    // A minimum above its maximum is taken for a typing error rather than a box across the antimeridian.
    if (box.xMin > box.xMax || box.yMin > box.yMax || (box.bHasZ && box.zMin > box.zMax)) {
        error = "each minimum must be at most its maximum";
        return std::nullopt;
    }
    return box;
}

}  // namespace zdsg
