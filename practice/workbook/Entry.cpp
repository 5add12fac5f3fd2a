#include "practice/workbook/Entry.h"

#include "drawing/Text.h"
#include "practice/workbook/Calendar.h"
#include "practice/workbook/Formula.h"
#include "practice/workbook/SheetError.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr std::size_t keptDigits = 15;

struct Guess {
    double number = 0.0;
    std::wstring format; // empty: that of the cell
};

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

std::wstring trimmed(const std::wstring& text) {
    const std::size_t first = text.find_first_not_of(L' ');
    return first == std::wstring::npos
               ? std::wstring()
               : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

// A whole number of at most `most` digits.
std::optional<int> whole(const std::wstring& text, std::size_t most) {
    if (text.empty() || text.size() > most)
        return std::nullopt;
    int number = 0;
    for (const wchar_t c : text) {
        if (!isDigit(c))
            return std::nullopt;
        number = number * 10 + (c - L'0');
    }
    return number;
}

// --------------------------------------------------------------------------------- numbers

// A number without sign; digits beyond those that a cell keeps become zeros.
class NumberReader {
  public:
    explicit NumberReader(const std::wstring& text) : text_(text) {}

    bool Read() {
        while (at_ < text_.size() && (isDigit(text_[at_]) || text_[at_] == L',')) {
            if (text_[at_] == L',') {
                // Three digits follow every mark.
                if (digits_.empty() || !groupFollows())
                    return false;
                grouped = true;
            } else {
                digit(false);
            }
            ++at_;
        }
        if (at_ < text_.size() && text_[at_] == L'.') {
            for (++at_; at_ < text_.size() && isDigit(text_[at_]); ++at_) {
                digit(true);
                fraction = true;
            }
        }
        if (digits_.empty())
            return false;
        if (at_ < text_.size() && (text_[at_] == L'E' || text_[at_] == L'e')) {
            std::size_t end = at_ + 1;
            if (end < text_.size() && (text_[end] == L'+' || text_[end] == L'-'))
                ++end;
            const std::size_t first = end;
            while (end < text_.size() && isDigit(text_[end]))
                ++end;
            if (end == first || end - first > 4)
                return false;
            const int power = *whole(text_.substr(first, end - first), 4);
            exponent_ += text_[first - 1] == L'-' ? -power : power;
            scientific = true;
            at_ = end;
        }
        if (at_ != text_.size())
            return false;
        const std::string plain = digits_ + "e" + std::to_string(exponent_);
        const auto end = std::from_chars(plain.data(), plain.data() + plain.size(), number);
        if (end.ec == std::errc::result_out_of_range && exponent_ < 0)
            number = 0.0;
        else if (end.ec != std::errc())
            return false;
        return true;
    }

    double number = 0.0;
    bool grouped = false;
    bool fraction = false;
    bool scientific = false;

  private:
    bool groupFollows() const {
        for (std::size_t i = 1; i <= 3; ++i) {
            if (at_ + i >= text_.size() || !isDigit(text_[at_ + i]))
                return false;
        }
        return at_ + 4 >= text_.size() || !isDigit(text_[at_ + 4]);
    }
    void digit(bool afterPoint) {
        const bool leadingZero = digits_ == "0";
        if (leadingZero)
            digits_.clear();
        if (digits_.size() < keptDigits) {
            digits_ += static_cast<char>(text_[at_]);
            exponent_ -= afterPoint ? 1 : 0;
        } else {
            exponent_ += afterPoint ? 0 : 1;
        }
    }

    const std::wstring& text_;
    std::size_t at_ = 0;
    std::string digits_;
    int exponent_ = 0;
};

std::optional<Guess> asNumber(std::wstring text) {
    bool negative = false;
    bool isSigned = false;
    const auto takeSign = [&] {
        if (!isSigned && !text.empty() && (text.front() == L'+' || text.front() == L'-')) {
            negative = text.front() == L'-';
            isSigned = true;
            text = trimmed(text.substr(1));
        }
    };
    if (text.size() > 2 && text.front() == L'(' && text.back() == L')') {
        negative = isSigned = true;
        text = trimmed(text.substr(1, text.size() - 2));
    }
    takeSign();
    bool money = false;
    if (!text.empty() && text.front() == L'$') {
        money = true;
        text = trimmed(text.substr(1));
        takeSign();
    }
    bool percent = false;
    if (!text.empty() && text.back() == L'%') {
        percent = true;
        text = trimmed(text.substr(0, text.size() - 1));
    }
    NumberReader reader(text);
    if (!reader.Read())
        return std::nullopt;
    Guess guess;
    guess.number = negative ? -reader.number : reader.number;
    if (percent) {
        guess.number /= 100.0;
        guess.format = reader.fraction ? L"0.00%" : L"0%";
    } else if (money) {
        guess.format = reader.fraction ? L"$#,##0.00" : L"$#,##0";
    } else if (reader.scientific) {
        guess.format = L"0.00E+00";
    } else if (reader.grouped) {
        guess.format = reader.fraction ? L"#,##0.00" : L"#,##0";
    }
    return guess;
}

// "1 1/2"
std::optional<Guess> asFraction(const std::wstring& text) {
    const std::size_t blank = text.find(L' ');
    const std::size_t slash = text.find(L'/');
    if (blank == std::wstring::npos || slash == std::wstring::npos || slash < blank)
        return std::nullopt;
    const bool negative = text.front() == L'-';
    const auto ones = whole(text.substr(negative ? 1 : 0, blank - (negative ? 1 : 0)), 9);
    const auto above = whole(trimmed(text.substr(blank, slash - blank)), 5);
    const auto below = whole(trimmed(text.substr(slash + 1)), 5);
    if (!ones || !above || !below || *below == 0)
        return std::nullopt;
    const double number = *ones + static_cast<double>(*above) / *below;
    return Guess{negative ? -number : number, *below < 10 ? L"# ?/?" : L"# \?\?/\?\?"};
}

// --------------------------------------------------------------------------------- dates

std::optional<int> asYear(const std::wstring& text) {
    const auto year = whole(text, 4);
    if (!year || text.size() == 3)
        return std::nullopt;
    if (text.size() == 4)
        return *year >= 1900 ? year : std::nullopt;
    return *year < 30 ? 2000 + *year : 1900 + *year;
}

std::optional<int> asMonthName(const std::wstring& text) {
    constexpr std::array<const wchar_t*, 12> names = {
        L"January", L"February", L"March",     L"April",   L"May",      L"June",
        L"July",    L"August",   L"September", L"October", L"November", L"December"};
    for (std::size_t month = 0; month < names.size(); ++month) {
        const std::wstring name = names[month];
        if (EqualsIgnoringCase(text, name) || EqualsIgnoringCase(text, name.substr(0, 3)))
            return static_cast<int>(month) + 1;
    }
    return std::nullopt;
}

std::optional<Guess> dated(int year, int month, int day, const wchar_t* format) {
    const Date date{year, month, day};
    if (!IsDate(date))
        return std::nullopt;
    return Guess{SerialOf(date), format};
}

std::optional<Guess> asNumericDate(const std::vector<std::wstring>& parts, int thisYear) {
    const auto first = whole(parts[0], 4);
    const auto second = whole(parts[1], 4);
    if (!first || !second)
        return std::nullopt;
    if (parts.size() == 2) {
        if (parts[0].size() > 2)
            return std::nullopt;
        if (parts[1].size() <= 2) {
            if (const auto guess = dated(thisYear, *first, *second, L"d-mmm"))
                return guess;
        }
        const auto year = asYear(parts[1]);
        return year ? dated(*year, *first, 1, L"mmm-yy") : std::nullopt;
    }
    if (parts[0].size() == 4) {
        const auto day = whole(parts[2], 2);
        return day ? dated(*first, *second, *day, L"m/d/yyyy") : std::nullopt;
    }
    const auto year = asYear(parts[2]);
    return year ? dated(*year, *first, *second, L"m/d/yyyy") : std::nullopt;
}

std::optional<Guess> asNamedDate(const std::vector<std::wstring>& parts, int thisYear) {
    if (const auto month = asMonthName(parts[0])) {
        if (parts.size() == 3) {
            const auto day = whole(parts[1], 2);
            const auto year = asYear(parts[2]);
            return day && year ? dated(*year, *month, *day, L"d-mmm-yy") : std::nullopt;
        }
        const auto day = whole(parts[1], 2);
        if (day) {
            if (const auto guess = dated(thisYear, *month, *day, L"d-mmm"))
                return guess;
        }
        const auto year = asYear(parts[1]);
        return year ? dated(*year, *month, 1, L"mmm-yy") : std::nullopt;
    }
    const auto day = whole(parts[0], 2);
    const auto month = asMonthName(parts[1]);
    if (!day || !month)
        return std::nullopt;
    if (parts.size() == 2)
        return dated(thisYear, *month, *day, L"d-mmm");
    const auto year = asYear(parts[2]);
    return year ? dated(*year, *month, *day, L"d-mmm-yy") : std::nullopt;
}

std::optional<Guess> asDate(const std::wstring& text, int thisYear) {
    std::vector<std::wstring> parts(1);
    wchar_t mark = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        wchar_t c = text[i];
        if (c == L',' && i + 1 < text.size() && text[i + 1] == L' ')
            c = text[++i];
        if (c == L'/' || c == L'-' || c == L' ') {
            if (mark != 0 && mark != c)
                return std::nullopt;
            mark = c;
            parts.emplace_back();
        } else {
            parts.back() += c;
        }
    }
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    if (mark != L' ') {
        if (const auto guess = asNumericDate(parts, thisYear))
            return guess;
    }
    return asNamedDate(parts, thisYear);
}

