// The file form: there and back, forms that other programs write, and files that are none.

#include "practice/workbook/WorkbookFile.h"

#include "practice/workbook/Calendar.h"
#include "practice/workbook/SheetError.h"
#include "practice/workbook/Xml.h"

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
    sheet.Set(1, 1, {std::wstring(L" Bezeichnung "), L"", TextFormat});
    sheet.Set(1, 2, {std::wstring(L"007"), L"", TextFormat});
    sheet.Set(1, 3, {std::wstring(L" "), L"", TextFormat});
    sheet.Set(1, 4, {std::wstring(L"=1+1"), L"", TextFormat});
    sheet.Set(1, 5, {std::wstring(L"<a> & \"b\" 'c' \u00E4\u20AC\n\tend"), L"", GeneralFormat});
    sheet.Set(1, 7, {12.5, L"", GeneralFormat});
    sheet.Set(1, 8, {1.0 / 3.0, L"", L"0.00"});
    sheet.Set(3, 2, {true, L"", GeneralFormat});
    sheet.Set(3, 3, {ErrorValue{2007}, L"=1/0", GeneralFormat});
    sheet.Set(3, 4, {2.0, L"=1+1", GeneralFormat});
    sheet.Set(3, 5, {SerialOf({2024, 1, 2}), L"", L"d-mmm"});
    sheet.Set(3, 6, {SerialOf({2024, 1, 2}) + 0.25, L"", L"m/d/yyyy h:mm"});
    sheet.Set(3, 7, {0.75, L"", L"h:mm"});
    sheet.Set(3, 8, {{}, L"", TextFormat});
    sheet.Set(65536, 256, {std::wstring(L"last"), L"", GeneralFormat});
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
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"String\"> Bezeichnung </Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"Number\">12.5</Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"Boolean\">1</Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"Error\">#DIV/0!</Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"DateTime\">2024-01-02T00:00:00.000</Data>"));
    EXPECT_THAT(file, HasSubstr("<Data ss:Type=\"DateTime\">1899-12-31T18:00:00.000</Data>"));
    EXPECT_THAT(file, HasSubstr("<NumberFormat ss:Format=\"@\"/>"));
}

TEST(WorkbookFile, WhatXmlCannotSayBecomesAReplacement) {
    Workbook workbook = Workbook::New();
    workbook.sheets[0]->Set(1, 1,
                            {std::wstring(L"a\x01"
                                          L"b"),
                             L"", GeneralFormat});
    const Workbook read = ReadWorkbook(WriteWorkbook(workbook));
    EXPECT_EQ(read.sheets[0]->At(1, 1).value, Value(std::wstring(L"a\uFFFD"
                                                                 L"b")));
}

TEST(WorkbookFile, CountsCellsAsTheFormDoes) {
    const Workbook read = ReadWorkbook(sheetOf(
        "<Row/><Row ss:Span=\"2\"><Cell ss:Index=\"3\" ss:MergeAcross=\"2\">"
        "<Data ss:Type=\"Number\">1</Data></Cell><Cell><Data ss:Type=\"Number\">2</Data></Cell>"
        "</Row><Row><Cell><Data ss:Type=\"Number\">3</Data></Cell></Row>"
        "<Row ss:Index=\"10\"><Cell/><Cell><Data ss:Type=\"Number\">4</Data></Cell></Row>"));
    const Sheet& sheet = *read.sheets[0];
    EXPECT_EQ(sheet.At(2, 3).value, Value(1.0));
    EXPECT_EQ(sheet.At(2, 6).value, Value(2.0));
    EXPECT_EQ(sheet.At(5, 1).value, Value(3.0));
    EXPECT_EQ(sheet.At(10, 2).value, Value(4.0));
    EXPECT_EQ(sheet.cells().size(), 4u);
}

