// The numeric test and the conversions held against the platform's own, over generated texts and
// numbers. A difference is allowed in the categories named here only; everything else fails.

#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <random>
#include <ranges>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

std::wstring localeText(LCID locale, LCTYPE type) {
    wchar_t buffer[80] = {};
    const int length = GetLocaleInfoW(locale, type, buffer, 80);
    return length > 0 ? std::wstring(buffer) : std::wstring();
}

NumberLocale numberLocale(LCID locale) {
    return {localeText(locale, LOCALE_SDECIMAL), localeText(locale, LOCALE_STHOUSAND),
            localeText(locale, LOCALE_SCURRENCY), localeText(locale, LOCALE_SMONDECIMALSEP),
            localeText(locale, LOCALE_SMONTHOUSANDSEP)};
}

// What a conversion ends with: a number, or the runtime error.
struct Outcome {
    long error = 0;
    double value = 0.0;
    bool isNumber() const { return error == 0; }
    bool operator==(const Outcome& other) const {
        return error == other.error && (error != 0 || value == other.value);
    }
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    if (outcome.isNumber()) {
        out.precision(17);
        return out << outcome.value;
    }
    return out << "error " << outcome.error;
}

Outcome platformOutcome(const std::wstring& text, LCID locale) {
    BSTR copy = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    double value = 0.0;
    const HRESULT result = VarR8FromStr(copy, locale, 0, &value);
    SysFreeString(copy);
    switch (result) {
    case S_OK:
        return {0, value};
    case DISP_E_TYPEMISMATCH:
        return {RuntimeError::TypeMismatch, 0.0};
    case DISP_E_OVERFLOW:
        return {RuntimeError::Overflow, 0.0};
    default:
        return {result, 0.0};
    }
}

Outcome ourOutcome(const std::wstring& text, const NumberLocale& locale) {
    try {
        return {0, ToDouble(text, locale)};
    } catch (const RuntimeError& error) {
        return {error.number(), 0.0};
    }
}

bool onCompatibilityLayer() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

std::string shown(const std::wstring& text) {
    std::string result;
    for (const wchar_t c : text) {
        if (c >= 32 && c < 127) {
            result += static_cast<char>(c);
        } else {
            char code[12];
            snprintf(code, sizeof code, "<%04X>", static_cast<unsigned>(c));
            result += code;
        }
    }
    return "\"" + result + "\"";
}

// ---- What the texts of the categories look like ------------------------------------------------

bool contains(const std::wstring& text, const std::wstring& part) {
    return !part.empty() && text.find(part) != std::wstring::npos;
}

std::size_t countOf(const std::wstring& text, const std::wstring& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; !part.empty() && (at = text.find(part, at)) != std::wstring::npos;
         at += part.size())
        ++count;
    return count;
}

bool isGrouping(wchar_t c, const NumberLocale& locale) {
    return contains(locale.GroupingMark + locale.CurrencyGroupingMark, std::wstring(1, c)) ||
           (c == L' ' && contains(locale.GroupingMark + locale.CurrencyGroupingMark, L"\u00A0"));
}

bool isDecimal(wchar_t c, const NumberLocale& locale) {
    return contains(locale.DecimalMark + locale.CurrencyDecimalMark, std::wstring(1, c));
}

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// Signs and parentheses outside the exponent, two of them or unpaired, or two within it.
bool hasSeveralSigns(const std::wstring& text, const NumberLocale&) {
    int signs = 0;
    int open = 0;
    int closed = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool inExponent = i > 0 && (text[i - 1] == L'e' || text[i - 1] == L'E');
        signs += (text[i] == L'+' || text[i] == L'-') && !inExponent ? 1 : 0;
        open += text[i] == L'(' ? 1 : 0;
        closed += text[i] == L')' ? 1 : 0;
        if (inExponent && i + 1 < text.size() && (text[i] == L'+' || text[i] == L'-') &&
            (text[i + 1] == L'+' || text[i + 1] == L'-'))
            return true;
    }
    return signs + open > 1 || open != closed;
}

bool hasCurrencyTwice(const std::wstring& text, const NumberLocale& locale) {
    return countOf(text, locale.CurrencySymbol) > 1;
}

