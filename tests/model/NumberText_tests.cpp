#include "model/NumberText.h"

#include <cmath>
#include <limits>

#include "support/UserLocaleForTest.h"

namespace kalvrooms {

namespace {

const NumberLocale german = NumberLocale::German();
const NumberLocale point = NumberLocale::Point();

NumberLocale withGrouping(const std::wstring& mark) {
    return {L",", mark, L"kr", L",", mark};
}

void expectNumbers(const NumberLocale& locale,
                   std::initializer_list<std::pair<const wchar_t*, double>> texts) {
    for (const auto& [text, value] : texts)
        EXPECT_EQ(ToDouble(text, locale), value) << text;
}

void expectTexts(const NumberLocale& locale,
                 std::initializer_list<std::pair<double, const wchar_t*>> numbers) {
    for (const auto& [value, text] : numbers)
        EXPECT_EQ(FromDouble(value, locale), text) << value;
}

} // namespace

TEST(Trim, RemovesBlanksAtBothEndsOnly) {
    EXPECT_EQ(Trim(L"  A 1  "), L"A 1");
    EXPECT_EQ(Trim(L"A"), L"A");
    EXPECT_EQ(Trim(L""), L"");
    EXPECT_EQ(Trim(L"   "), L"");
}

TEST(Trim, LeavesOtherWhiteSpaceAlone) {
    EXPECT_EQ(Trim(L"\tA\t"), L"\tA\t");
    EXPECT_EQ(Trim(L" \nA\r "), L"\nA\r");
    EXPECT_EQ(Trim(L"\u00A0A\u00A0"), L"\u00A0A\u00A0");
}

TEST(UserLocale, IsThePointLocaleUntilOneIsHandedIn) {
    HandInUserLocale({});
    EXPECT_EQ(UserLocale().DecimalMark, L".");
    EXPECT_EQ(UserLocale().GroupingMark, L",");
}

TEST(UserLocale, IsAskedAnewOnEveryUse) {
    std::wstring mark = L",";
    HandInUserLocale([&mark] {
        NumberLocale locale = NumberLocale::German();
        locale.DecimalMark = mark;
        return locale;
    });
    EXPECT_EQ(FromDouble(1.5), L"1,5");
    mark = L"'";
    EXPECT_EQ(FromDouble(1.5), L"1'5");
    HandInUserLocale({});
    EXPECT_EQ(FromDouble(1.5), L"1.5");
}

TEST(UserLocale, GermanAndPointDifferInTheirMarks) {
    EXPECT_EQ(german.DecimalMark, L",");
    EXPECT_EQ(german.GroupingMark, L".");
    EXPECT_EQ(german.CurrencySymbol, L"€");
    EXPECT_EQ(german.CurrencyDecimalMark, L",");
    EXPECT_EQ(german.CurrencyGroupingMark, L".");
    EXPECT_EQ(point.DecimalMark, L".");
    EXPECT_EQ(point.CurrencySymbol, L"$");
}

TEST(IsNumeric, NothingAndBlanksAreNoNumber) {
    for (const wchar_t* text : {L"", L" ", L"   ", L"\t", L"\r\n", L"\u00A0"}) {
        EXPECT_FALSE(IsNumeric(text, german)) << text;
        EXPECT_FALSE(IsNumeric(text, point)) << text;
    }
}

TEST(IsNumeric, WordsAndMixturesAreNoNumber) {
    for (const wchar_t* text :
         {L"abc",   L"1a",       L"a1",     L"WC",     L"12 3",    L"1\t2",  L"1/2",
          L"12:30", L"2001-1-1", L"1%",     L"NaN",    L"inf",     L"INF",   L"True",
          L"0x10",  L"1 EUR",    L"\u0661", L"\uFF11", L"\u22121", L"1'000", L"_1"}) {
        EXPECT_FALSE(IsNumeric(text, german)) << text;
        EXPECT_FALSE(IsNumeric(text, point)) << text;
    }
}

TEST(IsNumeric, MarksAndSignsAloneAreNoNumber) {
    for (const wchar_t* text : {L".", L",", L"-", L"+", L"$", L"€", L"()", L"(", L")", L"-.", L"e5",
                                L".e5", L",e5", L"- -", L"&", L"&H", L"&O"}) {
        EXPECT_FALSE(IsNumeric(text, german)) << text;
        EXPECT_FALSE(IsNumeric(text, point)) << text;
    }
}

TEST(ToDouble, ReadsPlainNumbers) {
    expectNumbers(german, {{L"0", 0.0}, {L"7", 7.0}, {L"009", 9.0}, {L"1,5", 1.5}});
    EXPECT_EQ(ToDouble(L"1.5", point), 1.5);
    EXPECT_EQ(ToDouble(L"0,1", german), 0.1);
}

TEST(ToDouble, AcceptsWhiteSpaceOfEveryKindAroundTheNumber) {
    for (const wchar_t c :
         {L'\t', L'\n', L'\v', L'\f', L'\r', L' ', L'\u0085', L'\u00A0', L'\u1680', L'\u2000',
          L'\u2003', L'\u200A', L'\u2028', L'\u2029', L'\u202F', L'\u205F', L'\u3000'}) {
        const std::wstring space(1, c);
        EXPECT_EQ(ToDouble(space + L"5" + space, german), 5.0) << static_cast<int>(c);
        EXPECT_EQ(ToDouble(L"-" + space + L"5", point), -5.0) << static_cast<int>(c);
    }
    EXPECT_FALSE(IsNumeric(L"\u200B5", point));
    EXPECT_FALSE(IsNumeric(L"\uFEFF5", point));
}

TEST(ToDouble, AcceptsOneSignInFrontOrBehind) {
    expectNumbers(german, {{L"-3", -3.0}, {L"+3", 3.0}, {L"- 3", -3.0}, {L"3-", -3.0}});
    expectNumbers(german, {{L"3+", 3.0}, {L"3 -", -3.0}});
    for (const wchar_t* text : {L"--3", L"+-3", L"-+3", L"3--", L"3+-", L"-3-", L"+3+", L"- -3"})
        EXPECT_FALSE(IsNumeric(text, german)) << text;
}

TEST(ToDouble, ReadsParenthesesAsMinus) {
    EXPECT_EQ(ToDouble(L"(3)", german), -3.0);
    EXPECT_EQ(ToDouble(L" ( 3 ) ", german), -3.0);
    for (const wchar_t* text :
         {L"(3", L"3)", L"((3))", L"(3))", L"(-3)", L"-(3)", L"(3)-", L")3(", L"-(3"})
        EXPECT_FALSE(IsNumeric(text, german)) << text;
}

TEST(ToDouble, IgnoresGroupingMarksBehindTheFirstDigitWhereverTheyStand) {
    expectNumbers(german, {{L"1.234,5", 1234.5}, {L"1.2.3", 123.0}, {L"1..5", 15.0}});
    expectNumbers(german, {{L"1.5", 15.0}, {L"5.", 5.0}});
    EXPECT_EQ(ToDouble(L"1,234,567.89", point), 1234567.89);
    EXPECT_EQ(ToDouble(L"1,2,3", point), 123.0);
    EXPECT_EQ(ToDouble(L"1,234.5", german), 1.2345);
    EXPECT_EQ(ToDouble(L"1.234,5", point), 1.2345);
}

TEST(ToDouble, RefusesAGroupingMarkInFrontAndASecondDecimalMark) {
    EXPECT_FALSE(IsNumeric(L".5", german));
    EXPECT_FALSE(IsNumeric(L"-.5", german));
    EXPECT_FALSE(IsNumeric(L",5", point));
    EXPECT_FALSE(IsNumeric(L"1,2,3", german));
    EXPECT_FALSE(IsNumeric(L"1.2.3", point));
}

TEST(ToDouble, TheDecimalMarkMayStandFirstOrLast) {
    expectNumbers(german, {{L",5", 0.5}, {L"-,5", -0.5}, {L"5,", 5.0}});
    EXPECT_EQ(ToDouble(L".5", point), 0.5);
    EXPECT_EQ(ToDouble(L"5.", point), 5.0);
}

TEST(ToDouble, ReadsExponentsWithBothLetters) {
    expectNumbers(german, {{L"1e5", 1e5}, {L"1E+5", 1e5}, {L"1e-5", 1e-5}, {L"1,5d3", 1500.0}});
    EXPECT_EQ(ToDouble(L"1.5D-3", point), 0.0015);
    expectNumbers(german, {{L"1,e2", 100.0}, {L"1e0005", 1e5}, {L"1e5-", -1e5}, {L"(1e5)", -1e5}});
}

TEST(ToDouble, RefusesUnfinishedExponents) {
    for (const wchar_t* text : {L"1e", L"1e+", L"1e-", L"1 e5", L"1e 5", L"1e+ 5", L"1e5e5",
                                L"1ee5", L"1e--5", L"1e5,5", L"1e5.5"}) {
        EXPECT_FALSE(IsNumeric(text, german)) << text;
        EXPECT_FALSE(IsNumeric(text, point)) << text;
    }
}

TEST(ToDouble, AcceptsTheUsersCurrencySymbolOnce) {
    expectNumbers(german, {{L"€ 1.234,50", 1234.5}, {L"1.234,50 €", 1234.5}, {L"-€1", -1.0}});
    expectNumbers(german, {{L"€-1", -1.0}, {L"1 € -", -1.0}});
    expectNumbers(point, {{L"$(1)", -1.0}, {L"($1)", -1.0}, {L"(1$)", -1.0}, {L"1e5$", 1e5}});
    EXPECT_FALSE(IsNumeric(L"$1", german));
    for (const wchar_t* text : {L"€1", L"$$1", L"$1$"})
        EXPECT_FALSE(IsNumeric(text, point)) << text;
}

TEST(ToDouble, AnAmountOfMoneyHasNoExponent) {
    EXPECT_FALSE(IsNumeric(L"$1e5", point));
    const NumberLocale locale{L".", L",", L"kr", L"!", L"'"};
    EXPECT_FALSE(IsNumeric(L"1!5e5", locale));
    EXPECT_FALSE(IsNumeric(L"1'000e5", locale));
    EXPECT_EQ(ToDouble(L"1,000.5e2", locale), 100050.0);
}

TEST(ToDouble, ACurrencySymbolMayHaveSeveralLetters) {
    const NumberLocale locale = withGrouping(L".");
    EXPECT_EQ(ToDouble(L"kr 5", locale), 5.0);
    EXPECT_EQ(ToDouble(L"5kr", locale), 5.0);
    EXPECT_FALSE(IsNumeric(L"5k", locale));
    EXPECT_FALSE(IsNumeric(L"KR 5", locale));
}

TEST(ToDouble, AcceptsTheMarksOfCurrencyAmountsToo) {
    const NumberLocale locale{L".", L",", L"kr", L"!", L"'"};
    expectNumbers(locale, {{L"1'000!5", 1000.5}, {L"kr 1'000.5", 1000.5}, {L"!5", 0.5}});
    EXPECT_FALSE(IsNumeric(L"1.000!5", locale));
}

TEST(ToDouble, TheMarksOfNumbersWinOverThoseOfAmounts) {
    const NumberLocale crossed{L",", L".", L"$", L".", L","};
    EXPECT_EQ(ToDouble(L"1,5", crossed), 1.5);
    EXPECT_EQ(ToDouble(L"1.000,5", crossed), 1000.5);
    const NumberLocale same{L".", L".", L"$", L".", L"."};
    EXPECT_EQ(ToDouble(L"1.5", same), 1.5);
}

TEST(ToDouble, AnOrdinaryBlankStandsForTheUnbreakableGroupingBlank) {
    const NumberLocale locale = withGrouping(L"\u00A0");
    expectNumbers(locale, {{L"1 000,5", 1000.5}, {L"1\u00A0000,5", 1000.5}, {L" 1 000 ", 1000.0}});
    expectNumbers(locale, {{L"1 -", -1.0}});
    EXPECT_FALSE(IsNumeric(L"1\u202F000", locale));
    EXPECT_EQ(ToDouble(L"1 000", withGrouping(L" ")), 1000.0);
    EXPECT_FALSE(IsNumeric(L"1\u00A0000", withGrouping(L" ")));
}

TEST(ToDouble, EmptyMarksAreNeverMatched) {
    const NumberLocale bare{L"", L"", L"", L"", L""};
    EXPECT_EQ(ToDouble(L"1.5", bare), 1.5);
    EXPECT_EQ(FromDouble(1.5, bare), L"1.5");
    EXPECT_FALSE(IsNumeric(L"1,5", bare));
    EXPECT_FALSE(IsNumeric(L"$1", bare));
}

TEST(ToDouble, AMarkOfSeveralCharactersRoundTrips) {
    const NumberLocale locale{L"::", L";;", L"$", L"::", L";;"};
    EXPECT_EQ(FromDouble(1234.5, locale), L"1234::5");
    EXPECT_EQ(ToDouble(L"1;;234::5", locale), 1234.5);
}

TEST(ToDouble, ReadsHexadecimalAndOctalPatternsOf32Bits) {
    expectNumbers(german, {{L"&H10", 16.0}, {L"&haf", 175.0}, {L" &H00FF ", 255.0}});
    expectNumbers(german, {{L"&O17", 15.0}, {L"&o7", 7.0}, {L"&HFFFF", 65535.0}});
    expectNumbers(german, {{L"&H7FFFFFFF", 2147483647.0}, {L"&H80000000", -2147483648.0}});
    expectNumbers(german, {{L"&HFFFFFFFF", -1.0}, {L"-&HFF", -255.0}, {L"(&HFF)", -255.0}});
    for (const wchar_t* text : {L"&HG", L"&O8", L"&O78", L"&H FF", L"& HFF", L"&HF.F", L"&HF,F",
                                L"&HFF&", L"&10", L"&B1", L"€&HFF", L"&HFF€"})
        EXPECT_FALSE(IsNumeric(text, german)) << text;
    EXPECT_EQ(errorOf([] { ToDouble(L"&H100000000", german); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { ToDouble(L"&HFFFFFFFFFFFFFFFFFFFF0", german); }),
              RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { ToDouble(L"&H100000000X", german); }), RuntimeError::TypeMismatch);
}

TEST(ToDouble, TheTextEndsAtANullCharacter) {
    EXPECT_EQ(ToDouble(std::wstring(L"12\0x", 4), german), 12.0);
    EXPECT_FALSE(IsNumeric(std::wstring(1, L'\0'), german));
}

TEST(ToDouble, RoundsToTheNearestFloat) {
    expectNumbers(point, {{L"9007199254740993", 9007199254740992.0}});
    expectNumbers(point, {{L"9007199254740993.0000000000000000000000001", 9007199254740994.0}});
    expectNumbers(point, {{L"1.7976931348623157e308", std::numeric_limits<double>::max()}});
    expectNumbers(point, {{L"2.2250738585072014e-308", std::numeric_limits<double>::min()}});
    expectNumbers(point, {{L"4.9e-324", std::numeric_limits<double>::denorm_min()}});
    expectNumbers(point, {{L"0.30000000000000004", 0.1 + 0.2}});
    // Halfway between 1 and its neighbour, and just beyond: the last of many digits decides.
    const std::wstring halfway = L"1.00000000000000011102230246251565404236316680908203125";
    EXPECT_EQ(ToDouble(halfway, point), 1.0);
    EXPECT_GT(ToDouble(halfway + L"1", point), 1.0);
}

TEST(ToDouble, CountsEveryDigitOfAVeryLongNumber) {
    const std::wstring zeros(2000, L'0');
    EXPECT_EQ(ToDouble(zeros + L"7", point), 7.0);
    EXPECT_EQ(ToDouble(L"0." + zeros + L"7e2001", point), 7.0);
    EXPECT_EQ(ToDouble(L"7" + zeros + L"e-2000", point), 7.0);
    EXPECT_EQ(ToDouble(L"1." + zeros + L"1", point), 1.0);
    // Beyond all kept digits a single one still tips a value that lies halfway.
    EXPECT_EQ(ToDouble(L"9007199254740993." + zeros, point), 9007199254740992.0);
    EXPECT_EQ(ToDouble(L"9007199254740993." + zeros + L"1", point), 9007199254740994.0);
}

TEST(ToDouble, TooLargeIsAnOverflowAndNotNumeric) {
    for (const wchar_t* text : {L"1e309", L"-1e309", L"1.8e308", L"1e99999", L"1e400000000000",
                                L"1e99999999999999999999999999"}) {
        EXPECT_FALSE(IsNumeric(text, point)) << text;
        EXPECT_EQ(errorOf([text] { ToDouble(text, point); }), RuntimeError::Overflow) << text;
    }
    EXPECT_EQ(errorOf([] { ToDouble(std::wstring(400, L'9'), point); }), RuntimeError::Overflow);
}

TEST(ToDouble, TooSmallIsZero) {
    expectNumbers(point, {{L"1e-400", 0.0}, {L"1e-99999999999999999999999999", 0.0}});
    expectNumbers(point, {{L"1e-324", 0.0}, {L"0e99999", 0.0}});
}

TEST(ToDouble, ATextThatIsNoNumberIsATypeMismatch) {
    for (const wchar_t* text : {L"", L" ", L"abc", L"12a", L"-"})
        EXPECT_EQ(errorOf([text] { ToDouble(text, german); }), RuntimeError::TypeMismatch) << text;
}

TEST(ToDouble, ATextOfAMillionCharactersIsReadToItsEnd) {
    EXPECT_EQ(errorOf([] { ToDouble(std::wstring(1'000'000, L'9'), point); }),
              RuntimeError::Overflow);
    EXPECT_FALSE(IsNumeric(std::wstring(1'000'000, L' '), point));
}

TEST(ToLong, RoundsHalfToEven) {
    EXPECT_EQ(ToLong(L"0.5", point), 0);
    EXPECT_EQ(ToLong(L"1.5", point), 2);
    EXPECT_EQ(ToLong(L"2.5", point), 2);
    EXPECT_EQ(ToLong(L"-0.5", point), 0);
    EXPECT_EQ(ToLong(L"-1.5", point), -2);
    EXPECT_EQ(ToLong(L"2,50001", german), 3);
    EXPECT_EQ(ToLong(L"2.4999", point), 2);
}

TEST(ToLong, KeepsTheLimitsOf32Bits) {
    EXPECT_EQ(ToLong(L"2147483647", point), 2147483647);
    EXPECT_EQ(ToLong(L"2147483647.4", point), 2147483647);
    EXPECT_EQ(ToLong(L"-2147483648", point), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(ToLong(L"-2147483648.5", point), std::numeric_limits<std::int32_t>::min());
    for (const wchar_t* text : {L"2147483648", L"2147483647.5", L"-2147483649", L"1e300"})
        EXPECT_EQ(errorOf([text] { ToLong(text, point); }), RuntimeError::Overflow) << text;
    EXPECT_EQ(errorOf([] { ToLong(L"", point); }), RuntimeError::TypeMismatch);
}

TEST(RoundToLong, RoundsHalfToEvenInBothDirections) {
    EXPECT_EQ(RoundToLong(0.5), 0);
    EXPECT_EQ(RoundToLong(1.5), 2);
    EXPECT_EQ(RoundToLong(2.5), 2);
    EXPECT_EQ(RoundToLong(3.5), 4);
    EXPECT_EQ(RoundToLong(-0.5), 0);
    EXPECT_EQ(RoundToLong(-1.5), -2);
    EXPECT_EQ(RoundToLong(-2.5), -2);
    EXPECT_EQ(RoundToLong(0.49999999999999994), 0);
    EXPECT_EQ(RoundToLong(-2.51), -3);
    EXPECT_EQ(RoundToLong(2147483646.5), 2147483646);
}

TEST(RoundToLong, WhatDoesNotFitIsAnOverflow) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double value :
         {2147483647.5, 2147483648.0, -2147483648.6, 1e300, infinity, -infinity, std::nan("")})
        EXPECT_EQ(errorOf([value] { RoundToLong(value); }), RuntimeError::Overflow) << value;
}

