// The file form: there and back, forms that other programs write, and files that are none.

#include "practice/workbook/WorkbookFile.h"

#include "practice/workbook/SheetError.h"

#include <gmock/gmock.h>

#include <random>
#include <string>

namespace kalvrooms::practice::spreadsheet {
namespace {

using testing::HasSubstr;

const std::string head = "<?xml version=\"1.0\"?>"
                         "<Workbook xmlns=\"urn:schemas-microsoft-com:office:spreadsheet\" "
                         "xmlns:ss=\"urn:schemas-microsoft-com:office:spreadsheet\" "
                         "xmlns:x=\"urn:schemas-microsoft-com:office:excel\">";

std::string sheetOf(const std::string& rows) {
    return head + "<Worksheet ss:Name=\"a\"><Table>" + rows + "</Table></Worksheet></Workbook>";
}

Workbook example() {
    Workbook workbook = Workbook::New();
    Sheet& sheet = *workbook.AddSheet();
    sheet.Set(1, 1, {L" Bezeichnung ", TextNumberFormat});
    sheet.Set(1, 2, {L"007", TextNumberFormat});
    sheet.Set(1, 3, {L" ", TextNumberFormat});
    sheet.Set(1, 5, {L"<a> & \"b\" 'c' \u00E4\u20AC\r\n\tend"});
    sheet.Set(1, 8, {1.0 / 3.0, L"0.00"});
    sheet.Set(3, 2, {true});
    sheet.Set(3, 3, {CellError{L"#DIV/0!"}});
    sheet.Set(3, 5, {CellDate{L"2024-01-02T00:00:00.000"}, L"d\\-mmm"});
    sheet.Set(3, 8, {{}, TextNumberFormat});
    sheet.Set(65536, 256, {L"last"});
    return workbook;
}

TEST(WorkbookFile, BringsEveryCellBack) {
    const Workbook written = example();
    const Workbook read = ReadWorkbook(WriteWorkbook(written));
    ASSERT_EQ(read.sheets.size(), written.sheets.size());
    EXPECT_EQ(read.active, written.active);
    for (std::size_t i = 0; i < read.sheets.size(); ++i) {
        EXPECT_EQ(read.sheets[i]->name(), written.sheets[i]->name());
        EXPECT_EQ(read.sheets[i]->cells(), written.sheets[i]->cells());
    }
    EXPECT_EQ(WriteWorkbook(read), WriteWorkbook(written));
}

TEST(WorkbookFile, SaysTheTypeOfEveryCell) {
    const std::string file = WriteWorkbook(example());
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"String\">007</Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"Boolean\">1</Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"Error\">#DIV/0!</Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"DateTime\">2024-01-02T00:00:00.000</Data>"));
    EXPECT_THAT(file, HasSubstr("<NumberFormat ss:Format=\"@\"/>"));
}

TEST(WorkbookFile, WhatXmlCannotSayBecomesAReplacement) {
    Workbook workbook = Workbook::New();
    workbook.sheets[0]->Set(1, 1, {std::wstring(L"a\x01") + L"b"});
    const Workbook read = ReadWorkbook(WriteWorkbook(workbook));
    EXPECT_EQ(read.sheets[0]->At(1, 1).value, CellValue(std::wstring(L"a\uFFFD") + L"b"));
}

TEST(WorkbookFile, CountsCellsAsTheFormDoes) {
    const Workbook read = ReadWorkbook(sheetOf(
        "<Row/><Row ss:Span=\"2\"><Cell ss:Index=\"3\" ss:MergeAcross=\"2\">"
        "<Data ss:Type=\"Number\">1</Data></Cell><Cell><Data ss:Type=\"Number\">2</Data></Cell>"
        "</Row><Row><Cell><Data ss:Type=\"Number\">3</Data></Cell></Row>"
        "<Row ss:Index=\"10\"><Cell/><Cell><Data ss:Type=\"Number\">4</Data></Cell></Row>"));
    const Sheet& sheet = *read.sheets[0];
    EXPECT_EQ(sheet.At(2, 3).value, CellValue(1.0));
    EXPECT_EQ(sheet.At(2, 6).value, CellValue(2.0));
    EXPECT_EQ(sheet.At(5, 1).value, CellValue(3.0));
    EXPECT_EQ(sheet.At(10, 2).value, CellValue(4.0));
    EXPECT_EQ(sheet.cells().size(), 4u);
}

