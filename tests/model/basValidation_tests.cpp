#include "model/basValidation.h"

#include <cmath>

#include "support/UserLocaleForTest.h"

namespace kalvrooms {

namespace {

class WithDecimalComma : public testing::Test {
  protected:
    UserLocaleForTest locale_{NumberLocale::German()};
};

class WithDecimalPoint : public testing::Test {
  protected:
    UserLocaleForTest locale_{NumberLocale::Point()};
};

UserLocaleForTest localeWithMark(const std::wstring& mark) {
    NumberLocale locale;
    locale.DecimalMark = mark;
    return UserLocaleForTest(locale);
}

} // namespace

TEST(GetDecimalSeparator, IsTheFirstCharacterOfTheUsersMark) {
    {
        const UserLocaleForTest locale = localeWithMark(L",");
        EXPECT_EQ(GetDecimalSeparator(), L",");
    }
    {
        const UserLocaleForTest locale = localeWithMark(L"::");
        EXPECT_EQ(GetDecimalSeparator(), L":");
    }
}

TEST(GetDecimalSeparator, IsThePointWhenTheLocaleCannotBeAsked) {
    const UserLocaleForTest locale = localeWithMark(L"");
    EXPECT_EQ(GetDecimalSeparator(), L".");
}

TEST(IsDigitKey, PassesDigitsAndBackspaceOnly) {
    for (int key = -300; key <= 1000; ++key) {
        const bool passes = (key >= '0' && key <= '9') || key == 8;
        EXPECT_EQ(IsDigitKey(static_cast<std::int16_t>(key)), passes) << key;
    }
}

TEST(IsNumberKey, PassesBothMarksAsWell) {
    for (int key = -300; key <= 1000; ++key) {
        const bool passes = (key >= '0' && key <= '9') || key == 8 || key == '.' || key == ',';
        EXPECT_EQ(IsNumberKey(static_cast<std::int16_t>(key)), passes) << key;
    }
}

class TextToNumberUnderBothLocales : public UnderBothLocales {};
INSTANTIATE_TEST_SUITE_P(CommaAndPoint, TextToNumberUnderBothLocales,
                         testing::Values(NumberLocale::German(), NumberLocale::Point(),
                                         frenchLocale(), swissLocale()));

TEST_P(TextToNumberUnderBothLocales, TakesBothMarksAsDecimalMark) {
    EXPECT_EQ(TextToNumber(L"12,5"), 12.5);
    EXPECT_EQ(TextToNumber(L"12.5"), 12.5);
    EXPECT_EQ(TextToNumber(L"3,14159"), 3 + 14159 / 10.0 / 10.0 / 10.0 / 10.0 / 10.0);
    EXPECT_EQ(TextToNumber(L"7"), 7.0);
    EXPECT_EQ(TextToNumber(L"-7"), -7.0);
}

TEST_P(TextToNumberUnderBothLocales, AThousandWithOneMarkIsADecimalNumber) {
    EXPECT_EQ(TextToNumber(L"1.234"), 1 + 234 / 10.0 / 10.0 / 10.0);
    EXPECT_EQ(TextToNumber(L"1,234"), 1 + 234 / 10.0 / 10.0 / 10.0);
}

TEST_P(TextToNumberUnderBothLocales, NoNumberIsZero) {
    for (const wchar_t* text : {L"", L" ", L"abc", L"1a", L"-", L".", L",", L"1e999", L"1 2"})
        EXPECT_EQ(TextToNumber(text), 0.0) << text;
}

TEST_P(TextToNumberUnderBothLocales, TheWholePartCarriesTheSign) {
    EXPECT_EQ(TextToNumber(L"-2,5"), -2.5);
    EXPECT_EQ(TextToNumber(L"-2.5"), -2.5);
}

TEST_P(TextToNumberUnderBothLocales, TheSignOfAZeroWholePartIsLost) {
    EXPECT_EQ(TextToNumber(L"-0,5"), 0.5);
    EXPECT_EQ(TextToNumber(L"-0.5"), 0.5);
}

TEST_P(TextToNumberUnderBothLocales, DividesOncePerDecimal) {
    double expected = 123456789.0;
    for (int i = 0; i < 9; ++i)
        expected /= 10.0;
    EXPECT_EQ(TextToNumber(L"0,123456789"), expected);
    EXPECT_EQ(TextToNumber(L"0.123456789"), expected);
}

TEST_P(TextToNumberUnderBothLocales, EveryCharacterBehindTheMarkCountsAsADecimal) {
    EXPECT_EQ(TextToNumber(L"12,5 "), 12 + 5 / 10.0 / 10.0);
    EXPECT_EQ(TextToNumber(L"1,5e2"), 1 + 500 / 10.0 / 10.0 / 10.0);
    EXPECT_EQ(TextToNumber(L"2,5-"), 2 + -5 / 10.0 / 10.0);
}

// Of several grouping marks the first group is left.
TEST(TextToNumber, LeavesBothMarksToTheLocale) {
    struct Case {
        const wchar_t* text;
        double withComma;
        double withPoint;
    };
    for (const auto& [text, withComma, withPoint] :
         {Case{L"1.234,5", 1234.5, 1.2345}, Case{L"1,234.5", 1.2345, 1234.5},
          Case{L"1.234.567", 1.0, 0.0}, Case{L"1,234,567", 0.0, 1.0}}) {
        for (const bool comma : {true, false}) {
            const UserLocaleForTest locale(comma ? NumberLocale::German() : NumberLocale::Point());
            EXPECT_EQ(TextToNumber(text), comma ? withComma : withPoint) << text;
        }
    }
}

TEST_P(TextToNumberUnderBothLocales, AMarkAtTheEndLeavesTheWholePart) {
    EXPECT_EQ(TextToNumber(L"12,"), 12.0);
    EXPECT_EQ(TextToNumber(L"12."), 12.0);
}

TEST_P(TextToNumberUnderBothLocales, AMarkFollowedByBlanksOnlyHasNoFractionToConvert) {
    EXPECT_EQ(errorOf([] { TextToNumber(L"12, "); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { TextToNumber(L"12. "); }), RuntimeError::TypeMismatch);
}

TEST_F(WithDecimalComma, AnEmptyWholePartDoesNotConvert) {
    EXPECT_EQ(errorOf([] { TextToNumber(L",5"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { TextToNumber(L"-,5"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { TextToNumber(L"(1,5)"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(TextToNumber(L".5"), 0.0); // a grouping mark in front is no number
}

TEST_F(WithDecimalPoint, AnEmptyWholePartDoesNotConvert) {
    EXPECT_EQ(errorOf([] { TextToNumber(L".5"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(TextToNumber(L",5"), 0.0);
}

TEST_P(TextToNumberUnderBothLocales, DecimalsArePaddedButNeverCutUnderTheUsersMark) {
    const auto withComma = [](std::wstring text) {
        if (const auto at = text.find(GetParam().DecimalMark); at != std::wstring::npos)
            text.replace(at, 1, L",");
        return text;
    };
    const std::pair<double, const wchar_t*> three[] = {
        {7.0, L"7,000"},       {12.5, L"12,500"}, {12.25, L"12,250"}, {12.125, L"12,125"},
        {3.14159, L"3,14159"}, {0.0, L"0,000"},   {-0.5, L"-0,500"},  {1e15, L"1E+15,000"}};
    for (const auto& [value, text] : three)
        EXPECT_EQ(withComma(FormatThreeDecimals(value)), text);
    const std::pair<double, const wchar_t*> two[] = {
        {1.0, L"1,00"}, {1.5, L"1,50"}, {1.25, L"1,25"}, {1.125, L"1,125"}, {1.5e20, L"1,5E+20"}};
    for (const auto& [value, text] : two)
        EXPECT_EQ(withComma(FormatTwoDecimals(value)), text);
    const std::pair<const wchar_t*, const wchar_t*> typed[] = {
        {L"12.5", L"12,500"},     {L"12,5", L"12,500"}, {L"7", L"7,000"},
        {L"3,14159", L"3,14159"}, {L"", L"0,000"},      {L"abc", L"0,000"}};
    for (const auto& [entry, text] : typed)
        EXPECT_EQ(withComma(NormalizeThreeDecimals(entry)), text);
    const std::pair<const wchar_t*, const wchar_t*> typedRatios[] = {
        {L"1.5", L"1,50"}, {L"1", L"1,00"}, {L"0,125", L"0,125"}, {L"", L"0,00"}};
    for (const auto& [entry, text] : typedRatios)
        EXPECT_EQ(withComma(NormalizeTwoDecimals(entry)), text);
}

TEST_F(WithDecimalComma, ALeadingMarkFailsInTheFallBackToo) {
    EXPECT_EQ(errorOf([] { NormalizeThreeDecimals(L",5"); }), RuntimeError::TypeMismatch);
    EXPECT_EQ(errorOf([] { NormalizeTwoDecimals(L",5"); }), RuntimeError::TypeMismatch);
}

TEST(NormalizeThreeDecimals, FallsBackToTheUnpaddedNumber) {
    // The formatter asks for the mark after the conversion; a query that fails just then leaves
    // the plain number of the second conversion.
    int asked = 0;
    HandInUserLocale([&asked] {
        if (++asked == 2)
            throw RuntimeError(RuntimeError::InvalidProcedureCall);
        return NumberLocale::German();
    });
    EXPECT_EQ(NormalizeThreeDecimals(L"12.5"), L"12,5");
    HandInUserLocale({});
}

} // namespace kalvrooms
