// What becomes of typed texts.

#include "practice/workbook/Sheet.h"

#include <gtest/gtest.h>

#include <string>

namespace kalvrooms::practice::spreadsheet {
namespace {

std::wstring dayOf(const std::wstring& text) {
    const CellValue value = Typed(text);
    const auto* date = std::get_if<CellDate>(&value);
    return date ? date->Shown : L"no date";
}

TEST(Typed, TextsThatLookLikeNumbersBecomeNumbers) {
    const std::pair<const wchar_t*, double> numbers[] = {
        {L"007", 7},   {L"-3", -3},  {L"+3", 3},         {L" 12.50 ", 12.5},   {L".5", 0.5},
        {L"5.", 5},    {L"(5)", -5}, {L"1E5", 100000},   {L"1e-3", 0.001},     {L"1,234", 1234},
        {L"5%", 0.05}, {L"$5", 5},   {L"-$5.25", -5.25}, {L"1,234.5", 1234.5}, {L"1.234", 1.234}};
    for (const auto& [text, number] : numbers)
        EXPECT_EQ(Typed(text), CellValue(number)) << std::string(text, text + wcslen(text));
}

TEST(Typed, TextsThatLookLikeDatesBecomeDates) {
    EXPECT_TRUE(dayOf(L"1/2").ends_with(L"-01-02T00:00:00.000"));
    EXPECT_TRUE(dayOf(L"2-10").ends_with(L"-02-10T00:00:00.000"));
    EXPECT_TRUE(dayOf(L"3-Mar").ends_with(L"-03-03T00:00:00.000"));
    EXPECT_EQ(dayOf(L"1/2/03"), L"2003-01-02T00:00:00.000");
    EXPECT_EQ(dayOf(L"1/2/32"), L"1932-01-02T00:00:00.000");
    EXPECT_EQ(dayOf(L"2024-02-29"), L"2024-02-29T00:00:00.000");
    EXPECT_EQ(dayOf(L"3 March 1999"), L"1999-03-03T00:00:00.000");
    EXPECT_EQ(dayOf(L"12:30"), L"1899-12-31T12:30:00.000");
    EXPECT_EQ(dayOf(L"6:00:36 PM"), L"1899-12-31T18:00:36.000");
}

TEST(Typed, FormulasTruthsAndErrorsAreTaken) {
    for (const auto* formula : {L"=1+1", L"=SUM(A1)", L"=1+", L"-Flur", L"+49 30", L"--"})
        EXPECT_EQ(Typed(formula), CellValue(CellError{L"#NAME?"}));
    EXPECT_EQ(Typed(L"TRUE"), CellValue(true));
    EXPECT_EQ(Typed(L"false"), CellValue(false));
    EXPECT_EQ(Typed(L"#N/A"), CellValue(CellError{L"#N/A"}));
}

TEST(Typed, EverythingElseStaysText) {
    for (const std::wstring text :
         {L" ",     L"Büro 2", L"=",     L"-",         L"1a",         L"1,23",    L"12,5",
          L"$",     L"%",      L"E5",    L"1E",        L"..",         L"1E400",   L"WAHR",
          L"(5",    L"13/1",   L"1/2-3", L"2/30/2024", L"1/2/3/4",    L"2.OG",    L"2 101",
          L"12:60", L"25:00",  L"3-Mrz", L"1-2a",      L"31.12.2024", L"12,34,5", L"#UNKNOWN"})
        EXPECT_EQ(Typed(text), CellValue(text)) << std::string(text.begin(), text.end());
    EXPECT_EQ(Typed(std::wstring(5000, L'9')), CellValue(std::wstring(5000, L'9')));
    EXPECT_EQ(Typed(L"'=1+1"), CellValue(L"=1+1"));
    EXPECT_EQ(Typed(L""), CellValue());
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
