// What becomes of typed texts, in cells of all formats.

#include "practice/workbook/Entry.h"

#include "practice/workbook/Calendar.h"
#include "practice/workbook/SheetError.h"

#include <gtest/gtest.h>

#include <string>

namespace kalvrooms::practice::spreadsheet {
namespace {

constexpr int thisYear = 2024;

Cell typed(const std::wstring& text, const std::wstring& format = GeneralFormat) {
    return Typed(text, format, thisYear);
}
Cell numberCell(double number, const std::wstring& format = GeneralFormat) {
    return {number, L"", format};
}
Cell textCell(const std::wstring& text) {
    return {text, L"", GeneralFormat};
}

TEST(Entry, TextsThatLookLikeNumbersBecomeNumbers) {
    EXPECT_EQ(typed(L"007"), numberCell(7));
    EXPECT_EQ(typed(L"-3"), numberCell(-3));
    EXPECT_EQ(typed(L"+3"), numberCell(3));
    EXPECT_EQ(typed(L" 12.50 "), numberCell(12.5));
    EXPECT_EQ(typed(L".5"), numberCell(0.5));
    EXPECT_EQ(typed(L"5."), numberCell(5));
    EXPECT_EQ(typed(L"0.05"), numberCell(0.05));
    EXPECT_EQ(typed(L"(5)"), numberCell(-5));
}

TEST(Entry, TheWayOfWritingANumberSetsTheFormatOfAGeneralCell) {
    EXPECT_EQ(typed(L"1E5"), numberCell(100000, L"0.00E+00"));
    EXPECT_EQ(typed(L"1e-3"), numberCell(0.001, L"0.00E+00"));
    EXPECT_EQ(typed(L"1,234"), numberCell(1234, L"#,##0"));
    EXPECT_EQ(typed(L"1,234.5"), numberCell(1234.5, L"#,##0.00"));
    EXPECT_EQ(typed(L"5%"), numberCell(0.05, L"0%"));
    EXPECT_EQ(typed(L"$5"), numberCell(5, L"$#,##0"));
    EXPECT_EQ(typed(L"-$5.25"), numberCell(-5.25, L"$#,##0.00"));
    EXPECT_EQ(typed(L"1 1/2"), numberCell(1.5, L"# ?/?"));
    EXPECT_EQ(typed(L"1E5", L"0.0"), numberCell(100000, L"0.0"));
}

TEST(Entry, GermanNumbersAreReadTheWayOfTheUnitedStates) {
    EXPECT_EQ(typed(L"12,5"), textCell(L"12,5"));
    EXPECT_EQ(typed(L"1.234,5"), textCell(L"1.234,5"));
    EXPECT_EQ(typed(L"1,234"), numberCell(1234, L"#,##0"));
    EXPECT_EQ(typed(L"1.234"), numberCell(1.234));
}

TEST(Entry, NumbersKeepFifteenDigits) {
    EXPECT_EQ(typed(L"1234567890123456789"), numberCell(1234567890123450000.0));
    EXPECT_EQ(typed(L"0.1234567890123456789"), numberCell(0.123456789012345));
    EXPECT_EQ(typed(L"1E400"), textCell(L"1E400"));
    EXPECT_EQ(typed(L"1E-400"), numberCell(0, L"0.00E+00"));
}

TEST(Entry, TextsThatLookLikeDatesBecomeDates) {
    EXPECT_EQ(typed(L"1/2"), numberCell(SerialOf({thisYear, 1, 2}), L"d-mmm"));
    EXPECT_EQ(typed(L"2-10"), numberCell(SerialOf({thisYear, 2, 10}), L"d-mmm"));
    EXPECT_EQ(typed(L"1/32"), numberCell(SerialOf({1932, 1, 1}), L"mmm-yy"));
    EXPECT_EQ(typed(L"1/2/03"), numberCell(SerialOf({2003, 1, 2}), L"m/d/yyyy"));
    EXPECT_EQ(typed(L"2024-01-31"), numberCell(SerialOf({2024, 1, 31}), L"m/d/yyyy"));
    EXPECT_EQ(typed(L"3-mar"), numberCell(SerialOf({thisYear, 3, 3}), L"d-mmm"));
    EXPECT_EQ(typed(L"March 3, 1999"), numberCell(SerialOf({1999, 3, 3}), L"d-mmm-yy"));
    EXPECT_EQ(typed(L"12:30"), numberCell(12.5 / 24, L"h:mm"));
    EXPECT_EQ(typed(L"6:00:36 PM"), numberCell(64836.0 / 86400, L"h:mm:ss AM/PM"));
    EXPECT_EQ(typed(L"1/2/2003 12:00"), numberCell(SerialOf({2003, 1, 2}) + 0.5, L"m/d/yyyy h:mm"));
}

TEST(Entry, TextsThatOnlyNearlyLookLikeDatesStayTexts) {
    for (const auto* text : {L"2-101", L"13/1", L"2/30/2024", L"1/2/3/4", L"1/2-3", L"12:60",
                             L"2.OG", L"EG", L"2 101", L"101-2", L"1-2a"})
        EXPECT_EQ(typed(text), textCell(text)) << std::string(text, text + wcslen(text));
}

TEST(Entry, FormulasAreCalculated) {
    EXPECT_EQ(typed(L"=1+1"), (Cell{2.0, L"=1+1", GeneralFormat}));
    EXPECT_EQ(typed(L"=2*(3-1)^2/8").value, Value(1.0));
    EXPECT_EQ(typed(L"=-2+5%").value, Value(-1.95));
    EXPECT_EQ(typed(L"=1/0").value, Value(ErrorValue{2007}));
    EXPECT_EQ(typed(L"=Flur").value, Value(ErrorValue{2029}));
    EXPECT_EQ(typed(L"=SUM(1,2)").value, Value(ErrorValue{2029}));
    EXPECT_EQ(typed(L"-Flur"), (Cell{ErrorValue{2029}, L"=-Flur", GeneralFormat}));
    EXPECT_EQ(typed(L"-1+3"), (Cell{2.0, L"=-1+3", GeneralFormat}));
}

TEST(Entry, AFormulaThatCannotBeReadIsRefused) {
    for (const auto* text : {L"=1+", L"=(1", L"=)", L"--", L"=1 2", L"=\"a\"", L"=ä("})
        EXPECT_THROW(typed(text), SheetError);
    EXPECT_THROW(typed(L"=" + std::wstring(1000, L'(') + L"1" + std::wstring(1000, L')')),
                 SheetError);
}

TEST(Entry, TruthsAndErrorsAreTaken) {
    EXPECT_EQ(typed(L"TRUE").value, Value(true));
    EXPECT_EQ(typed(L"false").value, Value(false));
    EXPECT_EQ(typed(L"#N/A").value, Value(ErrorValue{2042}));
    EXPECT_EQ(typed(L"WAHR"), textCell(L"WAHR"));
}

TEST(Entry, AnApostropheMarksAText) {
    EXPECT_EQ(typed(L"'007"), textCell(L"007"));
    EXPECT_EQ(typed(L"'=1+1"), textCell(L"=1+1"));
}

TEST(Entry, TextsStayWhatTheyAre) {
    for (const auto* text : {L" ", L"Büro 2", L"=", L"-", L"a", L"1a", L"1,23", L"$", L"%", L"E5",
                             L"1E", L"..", L",5"})
        EXPECT_EQ(typed(text), textCell(text));
}

TEST(Entry, InACellOfTheTextFormatEverythingStaysText) {
    for (const std::wstring text :
         {L"007", L"1/2", L"=1+1", L"-3", L"1E5", L"TRUE", L"'a", L"#N/A", L"-Flur", L"=1+", L" "})
        EXPECT_EQ(typed(text, TextFormat), (Cell{text, L"", TextFormat}));
}

TEST(Entry, TheEmptyTextEmptiesTheCellAndLeavesItsFormat) {
    EXPECT_EQ(typed(L""), Cell());
    EXPECT_EQ(typed(L"", TextFormat), (Cell{{}, L"", TextFormat}));
}

TEST(Entry, ACellTakes32767Characters) {
    const std::wstring longest(LongestText, L'a');
    EXPECT_EQ(typed(longest), textCell(longest));
    EXPECT_THROW(typed(longest + L"a"), SheetError);
    EXPECT_THROW(typed(longest + L"a", TextFormat), SheetError);
}

TEST(Calendar, CountsDaysAsSheetsDo) {
    EXPECT_EQ(SerialOf({1900, 1, 1}), 1);
    EXPECT_EQ(SerialOf({1900, 2, 28}), 59);
    EXPECT_EQ(SerialOf({1900, 3, 1}), 61);
    EXPECT_EQ(SerialOf({2000, 1, 1}), 36526);
    EXPECT_EQ(SerialOf({9999, 12, 31}), 2958465);
}

TEST(Calendar, EveryDayComesBackFromItsNumber) {
    for (double serial = 1; serial < 2958466; serial += 1) {
        if (serial == 60)
            continue;
        const auto date = DateOf(serial);
        ASSERT_TRUE(date && IsDate(*date) && SerialOf(*date) == serial) << serial;
        if (serial > 80000)
            serial += 96;
    }
    EXPECT_EQ(DateOf(2958465), (Date{9999, 12, 31}));
    EXPECT_FALSE(DateOf(2958466));
    EXPECT_FALSE(DateOf(0));
    EXPECT_FALSE(DateOf(-1));
}

TEST(Calendar, KnowsLeapYears) {
    EXPECT_TRUE(IsDate({2000, 2, 29}));
    EXPECT_FALSE(IsDate({2100, 2, 29}));
    EXPECT_FALSE(IsDate({2023, 2, 29}));
    EXPECT_FALSE(IsDate({2024, 13, 1}));
    EXPECT_FALSE(IsDate({1899, 12, 31}));
}

TEST(Formats, AreTakenForWhatTheyMean) {
    EXPECT_EQ(KindOf(L"General"), FormatKind::General);
    EXPECT_EQ(KindOf(L"@"), FormatKind::Text);
    EXPECT_EQ(KindOf(L"d\\-mmm"), FormatKind::Date);
    EXPECT_EQ(KindOf(L"[h]:mm"), FormatKind::Date);
    EXPECT_EQ(KindOf(L"0.00\" m\""), FormatKind::Number);
    EXPECT_EQ(KindOf(L"[Red]0.00"), FormatKind::Number);
    EXPECT_EQ(KindOf(L"$#,##0.00"), FormatKind::Currency);
    EXPECT_EQ(KindOf(L"#,##0.00 [$\u20AC-407]"), FormatKind::Currency);
    EXPECT_EQ(KindOf(L"\"open"), FormatKind::Number);
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
