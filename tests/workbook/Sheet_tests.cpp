// Cells by address, blocks of them, and the sheets of a workbook.

#include "practice/workbook/Sheet.h"

#include "practice/workbook/Entry.h"
#include "practice/workbook/SheetError.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace kalvrooms::practice::spreadsheet {
namespace {

constexpr int thisYear = 2024;

Block row(std::initializer_list<Value> values) {
    Block block(1, static_cast<int>(values.size()));
    block.values = values;
    return block;
}

TEST(Address, NamesCellsAndBlocks) {
    EXPECT_EQ(AreaFrom(L"A1"), (Area{1, 1, 1, 1}));
    EXPECT_EQ(AreaFrom(L"A1:K501"), (Area{1, 1, 501, 11}));
    EXPECT_EQ(AreaFrom(L"$c$2:b$4"), (Area{2, 2, 3, 2}));
    EXPECT_EQ(AreaFrom(L"IV65536"), (Area{65536, 256, 1, 1}));
    EXPECT_EQ(AddressOf({1, 1, 501, 11}), L"$A$1:$K$501");
    EXPECT_EQ(AddressOf({7, 28, 1, 1}), L"$AB$7");
}

TEST(Address, EndsAtTheSheetsLastRowAndColumn) {
    for (const auto* address : {L"A65537", L"IW1", L"A0", L"A", L"1", L"", L"A1:", L"A1:B2:C3",
                                L"ÄÖ1", L"A-1", L"ZZZZZZZZ1", L"A999999999999"})
        EXPECT_THROW(AreaFrom(address), SheetError);
    EXPECT_THROW(Checked({65536, 1, 2, 1}), SheetError);
    EXPECT_THROW(Checked({1, 256, 1, 2}), SheetError);
    EXPECT_THROW(Checked({1, 1, std::numeric_limits<int>::max(), 1}), SheetError);
    EXPECT_THROW(Checked({1, 1, 0, 1}), SheetError);
}

TEST(Sheet, AValueFillsAllCellsOfAnArea) {
    Sheet sheet(L"a");
    sheet.Put({2, 2, 2, 2}, std::wstring(L"007"), thisYear);
    EXPECT_EQ(sheet.At(3, 3).value, Value(7.0));
    EXPECT_EQ(sheet.At(4, 3), Cell());
    EXPECT_EQ(sheet.Used(), (Area{2, 2, 2, 2}));
    sheet.Put({1, 1, 101, 12}, std::wstring(), thisYear);
    EXPECT_TRUE(sheet.cells().empty());
}

TEST(Sheet, NumbersBecomeTextsInCellsOfTheTextFormat) {
    Sheet sheet(L"a");
    sheet.Format({1, 1, 1, 6}, TextFormat);
    sheet.Put({1, 1, 1, 6},
              row({12.5, true, 1e21, std::wstring(L"=1+1"), ErrorValue{2007}, std::monostate()}),
              thisYear);
    EXPECT_EQ(sheet.At(1, 1).value, Value(std::wstring(L"12.5")));
    EXPECT_EQ(sheet.At(1, 2).value, Value(std::wstring(L"TRUE")));
    EXPECT_EQ(sheet.At(1, 3).value, Value(std::wstring(L"1E+21")));
    EXPECT_EQ(sheet.At(1, 4).value, Value(std::wstring(L"=1+1")));
    EXPECT_EQ(sheet.At(1, 5).value, Value(ErrorValue{2007}));
    EXPECT_EQ(sheet.At(1, 6).value, Value());
}

TEST(Sheet, AFormatDoesNotChangeWhatIsInTheCell) {
    Sheet sheet(L"a");
    sheet.Put({1, 1, 1, 1}, std::wstring(L"007"), thisYear);
    sheet.Format({1, 1, 1, 2}, TextFormat);
    EXPECT_EQ(sheet.At(1, 1).value, Value(7.0));
    EXPECT_EQ(sheet.FormatOf({1, 1, 1, 2}), TextFormat);
    EXPECT_EQ(sheet.FormatOf({1, 1, 2, 1}), L"");
    EXPECT_EQ(sheet.FormatOf({5, 5, 1, 1}), GeneralFormat);
    sheet.Format({1, 1, 1, 2}, GeneralFormat);
    EXPECT_EQ(sheet.cells().size(), 1u);
}

TEST(Sheet, CellsThatABlockDoesNotReachGetAnError) {
    Sheet sheet(L"a");
    Block block(2, 2);
    block.values = {1.0, 2.0, 3.0, 4.0};
    sheet.Put({1, 1, 3, 3}, block, thisYear);
    EXPECT_EQ(sheet.At(2, 2).value, Value(4.0));
    EXPECT_EQ(sheet.At(3, 1).value, Value(ErrorValue{2042}));
    EXPECT_EQ(sheet.At(1, 3).value, Value(ErrorValue{2042}));
}

TEST(Sheet, ABlockOfOneRowServesAllRows) {
    Sheet sheet(L"a");
    sheet.Put({1, 1, 3, 2}, row({1.0, 2.0}), thisYear);
    EXPECT_EQ(sheet.At(3, 2).value, Value(2.0));
}

TEST(Sheet, LongTextsDoNotTravelInBlocks) {
    Sheet sheet(L"a");
    sheet.Put({1, 1, 1, 1}, row({std::wstring(911, L'a')}), thisYear);
    EXPECT_THROW(sheet.Put({1, 2, 1, 1}, row({std::wstring(912, L'a')}), thisYear), SheetError);
    EXPECT_EQ(sheet.At(1, 2), Cell());
    sheet.Put({1, 2, 1, 1}, std::wstring(LongestText, L'a'), thisYear);
    EXPECT_EQ(std::get<std::wstring>(sheet.At(1, 2).value).size(), LongestText);
}

TEST(Sheet, RefusesWhatIsNoNumberAndWhatIsTooMuch) {
    Sheet sheet(L"a");
    EXPECT_THROW(sheet.Put({1, 1, 1, 1}, std::numeric_limits<double>::infinity(), thisYear),
                 SheetError);
    EXPECT_THROW(sheet.Put({1, 1, LastRow, LastColumn}, 1.0, thisYear), SheetError);
    EXPECT_THROW(sheet.Put({1, 1, 1, 1}, std::wstring(L"=1+"), thisYear), SheetError);
    EXPECT_TRUE(sheet.cells().empty());
}

TEST(Workbook, ANewOneHasThreeSheetsAndTakesMoreInFrontOfTheActiveOne) {
    Workbook workbook = Workbook::New();
    ASSERT_EQ(workbook.sheets.size(), 3u);
    workbook.active = 1;
    const auto added = workbook.AddSheet();
    EXPECT_EQ(added->name(), L"Sheet4");
    EXPECT_EQ(workbook.sheets[workbook.active], added);
    EXPECT_EQ(workbook.sheets[0]->name(), L"Sheet1");
    EXPECT_EQ(workbook.sheets[2]->name(), L"Sheet2");
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