// A mark behind the end of the number: after blanks, sign, currency or exponent.
bool hasMarkBehindTheNumber(const std::wstring& text, const NumberLocale& locale) {
    const auto isMark = [&](wchar_t c) { return isDecimal(c, locale) || isGrouping(c, locale); };
    std::size_t at = 0;
    while (at < text.size() && !isDigit(text[at]) && !isDecimal(text[at], locale) &&
           text[at] != L'e' && text[at] != L'E')
        ++at;
    while (at < text.size() && (isDigit(text[at]) || isMark(text[at])))
        ++at;
    return std::any_of(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isMark);
}

// More digits in the exponent than any number needs.
bool hasEndlessExponent(const std::wstring& text, const NumberLocale&) {
    const std::size_t letter = text.find_first_of(L"eE");
    return letter != std::wstring::npos &&
           std::count_if(text.begin() + static_cast<std::ptrdiff_t>(letter), text.end(), isDigit) >=
               9;
}

bool hasBlankBehindAPattern(const std::wstring& text, const NumberLocale& locale) {
    return contains(text, L"&") && !text.empty() && isGrouping(text.back(), locale);
}

bool hasExponentD(const std::wstring& text, const NumberLocale&) {
    return text.find_first_of(L"dD") != std::wstring::npos && !contains(text, L"&");
}

bool isSignedPattern(const std::wstring& text, const NumberLocale&) {
    return contains(text, L"&") && text.find_first_of(L"-(") != std::wstring::npos;
}

bool isPattern(const std::wstring& text, const NumberLocale&) {
    return contains(text, L"&");
}

bool anyText(const std::wstring&, const NumberLocale&) {
    return true;
}

// ---- The categories ----------------------------------------------------------------------------

struct Category {
    const char* name;
    const char* reason;
    std::function<bool(const std::wstring&, const NumberLocale&)> text;
    std::function<bool(const Outcome& ours, const Outcome& platforms)> outcome;
    bool onlyWhereBlanksGroup = false;
};

bool onlyThePlatformReadsIt(const Outcome& ours, const Outcome& platforms) {
    return ours.error == RuntimeError::TypeMismatch &&
           (platforms.isNumber() || platforms.error == RuntimeError::Overflow);
}

const std::vector<Category>& categories() {
    static const std::vector<Category> all = {
        {"several signs",
         "one sign is accepted; this platform strings signs and closing parentheses together",
         hasSeveralSigns, onlyThePlatformReadsIt},
        {"currency symbol repeated", "an amount has one currency", hasCurrencyTwice,
         onlyThePlatformReadsIt},
        {"mark behind the number",
         "grouping marks belong into the number; this platform goes on reading digits behind an "
         "exponent and forgets the sign before a mark",
         hasMarkBehindTheNumber, onlyThePlatformReadsIt},
        {"exponent letter D", "the runtime reads D like E; this platform does not know the letter",
         hasExponentD,
         [](const Outcome& ours, const Outcome& platforms) {
             return platforms.error == RuntimeError::TypeMismatch &&
                    (ours.isNumber() || ours.error == RuntimeError::Overflow);
         }},
        {"sign of a bit pattern", "a sign counts; this platform drops the one of &H and &O",
         isSignedPattern,
         [](const Outcome& ours, const Outcome& platforms) {
             return ours.isNumber() && ((platforms.isNumber() && ours.value == -platforms.value) ||
                                        platforms.error == RuntimeError::Overflow);
         }},
        {"highest bit of a pattern",
         "32 bits are a signed number; this platform takes &H80000000 as one and then overflows",
         isPattern,
         [](const Outcome& ours, const Outcome& platforms) {
             return ours.isNumber() && std::abs(ours.value) < 2147483648.0 &&
                    platforms.error == RuntimeError::Overflow;
         }},
        {"blank behind a pattern",
         "blanks may surround a number; this platform takes them for grouping marks there, where "
         "the grouping mark is a blank",
         hasBlankBehindAPattern,
         [](const Outcome& ours, const Outcome& platforms) {
             return ours.error != RuntimeError::TypeMismatch &&
                    platforms.error == RuntimeError::TypeMismatch;
         },
         true},
        {"endless exponent",
         "too large stays too large and too small is zero; this platform counts in 32 bits and "
         "comes out at the other end",
         hasEndlessExponent,
         [](const Outcome& ours, const Outcome& platforms) {
             return (ours.error == RuntimeError::Overflow && platforms == Outcome{0, 0.0}) ||
                    (ours == Outcome{0, 0.0} && platforms.error == RuntimeError::Overflow);
         }},
        {"last digits", "ours is the nearest float; this platform multiplies powers of ten up",
         anyText,
         [](const Outcome& ours, const Outcome& platforms) {
             return ours.isNumber() && platforms.isNumber() &&
                    std::abs(ours.value) >= std::numeric_limits<double>::min() &&
                    std::abs(ours.value - platforms.value) <= 1e-14 * std::abs(ours.value);
         }},
        {"nearly too large", "this platform overflows a little before the largest float", anyText,
         [](const Outcome& ours, const Outcome& platforms) {
             return ours.isNumber() && std::abs(ours.value) > 1.797e308 &&
                    platforms.error == RuntimeError::Overflow;
         }},
        {"nearly zero", "this platform loses floats below the smallest normal one", anyText,
         [](const Outcome& ours, const Outcome& platforms) {
             return ours.isNumber() && platforms.isNumber() &&
                    std::abs(ours.value) < std::numeric_limits<double>::min() &&
                    std::abs(ours.value - platforms.value) < std::numeric_limits<double>::min();
         }},
    };
    return all;
}