TEST(WorkbookFile, FindsFormatsThroughStylesAndTheirParents) {
    const Workbook read = ReadWorkbook(
        head +
        "<Styles><Style ss:ID=\"a\"><NumberFormat ss:Format=\"@\"/></Style>"
        "<Style ss:ID=\"b\" ss:Parent=\"a\"/></Styles>"
        "<Worksheet ss:Name=\"x\"><Table><Row>"
        "<Cell ss:StyleID=\"b\"><Data ss:Type=\"String\">1</Data></Cell>"
        "<Cell ss:StyleID=\"none\"><Data ss:Type=\"DateTime\">1900-01-01T12:00:00</Data></Cell>"
        "</Row></Table></Worksheet></Workbook>");
    EXPECT_EQ(read.sheets[0]->At(1, 1).format, TextNumberFormat);
    EXPECT_EQ(read.sheets[0]->At(1, 2), (Cell{CellDate{L"1900-01-01T12:00:00"}}));
}

TEST(WorkbookFile, TakesTextsWithLayoutAndPrefixesOfAllKinds) {
    const Workbook read = ReadWorkbook(
        "\xEF\xBB\xBF<?xml version='1.0'?><!-- a --><s:Workbook "
        "xmlns:s='urn:schemas-microsoft-com:office:spreadsheet'>"
        "<s:Worksheet s:Name='&#xE4;'><s:Table><s:Row><s:Cell><s:Data s:Type='String'"
        " xmlns='http://www.w3.org/TR/REC-html40'><B>fett</B></s:Data></s:Cell><s:Cell>"
        "<s:Data s:Type='String'><![CDATA[<&>]]></s:Data></s:Cell></s:Row></s:Table>"
        "</s:Worksheet></s:Workbook>");
    EXPECT_EQ(read.sheets[0]->name(), L"\u00E4");
    EXPECT_EQ(read.sheets[0]->At(1, 1).value, CellValue(L"fett"));
    EXPECT_EQ(read.sheets[0]->At(1, 2).value, CellValue(L"<&>"));
}

TEST(WorkbookFile, KnowsTheActiveSheetInBothWaysOfSayingIt) {
    const std::string sheets = "<Worksheet ss:Name=\"a\"/><Worksheet ss:Name=\"b\"/>";
    EXPECT_EQ(ReadWorkbook(head + sheets + "</Workbook>").active, 0u);
    EXPECT_EQ(ReadWorkbook(head +
                           "<x:ExcelWorkbook><x:ActiveSheet>1</x:ActiveSheet></x:ExcelWorkbook>" +
                           sheets + "</Workbook>")
                  .active,
              1u);
    EXPECT_EQ(ReadWorkbook(head + "<Worksheet ss:Name=\"a\"/><Worksheet ss:Name=\"b\">"
                                  "<x:WorksheetOptions><x:Selected/></x:WorksheetOptions>"
                                  "</Worksheet></Workbook>")
                  .active,
              1u);
}

TEST(WorkbookFile, FilesThatAreNoWorkbookAreRefused) {
    const std::string files[] = {
        "",
        "a\tb",
        "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1",
        std::string("PK\x03\x04", 4),
        "<html><body/></html>",
        head + "</Workbook>",
        head + "<Worksheet ss:Name=\"a\">",
        sheetOf("<Row><Cell><Data ss:Type=\"Number\">1,5</Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data ss:Type=\"Number\">nan</Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data ss:Type=\"What\">1</Data></Cell></Row>"),
        sheetOf("<Row ss:Index=\"65537\"><Cell/></Row>"),
        sheetOf("<Row ss:Index=\"0\"><Cell/></Row>"),
        sheetOf("<Row ss:Index=\"x\"><Cell/></Row>"),
        sheetOf("<Row><Cell ss:Index=\"257\"/></Row>"),
    };
    for (const std::string& file : files)
        EXPECT_THROW(ReadWorkbook(file), SheetError) << file;

    std::string nested;
    for (int level = 0; level < 100000; ++level)
        nested += "<a>";
    EXPECT_THROW(ReadWorkbook(nested), SheetError);
}

TEST(WorkbookFile, DamagedFilesAreReadOrRefusedAndNothingElse) {
    const std::string whole = WriteWorkbook(example());
    std::mt19937 random(20240131);
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string damaged =
            whole.substr(0, round % 2 == 0 ? random() % whole.size() : whole.size());
        for (unsigned i = random() % 4 + 1; i > 0 && !damaged.empty(); --i)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        try {
            const Workbook read = ReadWorkbook(damaged);
            EXPECT_LT(read.active, read.sheets.size());
        } catch (const SheetError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 100);
    EXPECT_LT(refused, 3000);
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