TEST(WorkbookFile, FindsFormatsThroughStylesAndTheirParents) {
    const Workbook read = ReadWorkbook(
        head +
        "<Styles><Style ss:ID=\"a\"><NumberFormat ss:Format=\"@\"/></Style>"
        "<Style ss:ID=\"b\" ss:Parent=\"a\"/>"
        "<Style ss:ID=\"c\"><NumberFormat ss:Format=\"Short Date\"/></Style></Styles>"
        "<Worksheet ss:Name=\"x\"><Table><Row>"
        "<Cell ss:StyleID=\"b\"><Data ss:Type=\"String\">1</Data></Cell>"
        "<Cell ss:StyleID=\"c\"><Data ss:Type=\"Number\">1</Data></Cell>"
        "<Cell ss:StyleID=\"none\"><Data ss:Type=\"DateTime\">1900-01-01T12:00:00</Data></Cell>"
        "</Row></Table></Worksheet></Workbook>");
    EXPECT_EQ(read.sheets[0]->At(1, 1).format, TextFormat);
    EXPECT_EQ(read.sheets[0]->At(1, 2).format, L"m/d/yyyy");
    EXPECT_EQ(read.sheets[0]->At(1, 3), (Cell{1.5, L"", L"m/d/yyyy"}));
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
    EXPECT_EQ(read.sheets[0]->At(1, 1).value, Value(std::wstring(L"fett")));
    EXPECT_EQ(read.sheets[0]->At(1, 2).value, Value(std::wstring(L"<&>")));
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
        "<Workbook/>",
        head + "</Workbook>",
        head + "<Worksheet ss:Name=\"a\">",
        sheetOf("<Row><Cell><Data ss:Type=\"Number\">1,5</Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data ss:Type=\"Number\"></Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data ss:Type=\"Number\">nan</Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data>1</Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data ss:Type=\"What\">1</Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data ss:Type=\"DateTime\">2024-02-30T00:00:00</Data></Cell></Row>"),
        sheetOf("<Row><Cell><Data ss:Type=\"DateTime\">yesterday</Data></Cell></Row>"),
        sheetOf("<Row ss:Index=\"65537\"><Cell/></Row>"),
        sheetOf("<Row ss:Index=\"0\"><Cell/></Row>"),
        sheetOf("<Row ss:Index=\"-1\"><Cell/></Row>"),
        sheetOf("<Row ss:Index=\"x\"><Cell/></Row>"),
        sheetOf("<Row><Cell ss:Index=\"257\"/></Row>"),
        sheetOf("<Row ss:Index=\"65536\"/><Row><Cell/></Row>"),
        "<!DOCTYPE a [<!ENTITY b \"c\">]>" + sheetOf(""),
        sheetOf("<Row>&unknown;</Row>"),
        sheetOf("<Row a:b=\"c\"/>"),
        sheetOf("<Row ss:Index=\"1\" ss:Index=\"2\"/>"),
        sheetOf("") + "<more/>",
        sheetOf("&#0;"),
        sheetOf("&#xD800;"),
        sheetOf("&#99999999999;"),
    };
    for (const std::string& file : files)
        EXPECT_THROW(ReadWorkbook(file), SheetError) << file;
}

TEST(WorkbookFile, DeepNestingIsRefused) {
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "<a>";
    EXPECT_THROW(ReadWorkbook(deep), SheetError);
}

TEST(WorkbookFile, EveryBeginningOfAFileIsRefused) {
    const std::string whole = WriteWorkbook(example());
    const std::size_t end = whole.rfind('>');
    for (std::size_t length = 0; length < end; ++length)
        EXPECT_THROW(ReadWorkbook(whole.substr(0, length)), SheetError) << length;
}

TEST(WorkbookFile, DamagedFilesAreReadOrRefusedAndNothingElse) {
    const std::string whole = WriteWorkbook(example());
    std::mt19937 random(20240131);
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string damaged = whole;
        for (unsigned i = random() % 4 + 1; i > 0; --i)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        try {
            const Workbook read = ReadWorkbook(damaged);
            EXPECT_FALSE(read.sheets.empty());
            EXPECT_LT(read.active, read.sheets.size());
        } catch (const SheetError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 100);
    EXPECT_LT(refused, 3000);
}

TEST(Xml, ResolvesNamespaces) {
    const XmlElement root =
        ReadXml("<a xmlns='u' b='1' p:b='2' xmlns:p='v'>x<p:c xmlns=''><d/></p:c>y</a>");
    EXPECT_EQ(root.name, (XmlName{"u", "a"}));
    EXPECT_EQ(*root.Attribute({"", "b"}), "1");
    EXPECT_EQ(*root.Attribute({"v", "b"}), "2");
    EXPECT_EQ(root.text, "xy");
    ASSERT_NE(root.Child({"v", "c"}), nullptr);
    EXPECT_NE(root.Child({"v", "c"})->Child({"", "d"}), nullptr);
}

TEST(Xml, KeepsWhatIsWrittenAsCharactersAndJoinsLineEnds) {
    EXPECT_EQ(ReadXml("<a>1\r\n2\r3&#13;&#10;</a>").text, "1\n2\n3\r\n");
    EXPECT_EQ(*ReadXml("<a b='1\n2&#10;'/>").Attribute({"", "b"}), "1 2\n");
    EXPECT_EQ(XmlText("a<b>&\"\t"), "a&lt;b&gt;&amp;&quot;&#9;");
}

} // namespace
} // namespace kalvrooms::practice::spreadsheet