const Category* categoryOf(const std::wstring& text, const NumberLocale& locale,
                           const Outcome& ours, const Outcome& platforms) {
    for (const Category& category : categories())
        if (category.text(text, locale) && category.outcome(ours, platforms))
            return &category;
    return nullptr;
}

// ---- The texts ---------------------------------------------------------------------------------

class TextGenerator {
  public:
    explicit TextGenerator(const NumberLocale& locale) : locale_(locale), random_(20240607) {}

    std::vector<std::wstring> texts() {
        std::set<std::wstring> seen;
        for (const auto& text : std::views::split(corners, L'|'))
            seen.emplace(text.begin(), text.end());
        for (const auto& text : std::views::split(cornersOfTheLocale, L'|')) {
            std::wstring own;
            for (const wchar_t c : text) {
                own += c == L'$'    ? locale_.CurrencySymbol
                       : c == L'~'  ? locale_.DecimalMark
                       : c == L'\'' ? locale_.GroupingMark
                                    : std::wstring(1, c);
            }
            seen.insert(own);
        }
        seen.insert(std::wstring(L"12\0x", 4));
        seen.insert(std::wstring(L"\0", 1));
        while (seen.size() < 6000)
            seen.insert(wellFormed());
        while (seen.size() < 9000)
            seen.insert(damaged(wellFormed()));
        while (seen.size() < 12000)
            seen.insert(soup());
        while (seen.size() < 13000)
            seen.insert(extreme());
        while (seen.size() < 14000)
            seen.insert(pattern());
        return {seen.begin(), seen.end()};
    }

  private:
    static constexpr std::wstring_view corners =
        L"| |\t|\u00A0|.|,|-|+|()|(|)|1|0|-0| 1 |\t1\r\n|\u00A01|1\u00A0|\u20031|\u30001|\u200B1|"
        L"\uFEFF1|1 2|1\t2|- 1|+1|1-|1 -|1+|(1)|( 1 )|+-1|-+1|1--|1-+|--1|-1-|(-1)|-(1)|(1)-|"
        L"((1))|(1))|(1|1)|.5|,5|-.5|-,5|5.|5,|1.5|1,5|1.234,5|1,234.5|1.2.3|1,2,3|1..5|1,,5|..5|"
        L",,5|,.5|.,5|1.,5|1,.5|1.234.567,89|1,234,567.89|1e5|1E5|1d5|1D5|1e+5|1e-5|1e|1e+|e5|.e5|"
        L"1.e5|1,e5|1e 5|1 e5|1e5e5|1e5-|1e--5|1e5.|1e5,|1e5,5|1e5.5|1e308|1e309|-1e309|1e-400|"
        L"1e99999|0e99999|1e32767|1e32768|1e-32768|1.7976931348623157e308|4.9e-324|"
        L"2.2250738585072014e-308|9007199254740993|123456789012345678901234567890|1 000|"
        L"1\u00A0000|1\u202F000|1'000|1\u2019000|5 .|5 ,|5-,|5-.|&H10|&hff|&O17|&H|&HG|&O8|& H1|"
        L"-&HFF|&HFF-|(&HFF)| &HFF |&H7FFFFFFF|&H80000000|&H80000001|&HFFFFFFFF|&H100000000|"
        L"&HFF,0|0x10|1a|a1|abc|1%|1#|NaN|inf|True|Wahr|12:30|2001-01-01|1/2|\u0661|\uFF11|"
        L"\u22121|Raum 12| 12|-3|K3|12-K3|16,000|16.000";
    static constexpr std::wstring_view cornersOfTheLocale =
        L"$|$1|$ 1|1$|1 $|-$1|$-1|$1-|1-$|1$-|$$1|$1$|($1)|$(1)|(1$)|(1)$|$1,5|$1.5|$,5|$.5|$5,|"
        L"$5.|$1e5|1e5$|$&HFF|&HFF$|$ 1.234,50|1,234.50 $|1 $ -|5$,|1'234~5|"
        L"1~7976931348623157e308|1~7976931348623159e308|2~2250738585072014e-308|4~9e-324|5 '|$1$|"
        L"1$$|$ 1 $|1e5'|-1'234~50 $|0~30000000000000004";

