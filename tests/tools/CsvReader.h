#pragma once
// Reads CSV text back as RFC 4180 defines it (CRLF record ends, quoted fields with doubled quotes),
// strictly: anything else makes the parse fail, so a test sees malformed output.

#include <optional>
#include <string>
#include <vector>

using CsvRows = std::vector<std::vector<std::string>>;

// The records, the header included; nothing when the text is not RFC 4180 CSV with CRLF line ends.
std::optional<CsvRows> ReadCsv(const std::string& text);
