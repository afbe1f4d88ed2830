#pragma once
// Reading `zdsg features` output back for checks: CSV as a table by column name, GeoJSON and GeoJSON
// text sequences as one array of features. Malformed output fails the current test.

#include <rapidjson/document.h>

#include <optional>
#include <string>
#include <vector>

#include "CsvReader.h"

struct CsvTable {
    std::vector<std::string> header;
    CsvRows rows;  // without the header

    // The cell of a row in the named column; fails the test when there is no such column.
    std::string operator()(size_t row, const std::string& column) const;
    std::vector<std::string> Column(const std::string& column) const;
};

// The CSV table of a run's stdout; nothing (and a test failure) when it is not RFC 4180 CSV with one
// header and rows of its width.
std::optional<CsvTable> ParseCsvOutput(const std::string& out);

// The features of a FeatureCollection, or of a text sequence (every record RS, JSON, LF), as one
// JSON array in `features`; false (and a test failure) for invalid JSON, invalid UTF-8 or framing.
bool ParseGeoJsonOutput(const std::string& out, bool bSequence, rapidjson::Document& features);
