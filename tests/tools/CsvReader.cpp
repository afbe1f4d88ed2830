#include "CsvReader.h"

std::optional<CsvRows> ReadCsv(const std::string& text) {
    CsvRows rows;
    std::vector<std::string> row;
    std::string field;
    size_t i = 0;
    while (i < text.size()) {
        if (text[i] == '"') {
            // Quoted: up to the lone closing quote; a doubled quote is one quote.
            for (++i;; ++i) {
                if (i >= text.size()) {
                    return std::nullopt;
                }
                if (text[i] == '"') {
                    if (i + 1 < text.size() && text[i + 1] == '"') {
                        field += '"';
                        ++i;
                        continue;
                    }
                    ++i;
                    break;
                }
                field += text[i];
            }
        } else {
            while (i < text.size() && text[i] != ',' && text[i] != '\r' && text[i] != '\n') {
                if (text[i] == '"') {
                    return std::nullopt;  // a quote inside an unquoted field
                }
                field += text[i++];
            }
        }
        if (i < text.size() && text[i] == ',') {
            row.push_back(std::move(field));
            field.clear();
            ++i;
            continue;
        }
        if (text.compare(i, 2, "\r\n") != 0) {
            return std::nullopt;  // a bare LF or CR, or text after a closing quote
        }
        row.push_back(std::move(field));
        field.clear();
        rows.push_back(std::move(row));
        row.clear();
        i += 2;
    }
    if (!row.empty() || !field.empty()) {
        return std::nullopt;  // the last record has no line end
    }
    return rows;
}
