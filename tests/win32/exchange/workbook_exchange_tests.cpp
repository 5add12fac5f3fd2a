// One step each of the exchange with an independent spreadsheet program, in the current folder: see
// the script `workbook-exchange`, which lets the other program work between the steps. This is a
// test of the practice application's files: that another program takes them for what they say, and
// that what it writes is understood.

#include "win32/SpreadsheetTest.h"

#include <cmath>
#include <map>
#include <sstream>

#include "drawing/Text.h"
#include "practice/workbook/Xml.h"

namespace kalvrooms::testing {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

using kalvrooms::FromUtf8;
using sheets::XmlElement;

// Names that other programs like to take for something else.
std::vector<std::wstring> names() {
    return {L"007",          L"1/2",
            L"=1+1",         L"-3",
            L"1E5",          L"TRUE",
            L"+49 30",       L"12:30",
            L"3-Mar",        L"31.12.2024",
            L"1,5",          L"1.5",
            L"5%",           L"$5",
            L"#N/A",         L"'a",
            L"<b>&\"x\"",    L"B\u00FCro \u00DF",
            L"zwei  Blanks", std::wstring(300, L'x')};
}

clsFloors rooms() {
    clsFloors floors;
    for (const std::wstring& words : names()) {
        RoomForTest room;
        room.Name = room.Function = room.Story = room.Enclosure = room.Occupancy = room.AreaType =
            words;
        room.Area = 12.5;
        room.Type = CalculationByDx;
        room.Value = L"5";
        room.AddTo(floors);
    }
    RoomForTest polygon;
    polygon.Area = 1.0 / 3.0;
    polygon.Type = CalculationByFile;
    polygon.Value = L"C:\\Projekte\\Schule\\7.txt";
    polygon.RoomID = L"12-K3";
    polygon.AddTo(floors);
    return floors;
}

// The texts and numbers of all columns of all rooms, as they go into the cells.
std::vector<std::vector<CellValue>> cellsOfRooms() {
    const clsFloors floors = rooms();
    std::vector<std::vector<CellValue>> rows;
    for (std::int32_t index = 1; index <= floors.GetCountOfRooms(); ++index) {
        const clsRoom room = roomAt(floors, index);
        clsGeometry& geometry = *room.Geometry;
        rows.push_back({room.Name(), room.FunctionName(), geometry.Area(), room.StoryCode(),
                        room.Enclosure(), room.Occupancy(), room.AreaType(), geometry.FileName(),
                        geometry.dx(), geometry.dy(), room.GetRoomID()});
        for (CellValue& value : rows.back())
            if (const auto* words = std::get_if<std::wstring>(&value); words && words->empty())
                value = {};
    }
    return rows;
}

class WorkbookExchange : public SpreadsheetTest {
  protected:
    static std::wstring here(const wchar_t* fileName) {
        return (std::filesystem::current_path() / fileName).wstring();
    }
    std::vector<std::wstring> readHere(const wchar_t* fileName) {
        clsFloors floors;
        clsFileSytem(context).ReadListFromFile(here(fileName), floors);
        expectQuietEnd();
        expectNoMessage();
        return contentsOf(floors);
    }
};

TEST_F(WorkbookExchange, Step1AListIsWritten) {
    for (const wchar_t* stale : {L"list.xls", L"list.fods", L"back.xls", L"points.xls"})
        std::filesystem::remove(here(stale));
    clsFileSytem(context).WriteListToFile(here(L"list.xls"), rooms());
    expectQuietEnd();
    ASSERT_TRUE(std::filesystem::exists(here(L"list.xls")));
}

// --- what the other program makes of it, told in a file of its own form

int repeated(const XmlElement* element, const char* name) {
    return std::stoi(sheets::AttributeOf(element, name).value_or("1"));
}

CellValue seenValue(const XmlElement* cell) {
    const std::string type = sheets::AttributeOf(cell, "value-type").value_or("");
    if (type.empty())
        return {};
    if (type == "string") {
        // Runs of blanks and the first one are elements of their own there.
        const XmlElement* text = sheets::ChildOf(cell, "p");
        return text ? FromUtf8(sheets::TextOf(text)) : L"";
    }
    if (type != "float" && type != "percentage" && type != "currency")
        return CellError{};
    std::istringstream number(sheets::AttributeOf(cell, "value").value_or(""));
    number.imbue(std::locale::classic());
    double value = NAN;
    number >> value;
    return value;
}

struct SeenCell {
    CellValue value;
    bool isFormula = false;
};

// The rows of the sheet with that name, by row and column from 1.
std::map<std::pair<int, int>, SeenCell> seenCells(const XmlElement& document,
                                                  const std::string& sheetName) {
    const XmlElement* sheet = &document;
    for (const char* name : {"document", "body", "spreadsheet", "table"})
        sheet = sheets::ChildOf(sheet, name);
    while (sheet && sheets::AttributeOf(sheet, "name") != sheetName)
        sheet = sheets::NextOf(sheet);
    std::map<std::pair<int, int>, SeenCell> cells;
    int row = 1;
    for (const XmlElement* line = sheets::ChildOf(sheet, "table-row"); line;
         line = sheets::NextOf(line)) {
        int column = 1;
        for (const XmlElement* cell = sheets::ChildOf(line, "table-cell"); cell;
             cell = sheets::NextOf(cell)) {
            const int times = repeated(cell, "number-columns-repeated");
            const SeenCell seen{seenValue(cell), sheets::AttributeOf(cell, "formula").has_value()};
            // A sheet's end is one cell repeated a thousand times.
            for (int i = 0; i < times && column + i <= 20; ++i)
                if (seen.value != CellValue() || seen.isFormula)
                    cells[{row, column + i}] = seen;
            column += times;
        }
        row += repeated(line, "number-rows-repeated");
    }
    return cells;
}

// Runs of blanks shrink on the way into that form's texts.
std::wstring withoutBlanks(std::wstring text) {
    std::erase(text, L' ');
    return text;
}

TEST_F(WorkbookExchange, Step2TheOtherProgramSeesTheSameCellsOfTheSameTypes) {
    std::string text = readBytes(here(L"list.fods"));
    ASSERT_FALSE(text.empty());
    rapidxml::xml_document<> document;
    document.parse<0>(text.data());
    const auto seen = seenCells(document, "Sheet4");

    const int titles[] = {20, 21, 22, 23, 24, 25, 26, 30, 94, 95, 96};
    std::size_t expectedCells = 0;
    for (int column = 1; column <= 11; ++column, ++expectedCells) {
        const auto cell = seen.find({1, column});
        ASSERT_NE(cell, seen.end()) << column;
        const auto* title = std::get_if<std::wstring>(&cell->second.value);
        ASSERT_NE(title, nullptr) << column;
        EXPECT_EQ(withoutBlanks(*title), withoutBlanks(context.texts.GetText(titles[column - 1])));
    }
    const auto rows = cellsOfRooms();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        for (int column = 1; column <= 11; ++column) {
            SCOPED_TRACE("row " + std::to_string(i + 2) + " column " + std::to_string(column));
            const CellValue& expected = rows[i][static_cast<std::size_t>(column) - 1];
            const auto cell = seen.find({static_cast<int>(i) + 2, column});
            ASSERT_EQ(cell == seen.end(), expected == CellValue());
            if (cell == seen.end())
                continue;
            ++expectedCells;
            EXPECT_FALSE(cell->second.isFormula);
            ASSERT_EQ(cell->second.value.index(), expected.index());
            if (const auto* words = std::get_if<std::wstring>(&expected)) {
                EXPECT_EQ(withoutBlanks(std::get<std::wstring>(cell->second.value)),
                          withoutBlanks(*words));
            } else {
                EXPECT_NEAR(std::get<double>(cell->second.value), std::get<double>(expected),
                            1e-13);
            }
        }
    }
    EXPECT_THAT(seen, SizeIs(expectedCells));
}

// --- what the other program wrote

TEST_F(WorkbookExchange, Step3AWorkbookOfTheOtherProgramIsReadBack) {
    const auto written = readHere(L"list.xls");
    ASSERT_THAT(written, SizeIs(names().size() + 1));
    EXPECT_EQ(readHere(L"back.xls"), written);
}

TEST_F(WorkbookExchange, Step4PointsInAWorkbookOfTheOtherProgramAreRead) {
    PointArray points;
    ASSERT_TRUE(clsFileSytem(context).ReadPointsFromGeometryFile(here(L"points.xls"), points));
    expectQuietEnd();
    std::vector<std::pair<double, double>> read;
    for (std::int32_t i = 0; i < points.Count(); ++i)
        read.emplace_back(points.X(i), points.Y(i));
    // The row that holds a word repeats the first point.
    EXPECT_EQ(read, (std::vector<std::pair<double, double>>{
                        {0.5, -1.25}, {10, 0.001}, {0.5, -1.25}, {1234.5, 1e6}}));
}

} // namespace
} // namespace kalvrooms::testing
