#include "FeaturesOutput.h"

#include <gtest/gtest.h>

#include <rapidjson/error/en.h>

#include <algorithm>

namespace {

constexpr unsigned kStrict = rapidjson::kParseValidateEncodingFlag;

}  // namespace

std::string CsvTable::operator()(size_t row, const std::string& column) const {
    const auto at = std::find(header.begin(), header.end(), column);
    if (at == header.end() || row >= rows.size()) {
        ADD_FAILURE() << "no cell " << row << ", " << column;
        return "<none>";
    }
    return rows[row][static_cast<size_t>(at - header.begin())];
}

std::vector<std::string> CsvTable::Column(const std::string& column) const {
    std::vector<std::string> cells;
    for (size_t i = 0; i < rows.size(); ++i) {
        cells.push_back((*this)(i, column));
    }
    return cells;
}

std::optional<CsvTable> ParseCsvOutput(const std::string& out) {
    std::optional<CsvRows> rows = ReadCsv(out);
    if (!rows || rows->empty()) {
        ADD_FAILURE() << "not RFC 4180 CSV:\n" << out.substr(0, 2000);
        return std::nullopt;
    }
    CsvTable table;
    table.header = rows->front();
    table.rows.assign(rows->begin() + 1, rows->end());
    for (const auto& row : table.rows) {
        if (row.size() != table.header.size()) {
            ADD_FAILURE() << "a row of " << row.size() << " fields under a header of " << table.header.size();
            return std::nullopt;
        }
    }
    return table;
}

bool ParseGeoJsonOutput(const std::string& out, bool bSequence, rapidjson::Document& features) {
    if (!bSequence) {
        rapidjson::Document collection;
        collection.Parse<kStrict>(out.c_str(), out.size());
        if (collection.HasParseError()) {
            ADD_FAILURE() << rapidjson::GetParseError_En(collection.GetParseError()) << " at "
                          << collection.GetErrorOffset() << ":\n" << out.substr(0, 2000);
            return false;
        }
        if (!collection.IsObject() || !collection.HasMember("type") || collection["type"] != "FeatureCollection" ||
            !collection.HasMember("features") || !collection["features"].IsArray()) {
            ADD_FAILURE() << "no FeatureCollection";
            return false;
        }
        features.SetArray();
        features.CopyFrom(collection["features"], features.GetAllocator());
        return true;
    }
    // RFC 8142: every text begins with the record separator and ends with a line feed.
    std::string array = "[";
    size_t at = 0;
    while (at < out.size()) {
        const size_t end = out.find('\n', at);
        if (out[at] != '\x1e' || end == std::string::npos) {
            ADD_FAILURE() << "a record without RS or LF at byte " << at;
            return false;
        }
        array += (array.size() > 1 ? "," : "") + out.substr(at + 1, end - at - 1);
        at = end + 1;
    }
    array += "]";
    features.Parse<kStrict>(array.c_str(), array.size());
    if (features.HasParseError()) {
        ADD_FAILURE() << rapidjson::GetParseError_En(features.GetParseError()) << ":\n" << out.substr(0, 2000);
        return false;
    }
    return true;
}