    std::size_t below(std::size_t limit) { return random_() % limit; }
    bool oneIn(std::size_t n) { return below(n) == 0; }
    template <std::size_t count>
    std::wstring oneOf(const wchar_t* const (&choices)[count]) {
        return choices[below(count)];
    }

    std::wstring digits(std::size_t atMost) {
        std::wstring result;
        for (std::size_t left = 1 + below(atMost); left > 0; --left)
            result += static_cast<wchar_t>(L'0' + below(10));
        return result;
    }

    std::wstring space() {
        return oneOf({L"", L"", L"", L" ", L"  ", L"\t", L"\u00A0", L"\n", L"\u2009"});
    }

    std::wstring mark() {
        switch (below(6)) {
        case 0:
            return L".";
        case 1:
            return L",";
        case 2:
            return locale_.GroupingMark;
        case 3:
            return locale_.CurrencyDecimalMark;
        default:
            return locale_.DecimalMark;
        }
    }

    std::wstring number() {
        std::wstring result = oneIn(12) ? L"" : digits(6);
        for (std::size_t groups = oneIn(3) ? 1 + below(3) : 0; groups > 0; --groups)
            result += (oneIn(2) ? locale_.GroupingMark : mark()) + digits(3);
        if (oneIn(2))
            result += mark() + (oneIn(8) ? L"" : digits(5));
        if (oneIn(5)) {
            result += oneOf({L"e", L"E", L"e", L"E", L"d", L"D"}) + oneOf({L"", L"+", L"-"}) +
                      (oneIn(10) ? L"" : digits(2));
        }
        return result;
    }

    std::wstring wellFormed() {
        std::wstring front = space();
        std::wstring behind;
        const auto put = [&](const std::wstring& text) {
            if (oneIn(2))
                front += text + space();
            else
                behind += space() + text;
        };
        if (oneIn(3)) {
            put(oneOf({L"-", L"+"}));
        } else if (oneIn(6)) {
            front += L"(" + space();
            behind += space() + L")";
        }
        if (oneIn(4))
            put(oneIn(6) ? oneOf({L"$", L"\u20AC", L"EUR", L"\u00A3"}) : locale_.CurrencySymbol);
        return front + number() + behind + space();
    }

    wchar_t character() {
        static constexpr wchar_t alphabet[] = L"0123456789012345.,.,+-+-()eEdD \t\u00A0$\u20AC&Hx";
        return alphabet[below(std::size(alphabet) - 1)];
    }

    std::wstring damaged(std::wstring text) {
        for (std::size_t changes = 1 + below(2); changes > 0; --changes) {
            const std::size_t at = below(text.size() + 1);
            switch (below(4)) {
            case 0:
                text.insert(at, 1, character());
                break;
            case 1:
                text.erase(std::min(at, text.size()), 1);
                break;
            case 2:
                text.insert(at, text.substr(std::min(at, text.size()), 2));
                break;
            default:
                if (at < text.size())
                    text[at] = character();
            }
        }
        return text;
    }

    std::wstring soup() {
        std::wstring text;
        for (std::size_t left = 1 + below(7); left > 0; --left)
            text += character();
        return text;
    }

    std::wstring extreme() {
        std::wstring text = oneIn(3) ? L"-" : L"";
        switch (below(5)) {
        case 0: // around the largest float
            return text + digits(3) + locale_.DecimalMark + digits(20) + L"e" +
                   std::to_wstring(300 + below(12));
        case 1: // around the smallest one
            return text + digits(1) + locale_.DecimalMark + digits(20) + L"e-" +
                   std::to_wstring(300 + below(40));
        case 2: // more digits than a float holds
            return text + digits(60);
        case 3:
            return text + L"0" + locale_.DecimalMark + std::wstring(below(40), L'0') + digits(40);
        default: // exponents beyond everything
            return text + digits(4) + oneOf({L"e", L"e-"}) + digits(12);
        }
    }