std::optional<Guess> asTime(std::wstring text) {
    int halfDay = -1;
    if (text.size() > 2 && EqualsIgnoringCase(text.substr(text.size() - 2), L"AM"))
        halfDay = 0;
    else if (text.size() > 2 && EqualsIgnoringCase(text.substr(text.size() - 2), L"PM"))
        halfDay = 1;
    if (halfDay >= 0) {
        text.resize(text.size() - 2);
        if (text.back() != L' ')
            return std::nullopt;
        text = trimmed(text);
    }
    std::vector<int> parts;
    for (std::size_t start = 0;;) {
        const std::size_t colon = text.find(L':', start);
        const auto part = whole(text.substr(start, colon - start), parts.empty() ? 4 : 2);
        if (!part || (!parts.empty() && *part > 59))
            return std::nullopt;
        parts.push_back(*part);
        if (colon == std::wstring::npos)
            break;
        start = colon + 1;
    }
    if (parts.size() > 3 || (parts.size() == 1 && halfDay < 0) ||
        (halfDay >= 0 && (parts[0] > 12 || parts[0] == 0)))
        return std::nullopt;
    const bool seconds = parts.size() == 3;
    parts.resize(3);
    const int hours = halfDay < 0 ? parts[0] : parts[0] % 12 + 12 * halfDay;
    Guess guess;
    guess.number = (hours * 3600.0 + parts[1] * 60.0 + parts[2]) / 86400.0;
    if (hours > 23)
        guess.format = L"[h]:mm:ss";
    else if (halfDay >= 0)
        guess.format = seconds ? L"h:mm:ss AM/PM" : L"h:mm AM/PM";
    else
        guess.format = seconds ? L"h:mm:ss" : L"h:mm";
    return guess;
}

