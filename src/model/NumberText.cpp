#include "model/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

std::function<NumberLocale()>& localeQuery() {
    static std::function<NumberLocale()> query;
    return query;
}

const std::wstring& decimalMarkOf(const NumberLocale& locale) {
    static const std::wstring point = L".";
    return locale.DecimalMark.empty() ? point : locale.DecimalMark;
}

constexpr wchar_t noBreakSpace = 0x00A0;

// White space of every script, not only the blank: numbers are pasted from documents and tables.
bool isWhiteSpace(wchar_t c) {
    return (c >= 0x0009 && c <= 0x000D) || c == 0x0020 || c == 0x0085 || c == noBreakSpace ||
           c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 ||
           c == 0x202F || c == 0x205F || c == 0x3000;
}

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

int hexDigitOf(wchar_t c) {
    if (isDigit(c))
        return c - L'0';
    if (c >= L'A' && c <= L'F')
        return c - L'A' + 10;
    if (c >= L'a' && c <= L'f')
        return c - L'a' + 10;
    return 16;
}

enum class Verdict { NoNumber, TooLarge, Number };

struct Reading {
    Verdict verdict = Verdict::NoNumber;
    double value = 0.0;
};

// Digits of a decimal number on their way to a 64-bit float. More digits than any float can need
// are only remembered as "there was something", so a text of any length costs its length.
class DecimalDigits {
  public:
    void addWhole(int digit) {
        any_ = true;
        if (!keep(digit))
            ++exponent_;
    }
    void addFraction(int digit) {
        any_ = true;
        if (keep(digit))
            --exponent_;
    }
    void shift(std::int64_t powerOfTen) { exponent_ += powerOfTen; }
    bool any() const { return any_; }

    Reading reading() const {
        if (digits_.empty())
            return {Verdict::Number, 0.0};
        if (digits_.size() <= exactDigits && std::abs(exponent_) <= exactPower)
            return {Verdict::Number, exactValue()};
        const std::int64_t magnitude = static_cast<std::int64_t>(digits_.size()) + exponent_;
        if (magnitude > 400)
            return {Verdict::TooLarge, 0.0};
        if (magnitude < -400)
            return {Verdict::Number, 0.0};
        std::string plain = digits_;
        std::int64_t exponent = exponent_;
        if (remainder_) {
            plain += '1';
            --exponent;
        }
        plain += 'e' + std::to_string(exponent);
        double value = 0.0;
        const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
        if (result.ec == std::errc::result_out_of_range || std::isinf(value))
            return magnitude > 0 ? Reading{Verdict::TooLarge, 0.0} : Reading{Verdict::Number, 0.0};
        return {Verdict::Number, value};
    }

  private:
    // So many digits and such a power of ten are floats themselves: one multiplication or division
    // rounds as it should.
    static constexpr std::size_t exactDigits = 15;
    static constexpr std::int64_t exactPower = 22;

    double exactValue() const {
        static constexpr std::array<double, exactPower + 1> powers = {
            1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
            1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
        std::int64_t whole = 0;
        for (const char digit : digits_)
            whole = whole * 10 + (digit - '0');
        const double power = powers[static_cast<std::size_t>(std::abs(exponent_))];
        const auto value = static_cast<double>(whole);
        return exponent_ < 0 ? value / power : value * power;
    }

    // Halfway between two neighbouring floats there are at most 767 significant digits.
    static constexpr std::size_t enough = 800;

    bool keep(int digit) {
        if (digits_.size() >= enough) {
            remainder_ = remainder_ || digit != 0;
            return false;
        }
        if (digit != 0 || !digits_.empty())
            digits_ += static_cast<char>('0' + digit);
        return true;
    }

    std::string digits_;
    std::int64_t exponent_ = 0;
    bool remainder_ = false;
    bool any_ = false;
};

class Reader {
  public:
    Reader(std::wstring_view text, const NumberLocale& locale)
        : rest_(text.substr(0, text.find(L'\0'))), locale_(locale),
          decimalMark_(decimalMarkOf(locale)) {}

    Reading read() {
        readSurroundings(true);
        Reading reading = startsWith(L"&") ? readBased() : readDecimal();
        if (reading.verdict == Verdict::NoNumber)
            return reading;
        readSurroundings(false);
        if (!rest_.empty() || open_ || (based_ && currency_))
            return {};
        if (negative_)
            reading.value = -reading.value;
        return reading;
    }

  private:
    bool startsWith(std::wstring_view mark) const {
        return !mark.empty() && rest_.substr(0, mark.size()) == mark;
    }

    bool take(std::wstring_view mark) {
        if (!startsWith(mark))
            return false;
        rest_.remove_prefix(mark.size());
        return true;
    }