TEST(RoundToInteger, KeepsTheLimitsOf16Bits) {
    EXPECT_EQ(RoundToInteger(32767.4), 32767);
    EXPECT_EQ(RoundToInteger(-32768.5), -32768);
    EXPECT_EQ(RoundToInteger(32766.5), 32766);
    for (const double value : {32767.5, 32768.0, -32768.51, std::nan("")})
        EXPECT_EQ(errorOf([value] { RoundToInteger(value); }), RuntimeError::Overflow) << value;
}

TEST(FromDouble, ShowsAsManyDecimalsAsNeededUnderTheUsersMark) {
    EXPECT_EQ(FromDouble(12.5, german), L"12,5");
    EXPECT_EQ(FromDouble(12.5, point), L"12.5");
    expectTexts(german, {{7.0, L"7"}, {-7.25, L"-7,25"}, {1234567.0, L"1234567"}, {0.5, L"0,5"}});
    expectTexts(german, {{100.0, L"100"}});
}

TEST(FromDouble, ZeroHasNoSign) {
    EXPECT_EQ(FromDouble(0.0, german), L"0");
    EXPECT_EQ(FromDouble(-0.0, german), L"0");
}

TEST(FromDouble, ShowsFifteenSignificantDigits) {
    expectTexts(german, {{1.0 / 3.0, L"0,333333333333333"}, {2.0 / 3.0, L"0,666666666666667"}});
    expectTexts(german, {{0.1 + 0.2, L"0,3"}});
    expectTexts(point, {{1.0 / 300.0, L"0.00333333333333333"}});
    expectTexts(point, {{123456789012345.6, L"123456789012346"}});
    expectTexts(point, {{12345678901234.56, L"12345678901234.6"}});
}

