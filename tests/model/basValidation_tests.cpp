#include "model/basValidation.h"

#include <cmath>

#include "model/UserLocaleForTest.h"

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

TEST(GetDecimalSeparator, IsAskedAfreshOnEveryCall) {
    int asked = 0;
    HandInUserLocale([&asked] {
        ++asked;
        return asked % 2 == 1 ? NumberLocale::German() : NumberLocale::Point();
    });
    EXPECT_EQ(GetDecimalSeparator(), L",");
    EXPECT_EQ(GetDecimalSeparator(), L".");
    EXPECT_EQ(GetDecimalSeparator(), L",");
    HandInUserLocale({});
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

TEST(IsNumberKey, RefusesMinusBlankAndClipboardKeys) {
    for (const int key : {45, 32, 3, 22, 24, 13, 27, 127, 101}) {
        EXPECT_FALSE(IsNumberKey(static_cast<std::int16_t>(key))) << key;
        EXPECT_FALSE(IsDigitKey(static_cast<std::int16_t>(key))) << key;
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

TEST_F(WithDecimalComma, BothMarksAreLeftToTheLocale) {
    EXPECT_EQ(TextToNumber(L"1.234,5"), 1234.5);
    EXPECT_EQ(TextToNumber(L"1,234.5"), 1.2345);
}

TEST_F(WithDecimalPoint, BothMarksAreLeftToTheLocale) {
    EXPECT_EQ(TextToNumber(L"1,234.5"), 1234.5);
    EXPECT_EQ(TextToNumber(L"1.234,5"), 1.2345);
}

TEST_F(WithDecimalComma, SeveralGroupingMarksLeaveTheFirstGroup) {
    EXPECT_EQ(TextToNumber(L"1.234.567"), 1.0);
    EXPECT_EQ(TextToNumber(L"1,234,567"), 0.0); // no number here
}

TEST_F(WithDecimalPoint, SeveralGroupingMarksLeaveTheFirstGroup) {
    EXPECT_EQ(TextToNumber(L"1,234,567"), 1.0);
    EXPECT_EQ(TextToNumber(L"1.234.567"), 0.0);
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

TEST_F(WithDecimalComma, FormatThreeDecimalsPadsButNeverCuts) {
    EXPECT_EQ(FormatThreeDecimals(7.0), L"7,000");
    EXPECT_EQ(FormatThreeDecimals(12.5), L"12,500");
    EXPECT_EQ(FormatThreeDecimals(12.25), L"12,250");
    EXPECT_EQ(FormatThreeDecimals(12.125), L"12,125");
    EXPECT_EQ(FormatThreeDecimals(3.14159), L"3,14159");
    EXPECT_EQ(FormatThreeDecimals(0.0), L"0,000");
    EXPECT_EQ(FormatThreeDecimals(-0.5), L"-0,500");
}

TEST_F(WithDecimalPoint, FormatThreeDecimalsPadsButNeverCuts) {
    EXPECT_EQ(FormatThreeDecimals(7.0), L"7.000");
    EXPECT_EQ(FormatThreeDecimals(12.5), L"12.500");
    EXPECT_EQ(FormatThreeDecimals(3.14159), L"3.14159");
}

TEST_F(WithDecimalComma, FormatTwoDecimalsPadsButNeverCuts) {
    EXPECT_EQ(FormatTwoDecimals(1.0), L"1,00");
    EXPECT_EQ(FormatTwoDecimals(1.5), L"1,50");
    EXPECT_EQ(FormatTwoDecimals(1.25), L"1,25");
    EXPECT_EQ(FormatTwoDecimals(1.125), L"1,125");
}

TEST_F(WithDecimalComma, AnExponentIsPaddedLikeAnyOtherText) {
    EXPECT_EQ(FormatThreeDecimals(1e15), L"1E+15,000");
    EXPECT_EQ(FormatTwoDecimals(1.5e20), L"1,5E+20");
}

TEST_F(WithDecimalComma, NormalizeThreeDecimalsShowsTheUsersMark) {
    EXPECT_EQ(NormalizeThreeDecimals(L"12.5"), L"12,500");
    EXPECT_EQ(NormalizeThreeDecimals(L"12,5"), L"12,500");
    EXPECT_EQ(NormalizeThreeDecimals(L"7"), L"7,000");
    EXPECT_EQ(NormalizeThreeDecimals(L"3,14159"), L"3,14159");
}

TEST_F(WithDecimalPoint, NormalizeThreeDecimalsShowsTheUsersMark) {
    EXPECT_EQ(NormalizeThreeDecimals(L"12,5"), L"12.500");
    EXPECT_EQ(NormalizeThreeDecimals(L"12.5"), L"12.500");
}

TEST_F(WithDecimalComma, AnEmptyFieldBecomesZero) {
    EXPECT_EQ(NormalizeThreeDecimals(L""), L"0,000");
    EXPECT_EQ(NormalizeThreeDecimals(L"abc"), L"0,000");
    EXPECT_EQ(NormalizeTwoDecimals(L""), L"0,00");
}

TEST_F(WithDecimalComma, NormalizeTwoDecimalsShowsTwo) {
    EXPECT_EQ(NormalizeTwoDecimals(L"1.5"), L"1,50");
    EXPECT_EQ(NormalizeTwoDecimals(L"1"), L"1,00");
    EXPECT_EQ(NormalizeTwoDecimals(L"0,125"), L"0,125");
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
