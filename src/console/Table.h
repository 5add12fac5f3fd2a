#pragma once
// A table as it leaves the program: aligned for a reader, as CSV (RFC 4180) or as JSON, both UTF-8.

#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "console/Speech.h"

namespace kalvrooms {

enum class TableForm { Text, Csv, Json };

struct Table {
    struct Column {
        std::string key;   // in CSV and JSON
        std::string title; // for a reader
        int decimals = 2;  // of numbers, for a reader
    };
    using Row = std::vector<nlohmann::ordered_json>;

    std::vector<Column> columns;
    std::vector<Row> rows;
};

void Print(std::ostream& out, const Table& table, TableForm form, const Speech& say);

// Decimal mark of the language, a fixed count of decimals.
std::string NumberFor(const Speech& say, double value, int decimals);
// Quoted where it has to be.
std::string CsvField(const std::string& text);

} // namespace kalvrooms