    std::wstring pattern() {
        static constexpr wchar_t letters[] = L"0123456789ABCDEFabcdef";
        std::wstring text = space();
        text += oneIn(8) ? oneOf({L"-", L"+", L"("}) : std::wstring();
        const bool hexadecimal = !oneIn(4);
        text += hexadecimal ? oneOf({L"&H", L"&h"}) : oneOf({L"&O", L"&o"});
        for (std::size_t left = 1 + below(hexadecimal ? 9 : 12); left > 0; --left)
            text += oneIn(40) ? character() : letters[below(hexadecimal ? 22 : 8)];
        text += oneIn(8) ? oneOf({L"-", L"+", L")"}) : std::wstring();
        return text + space();
    }

    const NumberLocale& locale_;
    std::mt19937 random_;
};

// Every kind of number: what users type, what is computed, and every kind of float.
std::vector<double> numbersToWrite() {
    using Limits = std::numeric_limits<double>;
    std::vector<double> numbers = {0.0,  -0.0, 1.0,  -1.0, 0.5,   0.1,   1e14,   1e15,   1e16,
                                   1e-4, 1e-5, 16.0, 12.5, 2.675, 1e100, 1e-100, 5e-324, 1e308};
    for (const double value :
         {0.30000000000000004, 999999999999999.0, 999999999999999.5, 123456789012345.5,
          0.000099999999999999999, Limits::max(), Limits::min(), Limits::infinity(),
          -Limits::infinity(), Limits::quiet_NaN()})
        numbers.push_back(value);
    std::mt19937_64 random(31);
    for (int i = 0; i < 3000; ++i) {
        // Areas and lengths as users type them, quotients and roots as they are computed.
        const auto whole = static_cast<double>(random() % 1000000);
        numbers.push_back(whole / 1000.0);
        numbers.push_back(-whole / 100.0);
        numbers.push_back(whole / static_cast<double>(1 + random() % 1000));
        numbers.push_back(std::sqrt(whole / 7.0));
        numbers.push_back(whole * std::pow(10.0, static_cast<int>(random() % 40) - 20));
    }
    for (int i = 0; i < 3000; ++i) { // every kind of float
        const std::uint64_t bits = random();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value))
            numbers.push_back(value);
    }
    return numbers;
}

} // namespace

class NumberReference : public testing::TestWithParam<LCID> {};

// The user's own locale, which the run chooses, and some whose marks and symbols are less common.
INSTANTIATE_TEST_SUITE_P(Locales, NumberReference,
                         testing::Values(LCID{LOCALE_USER_DEFAULT}, LCID{0x0407}, LCID{0x0409},
                                         LCID{0x0C07}, LCID{0x0807}, LCID{0x040C}, LCID{0x0406},
                                         LCID{0x0415}));

TEST_P(NumberReference, TextsReadAsThePlatformReadsThem) {
    const NumberLocale locale = numberLocale(GetParam());
    ASSERT_FALSE(locale.DecimalMark.empty());
    std::map<std::string, int> differences;
    int compared = 0;
    int numbers = 0;
    int failures = 0;
    for (const std::wstring& text : TextGenerator(locale).texts()) {
        const Outcome ours = ourOutcome(text, locale);
        const Outcome platforms = platformOutcome(text, GetParam());
        EXPECT_EQ(IsNumeric(text, locale), ours.isNumber()) << shown(text);
        ++compared;
        numbers += platforms.isNumber() ? 1 : 0;
        if (ours == platforms)
            continue;
        if (const Category* category = categoryOf(text, locale, ours, platforms))
            ++differences[category->name];
        else if (++failures <= 40)
            ADD_FAILURE() << shown(text) << ": ours " << ours << ", the platform's " << platforms;
    }
    EXPECT_EQ(failures, 0);
    EXPECT_GE(compared, 5000);
    // The texts must be worth the comparison: enough of them numbers, enough of them none.
    EXPECT_GE(numbers, 3000);
    EXPECT_GE(compared - numbers, 3000);
    std::cout << "decimal mark " << shown(locale.DecimalMark) << ", grouping mark "
              << shown(locale.GroupingMark) << ", currency " << shown(locale.CurrencySymbol) << ": "
              << compared << " texts, " << numbers << " of them numbers\n";
    const bool blanksGroup = isGrouping(L' ', locale);
    for (const Category& category : categories()) {
        std::cout << "  " << differences[category.name] << " x " << category.name << " ("
                  << category.reason << ")\n";
        // A category that no text shows is none; it is of the platform that these tests usually
        // run on, and Windows itself has fewer.
        if (onCompatibilityLayer() && (!category.onlyWhereBlanksGroup || blanksGroup)) {
            EXPECT_GT(differences[category.name], 0) << category.name;
        }
    }
}