    bool takeDecimalMark() {
        return take(decimalMark_) ||
               (!startsWith(locale_.GroupingMark) && takeOfAmount(locale_.CurrencyDecimalMark));
    }

    bool takeGroupingMark() {
        return take(locale_.GroupingMark) || takeBlankFor(locale_.GroupingMark) ||
               takeOfAmount(locale_.CurrencyGroupingMark);
    }

    // A mark that only amounts of money have.
    bool takeOfAmount(std::wstring_view mark) {
        if (!take(mark))
            return false;
        amount_ = true;
        return true;
    }

    // Where the mark is the unbreakable blank people type the ordinary one.
    bool takeBlankFor(const std::wstring& mark) {
        return mark.size() == 1 && mark[0] == noBreakSpace && take(L" ");
    }

    // White space, one sign or pair of parentheses and one currency symbol, in any order, may
    // stand around the number.
    void readSurroundings(bool inFront) {
        while (!rest_.empty())
            if (!currency_ && take(locale_.CurrencySymbol))
                currency_ = true;
            else if (isWhiteSpace(rest_.front()))
                rest_.remove_prefix(1);
            else if (!signed_ && take(L"-"))
                signed_ = negative_ = true;
            else if (!signed_ && take(L"+"))
                signed_ = true;
            else if (inFront && !signed_ && take(L"("))
                signed_ = negative_ = open_ = true;
            else if (!inFront && open_ && take(L")"))
                open_ = false;
            else
                return;
    }

    Reading readDecimal() {
        DecimalDigits digits;
        bool inFraction = false;
        bool begun = false;
        while (!rest_.empty()) {
            if (isDigit(rest_.front())) {
                const int digit = rest_.front() - L'0';
                rest_.remove_prefix(1);
                inFraction ? digits.addFraction(digit) : digits.addWhole(digit);
            } else if (!inFraction && takeDecimalMark()) {
                inFraction = true;
            } else if (!begun || !takeGroupingMark()) {
                break;
            }
            begun = true;
        }
        if (!digits.any())
            return {};
        // An amount of money has no exponent; a currency symbol behind one comes too late for that.
        if (!currency_ && !amount_)
            digits.shift(readExponent());
        return digits.reading();
    }

    // 0 when there is none; an exponent letter without digits is left standing.
    std::int64_t readExponent() {
        if (rest_.empty() || std::wstring_view(L"eEdD").find(rest_.front()) == std::wstring::npos)
            return 0;
        std::size_t at = 1;
        const bool negative = at < rest_.size() && rest_[at] == L'-';
        if (at < rest_.size() && (rest_[at] == L'-' || rest_[at] == L'+'))
            ++at;
        if (at == rest_.size() || !isDigit(rest_[at]))
            return 0;
        // Far beyond what the digits of any text could still bring back into range.
        constexpr std::int64_t limit = 1'000'000'000'000'000;
        std::int64_t exponent = 0;
        for (; at < rest_.size() && isDigit(rest_[at]); ++at)
            exponent = std::min(limit, exponent * 10 + (rest_[at] - L'0'));
        rest_.remove_prefix(at);
        return negative ? -exponent : exponent;
    }

    // "&H1F" and "&O17": bit patterns of 32 bits, the highest of which is the sign.
    Reading readBased() {
        int base = 0;
        if (take(L"&H") || take(L"&h"))
            base = 16;
        else if (take(L"&O") || take(L"&o"))
            base = 8;
        if (base == 0 || rest_.empty() || hexDigitOf(rest_.front()) >= base)
            return {};
        based_ = true;
        std::uint64_t pattern = 0;
        bool tooLarge = false;
        while (!rest_.empty() && hexDigitOf(rest_.front()) < base) {
            pattern = pattern * static_cast<unsigned>(base) +
                      static_cast<unsigned>(hexDigitOf(rest_.front()));
            rest_.remove_prefix(1);
            if (pattern > std::numeric_limits<std::uint32_t>::max()) {
                tooLarge = true;
                pattern = 0;
            }
        }
        if (tooLarge)
            return {Verdict::TooLarge, 0.0};
        return {Verdict::Number, static_cast<double>(static_cast<std::int32_t>(pattern))};
    }

