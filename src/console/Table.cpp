#include "console/Table.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ostream>

namespace kalvrooms {
namespace {

// Code points, as a terminal shows one column for each of those that room lists hold.
std::size_t width(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string cellText(const nlohmann::ordered_json& cell, int decimals, const Speech& say) {
    if (cell.is_null())
        return {};
    if (cell.is_string()) {
        // A line of the table is one line whatever stands in a text.
        std::string text = cell.get<std::string>();
        std::replace_if(
            text.begin(), text.end(), [](char byte) { return byte >= 0 && byte < ' '; }, ' ');
        return text;
    }
    if (cell.is_number_float())
        return NumberFor(say, cell.get<double>(), decimals);
    return cell.dump();
}

void printText(std::ostream& out, const Table& table, const Speech& say) {
    std::vector<std::vector<std::string>> lines(1);
    std::vector<bool> isNumber(table.columns.size(), !table.rows.empty());
    for (const Table::Column& column : table.columns)
        lines.front().push_back(column.title);
    for (const Table::Row& row : table.rows) {
        lines.emplace_back();
        for (std::size_t i = 0; i < row.size(); ++i) {
            lines.back().push_back(cellText(row[i], table.columns[i].decimals, say));
            if (!row[i].is_number() && !row[i].is_null())
                isNumber[i] = false;
        }
    }
    std::vector<std::size_t> widths(table.columns.size(), 0);
    for (const auto& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], width(line[i]));
    for (const auto& line : lines) {
        std::string text;
        for (std::size_t i = 0; i < line.size(); ++i) {
            const std::string gap(widths[i] - width(line[i]), ' ');
            text += (i == 0 ? "" : "  ") + (isNumber[i] ? gap + line[i] : line[i] + gap);
        }
        text.erase(text.find_last_not_of(' ') + 1);
        out << text << '\n';
    }
}

void printCsv(std::ostream& out, const Table& table) {
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        out << (i == 0 ? "" : ",") << CsvField(table.columns[i].key);
    out << "\r\n";
    for (const Table::Row& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            out << (i == 0 ? "" : ",");
            if (row[i].is_string())
                out << CsvField(row[i].get<std::string>());
            else if (!row[i].is_null())
                out << CsvField(row[i].dump());
        }
        out << "\r\n";
    }
}

void printJson(std::ostream& out, const Table& table) {
    out << "[";
    for (std::size_t r = 0; r < table.rows.size(); ++r) {
        nlohmann::ordered_json object = nlohmann::ordered_json::object();
        for (std::size_t i = 0; i < table.columns.size(); ++i)
            object[table.columns[i].key] = table.rows[r][i];
        out << (r == 0 ? "\n" : ",\n")
            << object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    out << "\n]\n";
}

} // namespace

void Print(std::ostream& out, const Table& table, TableForm form, const Speech& say) {
    switch (form) {
    case TableForm::Text:
        return printText(out, table, say);
    case TableForm::Csv:
        return printCsv(out, table);
    case TableForm::Json:
        return printJson(out, table);
    }
}

std::string NumberFor(const Speech& say, double value, int decimals) {
    std::array<char, 400> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, decimals)
                         .ptr;
    std::string text(digits.data(), end);
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-')
        text.erase(0, 1);
    if (say.german)
        std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

std::string CsvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char byte : text)
        quoted += byte == '"' ? std::string("\"\"") : std::string(1, byte);
    return quoted + "\"";
}

} // namespace kalvrooms