TEST_P(NumberReference, NumbersAreWrittenAsThePlatformWritesThem) {
    const NumberLocale locale = numberLocale(GetParam());
    const std::vector<double> numbers = numbersToWrite();
    int pointsInExponentForm = 0;
    for (const double value : numbers) {
        BSTR text = nullptr;
        ASSERT_EQ(VarBstrFromR8(value, GetParam(), 0, &text), S_OK);
        std::wstring platforms(text, SysStringLen(text));
        SysFreeString(text);
        const std::wstring ours = FromDouble(value, locale);
        // This platform leaves the point in exponent forms; the text form has the user's mark.
        const std::size_t mark = platforms.find(L'.');
        if (contains(platforms, L"E") && mark != std::wstring::npos && locale.DecimalMark != L".") {
            platforms.replace(mark, 1, locale.DecimalMark);
            ++pointsInExponentForm;
        }
        ASSERT_EQ(shown(ours), shown(platforms)) << value;
        if (std::isfinite(value)) {
            // 15 digits: reading back comes as near as half a unit of the last of them.
            const double slack =
                std::max(std::abs(value) * 1e-14, std::numeric_limits<double>::denorm_min());
            if (std::abs(value) < 1.79769313486231e308) {
                ASSERT_NEAR(ToDouble(ours, locale), value, slack);
            }
        }
    }
    EXPECT_GE(numbers.size(), 15000u);
    EXPECT_EQ(pointsInExponentForm > 0, locale.DecimalMark != L".");
    std::cout << numbers.size() << " numbers, " << pointsInExponentForm
              << " x point in exponent form\n";
}

TEST(NumberReference, TheWhiteSpaceIsThePlatforms) {
    const NumberLocale locale = numberLocale(LOCALE_USER_DEFAULT);
    int spaces = 0;
    for (unsigned code = 1; code < 0x10000; ++code) {
        const std::wstring text{static_cast<wchar_t>(code), L'1'};
        const Outcome ours = ourOutcome(text, locale);
        ASSERT_EQ(ours, platformOutcome(text, LOCALE_USER_DEFAULT)) << shown(text);
        const std::wstring behind{L'1', static_cast<wchar_t>(code)};
        ASSERT_EQ(ourOutcome(behind, locale), platformOutcome(behind, LOCALE_USER_DEFAULT))
            << shown(behind);
        spaces += ours == Outcome{0, 1.0} && !isDigit(static_cast<wchar_t>(code)) ? 1 : 0;
    }
    EXPECT_GE(spaces, 20);
}

TEST(NumberReference, RoundingToWholeNumbersIsThePlatforms) {
    std::mt19937_64 random(5);
    std::vector<double> numbers = {2147483647.0,  2147483647.25,  2147483647.5, -2147483648.0,
                                   -2147483648.5, -2147483648.75, 1e300,        -1e300,
                                   32767.5,       -32768.5,       32768.0,      -32769.0};
    for (int i = 0; i < 10000; ++i) {
        const auto quarters = static_cast<double>(random() % 400000) - 200000.0;
        numbers.push_back(quarters / 4.0);
        numbers.push_back(quarters * 12345.5);
    }
    for (const double value : numbers) {
        LONG platforms = 0;
        const HRESULT result = VarI4FromR8(value, &platforms);
        try {
            const std::int32_t ours = RoundToLong(value);
            ASSERT_EQ(result, S_OK) << value;
            ASSERT_EQ(ours, platforms) << value;
        } catch (const RuntimeError& error) {
            ASSERT_EQ(error.number(), RuntimeError::Overflow);
            ASSERT_EQ(result, DISP_E_OVERFLOW) << value;
        }
        SHORT small = 0;
        const HRESULT smallResult = VarI2FromR8(value, &small);
        try {
            const std::int16_t ours = RoundToInteger(value);
            ASSERT_EQ(smallResult, S_OK) << value;
            ASSERT_EQ(ours, small) << value;
        } catch (const RuntimeError& error) {
            ASSERT_EQ(error.number(), RuntimeError::Overflow);
            ASSERT_EQ(smallResult, DISP_E_OVERFLOW) << value;
        }
    }
}

} // namespace kalvrooms