    std::wstring_view rest_;
    const NumberLocale& locale_;
    const std::wstring& decimalMark_;
    bool currency_ = false;
    bool signed_ = false;
    bool negative_ = false;
    bool open_ = false;
    bool based_ = false;
    bool amount_ = false;
};

double roundHalfToEven(double value) {
    const double below = std::floor(value);
    const double rest = value - below;
    if (rest != 0.5)
        return rest < 0.5 ? below : below + 1.0;
    return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

template <typename Whole>
Whole roundTo(double value) {
    const double rounded = roundHalfToEven(value);
    // Written so that NaN fails as well.
    if (!(rounded >= std::numeric_limits<Whole>::min() &&
          rounded <= std::numeric_limits<Whole>::max()))
        throw RuntimeError(RuntimeError::Overflow);
    return static_cast<Whole>(rounded);
}

void appendPlainForm(std::wstring& text, double value, const std::wstring& decimalMark) {
    if (std::isnan(value)) {
        text += L"NAN";
        return;
    }
    if (value < 0.0)
        text += L'-';
    if (std::isinf(value)) {
        text += L"INF";
        return;
    }
    if (value == 0.0) {
        text += L'0';
        return;
    }
    // "d.dddddddddddddde+xx"
    constexpr int significant = 15;
    std::array<char, 40> buffer{};
    const char* const end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                      std::chars_format::scientific, significant - 1)
            .ptr;
    const char* power = buffer.data() + significant + 2;
    power += *power == '+' ? 1 : 0;
    int exponent = 0;
    std::from_chars(power, end, exponent);
    std::array<wchar_t, significant> all{};
    all[0] = static_cast<wchar_t>(buffer[0]);
    std::copy_n(buffer.data() + 2, significant - 1, all.data() + 1);
    std::wstring_view digits(all.data(), all.size());
    digits = digits.substr(0, digits.find_last_not_of(L'0') + 1);

    const auto count = static_cast<int>(digits.size());
    if (exponent < -4 || exponent >= significant) {
        text += digits[0];
        if (count > 1)
            text.append(decimalMark).append(digits.substr(1));
        text += exponent < 0 ? L"E-" : L"E+";
        if (std::abs(exponent) < 10)
            text += L'0';
        text += std::to_wstring(std::abs(exponent));
    } else if (exponent < 0) {
        text.append(1, L'0').append(decimalMark);
        text.append(static_cast<std::size_t>(-exponent - 1), L'0').append(digits);
    } else if (count <= exponent + 1) {
        text.append(digits).append(static_cast<std::size_t>(exponent + 1 - count), L'0');
    } else {
        const auto whole = static_cast<std::size_t>(exponent + 1);
        text.append(digits.substr(0, whole)).append(decimalMark).append(digits.substr(whole));
    }
}

} // namespace

NumberLocale NumberLocale::German() {
    return {L",", L".", L"€", L",", L"."};
}

NumberLocale NumberLocale::Point() {
    return {};
}

void HandInUserLocale(std::function<NumberLocale()> query) {
    localeQuery() = std::move(query);
}

NumberLocale UserLocale() {
    return localeQuery() ? localeQuery()() : NumberLocale::Point();
}

std::wstring_view TrimmedView(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L' ');
    if (first == std::wstring_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

std::wstring Trim(std::wstring_view text) {
    return std::wstring(TrimmedView(text));
}

bool IsNumeric(std::wstring_view text, const NumberLocale& locale) {
    return Reader(text, locale).read().verdict == Verdict::Number;
}

double ToDouble(std::wstring_view text, const NumberLocale& locale) {
    const Reading reading = Reader(text, locale).read();
    switch (reading.verdict) {
    case Verdict::NoNumber:
        throw RuntimeError(RuntimeError::TypeMismatch);
    case Verdict::TooLarge:
        throw RuntimeError(RuntimeError::Overflow);
    case Verdict::Number:
        break;
    }
    return reading.value;
}

double NumberOrZero(std::wstring_view text, const NumberLocale& locale) {
    const Reading reading = Reader(text, locale).read();
    return reading.verdict == Verdict::Number ? reading.value : 0.0;
}

std::int32_t ToLong(std::wstring_view text, const NumberLocale& locale) {
    return RoundToLong(ToDouble(text, locale));
}

std::int32_t RoundToLong(double value) {
    return roundTo<std::int32_t>(value);
}

std::int16_t RoundToInteger(double value) {
    return roundTo<std::int16_t>(value);
}

std::wstring FromDouble(double value, const NumberLocale& locale) {
    std::wstring text;
    appendPlainForm(text, value, decimalMarkOf(locale));
    return text;
}

void AppendDouble(std::wstring& text, double value, const NumberLocale& locale) {
    appendPlainForm(text, value, decimalMarkOf(locale));
}

std::wstring FromDoubleInvariant(double value) {
    std::wstring text;
    appendPlainForm(text, value, L".");
    return text;
}

std::wstring FromLong(std::int32_t value) {
    return std::to_wstring(value);
}

std::int32_t AddLong(std::int32_t a, std::int32_t b) {
    const std::int64_t sum = static_cast<std::int64_t>(a) + b;
    if (sum < std::numeric_limits<std::int32_t>::min() ||
        sum > std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(RuntimeError::Overflow);
    return static_cast<std::int32_t>(sum);
}

} // namespace kalvrooms