std::optional<Guess> asMoment(const std::wstring& text, int thisYear) {
    if (auto guess = asDate(text, thisYear))
        return guess;
    if (auto guess = asTime(text))
        return guess;
    for (std::size_t blank = text.find(L' '); blank != std::wstring::npos;
         blank = text.find(L' ', blank + 1)) {
        const auto date = asDate(text.substr(0, blank), thisYear);
        const auto time = asTime(trimmed(text.substr(blank)));
        if (date && time && time->number < 1.0)
            return Guess{date->number + time->number, L"m/d/yyyy h:mm"};
    }
    return std::nullopt;
}

} // namespace

Cell Typed(const std::wstring& text, const std::wstring& format, int thisYear) {
    if (text.size() > LongestText)
        throw SheetError(L"A cell takes 32,767 characters at most.");
    Cell cell;
    cell.format = format;
    if (text.empty())
        return cell;
    if (KindOf(format) == FormatKind::Text) {
        cell.value = text;
        return cell;
    }
    if (text.front() == L'\'') {
        cell.value = text.substr(1);
        return cell;
    }
    const std::wstring core = trimmed(text);
    std::optional<Guess> guess;
    if (!core.empty()) {
        guess = asNumber(core);
        if (!guess)
            guess = asFraction(core);
        if (!guess)
            guess = asMoment(core, thisYear);
    }
    if (guess) {
        cell.value = guess->number;
        if (!guess->format.empty() && KindOf(format) == FormatKind::General)
            cell.format = guess->format;
    } else if (text.size() > 1 && text.front() == L'=') {
        cell.formula = text;
        cell.value = Evaluated(text);
    } else if (text.size() > 1 && (text.front() == L'+' || text.front() == L'-')) {
        // Whoever begins with a sign means to calculate.
        cell.formula = L"=" + text;
        cell.value = Evaluated(cell.formula);
    } else if (EqualsIgnoringCase(core, L"TRUE")) {
        cell.value = true;
    } else if (EqualsIgnoringCase(core, L"FALSE")) {
        cell.value = false;
    } else if (const auto error = ErrorFrom(core)) {
        cell.value = *error;
    } else {
        cell.value = text;
    }
    return cell;
}

} // namespace kalvrooms::practice::spreadsheet
