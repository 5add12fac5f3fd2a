// Blocks of cells, and the sheets of a workbook.

#include "practice/workbook/Sheet.h"

#include "practice/workbook/SheetError.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace kalvrooms::practice::spreadsheet {
namespace {

CellBlock row(std::initializer_list<CellValue> values) {
    CellBlock block(1, static_cast<int>(values.size()));
    int column = 0;
    for (const CellValue& value : values)
        block.At(0, column++) = value;
    return block;
}

TEST(Sheet, EndsAtItsLastRowAndColumn) {
    Sheet sheet(L"a");
    sheet.Fill({65536, 256, 1, 1}, 1.0);
    for (const CellRange& range :
         {CellRange{65536, 1, 2, 1}, CellRange{1, 256, 1, 2}, CellRange{0, 1, 1, 1},
          CellRange{1, 1, std::numeric_limits<int>::max(), 1}, CellRange{1, 1, 0, 1}})
        EXPECT_THROW(sheet.Check(range), SheetError);
    sheet.rows = 16384;
    EXPECT_THROW(sheet.Values({16384, 1, 2, 1}), SheetError);
}

TEST(Sheet, AValueFillsAllCells) {
    Sheet sheet(L"a");
    sheet.Fill({2, 2, 2, 2}, L"007");
    EXPECT_EQ(sheet.At(3, 3).value, CellValue(7.0));
    EXPECT_EQ(sheet.At(4, 3), Cell());
    sheet.Fill({1, 1, 101, 12}, std::wstring());
    EXPECT_TRUE(sheet.cells().empty());
}

TEST(Sheet, InCellsOfTheTextFormatEverythingIsText) {
    Sheet sheet(L"a");
    sheet.Format({1, 1, 1, 6}, TextNumberFormat);
    sheet.Put({1, 1, 1, 6}, row({12.5, true, 1e21, L"=1+1", L"'a", std::wstring()}));
    EXPECT_EQ(sheet.At(1, 1).value, CellValue(L"12.5"));
    EXPECT_EQ(sheet.At(1, 2).value, CellValue(L"TRUE"));
    EXPECT_EQ(sheet.At(1, 3).value, CellValue(L"1E+21"));
    EXPECT_EQ(sheet.At(1, 4).value, CellValue(L"=1+1"));
    EXPECT_EQ(sheet.At(1, 5).value, CellValue(L"'a"));
    EXPECT_EQ(sheet.At(1, 6), (Cell{{}, TextNumberFormat}));
}

TEST(Sheet, AFormatDoesNotChangeWhatIsInTheCell) {
    Sheet sheet(L"a");
    sheet.Fill({1, 1, 1, 1}, L"007");
    sheet.Format({1, 1, 1, 2}, TextNumberFormat);
    EXPECT_EQ(sheet.At(1, 1), (Cell{7.0, TextNumberFormat}));
    sheet.Format({1, 1, 1, 2}, GeneralNumberFormat);
    EXPECT_EQ(sheet.cells().size(), 1u);
}

TEST(Sheet, LongTextsDoNotTravelInBlocks) {
    Sheet sheet(L"a");
    sheet.Put({1, 1, 1, 1}, row({std::wstring(911, L'a')}));
    EXPECT_THROW(sheet.Put({1, 2, 1, 1}, row({std::wstring(912, L'a')})), SheetError);
    EXPECT_EQ(sheet.At(1, 2), Cell());
    EXPECT_THROW(sheet.Put({1, 2, 1, 2}, row({1.0})), SheetError);
    sheet.Fill({1, 2, 1, 1}, std::wstring(Sheet::LongestText, L'a'));
    EXPECT_THROW(sheet.Fill({1, 3, 1, 1}, std::wstring(Sheet::LongestText + 1, L'a')), SheetError);
}

TEST(Workbook, ANewOneHasThreeSheetsAndTakesMoreInFrontOfTheActiveOne) {
    Workbook workbook = Workbook::New();
    ASSERT_EQ(workbook.sheets.size(), 3u);
    workbook.active = 1;
    const auto added = workbook.AddSheet();
    EXPECT_EQ(added->name(), L"Sheet4");
    EXPECT_EQ(&workbook.ActiveSheet(), added.get());
    EXPECT_EQ(workbook.sheets[0]->name(), L"Sheet1");
    EXPECT_EQ(workbook.sheets[2]->name(), L"Sheet2");
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