TEST(FromDouble, TurnsToExponentsForVeryLargeAndVerySmallNumbers) {
    expectTexts(german, {{1e14, L"100000000000000"}, {1e15, L"1E+15"}});
    expectTexts(german, {{999999999999999.0, L"999999999999999"}, {999999999999999.5, L"1E+15"}});
    expectTexts(german, {{-1.5e300, L"-1,5E+300"}, {0.0001, L"0,0001"}, {0.00001, L"1E-05"}});
    expectTexts(german, {{1.25e-7, L"1,25E-07"}, {1e-100, L"1E-100"}});
    EXPECT_EQ(FromDouble(std::numeric_limits<double>::denorm_min(), point),
              L"4.94065645841247E-324");
}

TEST(FromDouble, NamesWhatIsNoNumber) {
    const double infinity = std::numeric_limits<double>::infinity();
    expectTexts(german, {{infinity, L"INF"}, {-infinity, L"-INF"}, {std::nan(""), L"NAN"}});
}

TEST(FromDoubleInvariant, UsesThePointUnderEveryLocale) {
    const UserLocaleForTest locale(german);
    EXPECT_EQ(FromDoubleInvariant(12.5), L"12.5");
    EXPECT_EQ(FromDoubleInvariant(1.5e20), L"1.5E+20");
}

TEST(FromDouble, WhatItWritesReadsBackUnderTheSameLocale) {
    for (const NumberLocale& locale : {german, point})
        for (const double value : {0.0, 1.0, -1.0, 12.5, 1234.5678, -0.001, 1e14, 1.5e15, 1.25e-7,
                                   16.0, 999999.999, -1.5e300})
            EXPECT_EQ(ToDouble(FromDouble(value, locale), locale), value) << value;
}

TEST(FromLong, WritesDecimalDigits) {
    EXPECT_EQ(FromLong(0), L"0");
    EXPECT_EQ(FromLong(-12), L"-12");
    EXPECT_EQ(FromLong(std::numeric_limits<std::int32_t>::min()), L"-2147483648");
}

TEST(AddLong, RaisesOverflowAtTheLimits) {
    EXPECT_EQ(AddLong(2147483646, 1), 2147483647);
    EXPECT_EQ(AddLong(-5, 3), -2);
    EXPECT_EQ(errorOf([] { AddLong(2147483647, 1); }), RuntimeError::Overflow);
    EXPECT_EQ(errorOf([] { AddLong(std::numeric_limits<std::int32_t>::min(), -1); }),
              RuntimeError::Overflow);
}

} // namespace kalvrooms
