#include "practice/workbook/Sheet.h"

#include "drawing/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <optional>
#include <regex>

namespace kalvrooms::practice::spreadsheet {

namespace {

// No number and no date is longer than this.
constexpr std::size_t longestGuess = 310;

std::wstring trimmed(const std::wstring& text) {
    const std::size_t first = text.find_first_not_of(L' ');
    return first == std::wstring::npos
               ? std::wstring()
               : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

// "-3", "(5)", "$1,234.50", "5%", "1E5"
std::optional<double> asNumber(const std::wstring& text) {
    static const std::wregex form(
        LR"((\()?([-+])?\$?(\d{1,3}(?:,\d{3})+|\d*)(\.\d*)?([eE][-+]?\d{1,3})?(%)?(\))?)");
    std::wsmatch parts;
    if (!std::regex_match(text, parts, form) || parts[1].matched != parts[7].matched ||
        std::none_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; }))
        return std::nullopt;
    std::string digits = ToUtf8(parts[3].str() + parts[4].str() + parts[5].str());
    std::erase(digits, ',');
    std::erase(digits, '+');
    double number = 0.0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (end.ec != std::errc() || end.ptr != digits.data() + digits.size())
        return std::nullopt;
    if (parts[6].matched)
        number /= 100.0;
    return parts[1].matched || parts[2] == L"-" ? -number : number;
}

std::wstring padded(int number, std::size_t digits) {
    const std::wstring text = std::to_wstring(number);
    return std::wstring(digits - std::min(digits, text.size()), L'0') + text;
}

std::wstring moment(const std::wstring& day, int hour, int minute, int second) {
    return day + L"T" + padded(hour, 2) + L":" + padded(minute, 2) + L":" + padded(second, 2) +
           L".000";
}

int monthNamed(const std::wstring& name) {
    constexpr std::array<const wchar_t*, 12> names = {L"Jan", L"Feb", L"Mar", L"Apr",
                                                      L"May", L"Jun", L"Jul", L"Aug",
                                                      L"Sep", L"Oct", L"Nov", L"Dec"};
    const auto found = std::find_if(names.begin(), names.end(), [&](const wchar_t* known) {
        return EqualsIgnoringCase(name.substr(0, 3), known);
    });
    return static_cast<int>(found - names.begin()) + 1; // 13 is no month
}

// "1/2", "2-10", "1/2/03", "2024-01-31", "3-Mar", "3 March 1999"
std::optional<CellDate> asDay(const std::wstring& text) {
    static const std::wregex form(LR"((\d{1,4})([-/ ])(\d{1,2}|[A-Za-z]{3,9})(?:\2(\d{1,4}))?)");
    std::wsmatch parts;
    if (!std::regex_match(text, parts, form))
        return std::nullopt;
    using namespace std::chrono;
    const auto thisYear = year_month_day(floor<days>(system_clock::now())).year();
    const int first = std::stoi(parts[1]);
    const int last = parts[4].matched ? std::stoi(parts[4]) : 0;
    const auto yearOf = [](int number) {
        return year(number >= 100 ? number : number < 30 ? 2000 + number : 1900 + number);
    };
    const auto date = [&](year y, int m, int d) {
        return year_month_day(y, month(static_cast<unsigned>(m)), day(static_cast<unsigned>(d)));
    };
    const year otherYear = parts[4].matched ? yearOf(last) : thisYear;
    year_month_day meant = date(thisYear, 0, 0);
    if (std::iswalpha(static_cast<wint_t>(parts[3].str()[0])) != 0)
        meant = date(otherYear, monthNamed(parts[3]), first);
    else if (parts[2] == L" ")
        return std::nullopt;
    else if (parts[1].length() == 4)
        meant = date(year(first), std::stoi(parts[3]), last);
    else
        meant = date(otherYear, first, std::stoi(parts[3]));
    if (!meant.ok() || meant.year() < year(1900))
        return std::nullopt;
    return CellDate{moment(padded(int(meant.year()), 4) + L"-" +
                               padded(static_cast<int>(unsigned(meant.month())), 2) + L"-" +
                               padded(static_cast<int>(unsigned(meant.day())), 2),
                           0, 0, 0)};
}

// "12:30", "6:00:36 PM"; the day is the one before all days.
std::optional<CellDate> asTime(const std::wstring& text) {
    static const std::wregex form(LR"((\d{1,2}):([0-5]\d)(?::([0-5]\d))?( [AaPp][Mm])?)");
    std::wsmatch parts;
    if (!std::regex_match(text, parts, form))
        return std::nullopt;
    int hour = std::stoi(parts[1]);
    if (parts[4].matched)
        hour = hour % 12 + (parts[4].str()[1] == L'P' || parts[4].str()[1] == L'p' ? 12 : 0);
    if (hour > 23)
        return std::nullopt;
    return CellDate{moment(L"1899-12-31", hour, std::stoi(parts[2]),
                           parts[3].matched ? std::stoi(parts[3]) : 0)};
}

bool isError(const std::wstring& text) {
    constexpr std::array<const wchar_t*, 7> errors = {L"#NULL!", L"#DIV/0!", L"#VALUE!", L"#REF!",
                                                      L"#NAME?", L"#NUM!",   L"#N/A"};
    return std::find(errors.begin(), errors.end(), text) != errors.end();
}

} // namespace

CellValue Typed(const std::wstring& text) {
    const std::wstring core = trimmed(text);
    if (core.empty())
        return text.empty() ? CellValue() : text;
    if (text.front() == L'\'')
        return text.substr(1);
    if (core.size() <= longestGuess) {
        if (const auto number = asNumber(core))
            return *number;
        if (auto day = asDay(core))
            return *day;
        if (auto time = asTime(core))
            return *time;
    }
    // A text that begins with a sign is a formula.
    if (text.size() > 1 && std::wstring(L"=+-").find(text.front()) != std::wstring::npos)
        return CellError{L"#NAME?"};
    if (EqualsIgnoringCase(core, L"TRUE") || EqualsIgnoringCase(core, L"FALSE"))
        return EqualsIgnoringCase(core, L"TRUE");
    if (isError(core))
        return CellError{core};
    return text;
}

} // namespace kalvrooms::practice::spreadsheet
