#include "files/clsExcel.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "app/clsWait.h"
#include "files/RoomRow.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

constexpr int columnCount = static_cast<int>(RoomColumnCount);

// Sheets count from 1.
constexpr int sheetColumn(std::size_t column) {
    return static_cast<int>(column) + 1;
}

constexpr int headerRow = 1;
constexpr int firstRoomRow = 2;

// Sheets have 2^14, 2^16 or 2^20 rows: blocks that end at multiples of this never reach over the
// end, and one that does would be an error instead of rows.
constexpr int rowsPerBlock = 512;

// What an older list may have left behind in a workbook that is written anew.
constexpr CellRange clearedBlock = {1, 1, 101, 12};

// Applications take longer texts only cell by cell.
constexpr std::size_t longestTextInBlock = 900;

// An application that is there and answers with nothing is a failure of its own: "no object" would
// say that there is no application.
template <typename Object>
std::unique_ptr<Object> existing(std::unique_ptr<Object> object) {
    if (!object)
        throw RuntimeError(RuntimeError::AutomationError);
    return object;
}

// A room list's and a point list's cells, read as texts.
std::wstring textOf(const CellValue& value, const NumberLocale& locale) {
    if (const auto* text = std::get_if<std::wstring>(&value))
        return *text;
    if (const auto* number = std::get_if<double>(&value))
        return FromDouble(*number, locale);
    if (const auto* truth = std::get_if<bool>(&value))
        return *truth ? L"True" : L"False";
    if (const auto* error = std::get_if<CellError>(&value)) {
        // The room keeps what the user sees in the sheet.
        return error->Shown;
    }
    if (const auto* date = std::get_if<CellDate>(&value))
        return date->Shown;
    return {};
}

double numberOrZero(const CellValue& value, const NumberLocale& locale) {
    if (const auto* number = std::get_if<double>(&value))
        return *number;
    return std::holds_alternative<CellDate>(value) ? 0.0
                                                   : NumberOrZero(textOf(value, locale), locale);
}

} // namespace

clsExcel::clsExcel(const FileServices& services) : services_(services) {}

clsExcel::~clsExcel() = default;

// ------------------------------------------------------------------------- the application

void clsExcel::OpenWorkbookForReading(const std::wstring& fileName) {
    SpreadsheetServer& server = services_.spreadsheets;
    try {
        application_ = server.AttachRunning();
        if (application_)
            application_->DisplayAlerts(false);
    } catch (const RuntimeError&) {
        // One that cannot be talked to is as good as none.
        application_.reset();
    }
    if (!application_) {
        try {
            application_ = server.CreateInstance();
            // Nobody could answer the questions of an application without a window.
            if (application_)
                application_->DisplayAlerts(false);
        } catch (const RuntimeError&) {
            // Told by the opening below.
        }
    }
    if (!application_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    workbook_ = existing(application_->OpenWorkbook(fileName));
    sheet_ = existing(workbook_->ActiveSheet());
}

void clsExcel::PrepareWorkbookForWriting(const std::wstring& fileName, bool& isNewFile) {
    try {
        application_ = services_.spreadsheets.CreateInstance();
    } catch (const RuntimeError& error) {
        // Too busy to answer is not missing: a text file must not replace the workbook then.
        if (error.number() == RuntimeError::AutomationError)
            throw;
        application_.reset();
    }
    if (!application_)
        throw RuntimeError(RuntimeError::CannotCreateObject);
    application_->DisplayAlerts(false);

    bool failed = false;
    TryOpenWorkbook(fileName, failed);
    if (!failed) {
        workbook_ = existing(application_->OpenWorkbook(fileName));
        sheet_ = existing(workbook_->ActiveSheet());
        sheet_->Fill(clearedBlock, std::wstring());
    } else {
        workbook_ = existing(application_->AddWorkbook());
        sheet_ = existing(workbook_->AddWorksheet());
    }
    isNewFile = failed;
}

void clsExcel::TryOpenWorkbook(const std::wstring& fileName, bool& failed) {
    failed = false;
    try {
        workbook_ = existing(application_->OpenWorkbook(fileName));
    } catch (const RuntimeError&) {
        failed = true;
    }
}

void clsExcel::SaveWorkbook(const std::wstring& fileName, bool isNewFile) {
    try {
        if (isNewFile)
            sheet_->SaveAs(fileName);
        else
            workbook_->Save();
    } catch (const RuntimeError&) {
        // The application is closed all the same, or it would stay behind with the workbook.
    }
}

void clsExcel::CloseSpreadsheetApplication() {
    // A reference into the application would keep its process alive after it was told to quit.
    sheet_.reset();
    workbook_.reset();
    application_->CloseWorkbooks();
    application_->Quit();
    application_.reset();
}

void clsExcel::onlyATest() {}

// ------------------------------------------------------------------------- reading a list

void clsExcel::ReadListFromFile(const std::wstring& fileName, clsFloors& floors) {
    clsWait wait(services_.desktop);
    wait.StartWait();
    OpenWorkbookForReading(fileName);
    readRooms(floors);
    services_.table.UpdateTable(false);
    CloseSpreadsheetApplication();
}

void clsExcel::readRooms(clsFloors& floors) {
    const NumberLocale locale = UserLocale();
    for (int row = firstRoomRow;;) {
        const int rows = rowsPerBlock - (row - 1) % rowsPerBlock;
        const CellBlock block = sheet_->Values({row, 1, rows, columnCount});
        for (int i = 0; i < rows; ++i) {
            if (textOf(block.At(i, NameColumn), locale).empty())
                return;
            addRoom(block, i, locale, floors);
        }
        row += rows;
    }
}

void clsExcel::addRoom(const CellBlock& rows, int row, const NumberLocale& locale,
                       clsFloors& floors) {
    std::array<std::wstring, RoomColumnCount> texts;
    for (int column = 0; column < columnCount; ++column)
        texts[static_cast<std::size_t>(column)] = textOf(rows.At(row, column), locale);
    RoomTexts views;
    std::copy(texts.begin(), texts.end(), views.begin());
    clsRoom room;
    FromRow(views, numberOrZero(rows.At(row, AreaColumn), locale), locale, room);
    floors.AddRoom(room);
}

// ------------------------------------------------------------------------- writing a list

void clsExcel::WriteListToFile(const std::wstring& fileName, const clsFloors& floors) {
    clsWait wait(services_.desktop);
    wait.StartWait();
    const std::int32_t count = floors.GetCountOfRooms();
    if (count == 0)
        return;
    bool isNewFile = false;
    PrepareWorkbookForWriting(fileName, isNewFile);
    formatColumns(count);
    WriteHeaderRow();
    writeRooms(floors, count);
    SaveWorkbook(fileName, isNewFile);
    CloseSpreadsheetApplication();
}

void clsExcel::formatColumns(std::int32_t countOfRooms) {
    sheet_->NumberFormat({headerRow, 1, countOfRooms + 1, columnCount}, TextNumberFormat);
    sheet_->NumberFormat({firstRoomRow, sheetColumn(AreaColumn), countOfRooms, 1},
                         GeneralNumberFormat);
    sheet_->NumberFormat({firstRoomRow, sheetColumn(DxColumn), countOfRooms, 2},
                         GeneralNumberFormat);
}

void clsExcel::WriteHeaderRow() {
    CellBlock titles(1, columnCount);
    for (int column = 0; column < columnCount; ++column) {
        titles.At(0, column) =
            services_.texts.GetText(RoomColumnTitles[static_cast<std::size_t>(column)]);
    }
    sheet_->Values({headerRow, 1, 1, columnCount}, titles);
}

void clsExcel::writeRooms(const clsFloors& floors, std::int32_t countOfRooms) {
    struct LongText {
        int row;
        int column;
        std::wstring text;
    };
    const NumberLocale locale = UserLocale();
    clsRoom room;
    RoomRow row;
    for (std::int32_t first = 1; first <= countOfRooms; first += rowsPerBlock) {
        const int rows = std::min(rowsPerBlock, countOfRooms - first + 1);
        const int topRow = firstRoomRow + first - 1;
        CellBlock block(rows, columnCount);
        std::vector<LongText> longTexts;
        for (int i = 0; i < rows; ++i) {
            // Rooms of a list have an ID of 2 or more, so this tells whether one came back.
            room.ID(0);
            floors.GetRoomByIndex(first + i, room);
            if (room.ID() == 0)
                continue;
            ToRow(room, locale, row);
            for (int column = 0; column < columnCount; ++column) {
                const auto& value = row[static_cast<std::size_t>(column)];
                const auto* const text = std::get_if<std::wstring>(&value);
                if (text == nullptr)
                    block.At(i, column) = std::get<double>(value);
                else if (text->size() > longestTextInBlock)
                    longTexts.push_back({topRow + i, column + 1, *text});
                else
                    block.At(i, column) = *text;
            }
        }
        sheet_->Values({topRow, 1, rows, columnCount}, block);
        for (const LongText& longText : longTexts)
            sheet_->Value(longText.row, longText.column, longText.text);
    }
}

// ------------------------------------------------------------------------- points

void clsExcel::ReadPointsFromGeometryFile(const std::wstring& fileName, PointArray& points) {
    clsWait wait(services_.desktop);
    wait.StartWait();
    OpenWorkbookForReading(fileName);
    const NumberLocale locale = UserLocale();
    const std::wstring count = textOf(sheet_->Value(1, 1), locale);
    if (IsNumeric(count, locale))
        ReadPointsFromSheet(ToLong(count, locale), points);
    CloseSpreadsheetApplication();
}

void clsExcel::ReadPointsFromSheet(std::int32_t count, PointArray& points) {
    points.Dimension(count);
    const NumberLocale locale = UserLocale();
    // Point k (from 0) stands in row k + 2.
    for (std::int32_t index = 0; index < count;) {
        const int top = index + 2;
        const int rows = std::min(rowsPerBlock - (top - 1) % rowsPerBlock, count - index);
        const CellBlock block = sheet_->Values({top, 1, rows, 2});
        for (int i = 0; i < rows; ++i, ++index) {
            const std::wstring x = textOf(block.At(i, 0), locale);
            const std::wstring y = textOf(block.At(i, 1), locale);
            if (IsNumeric(x, locale) && IsNumeric(y, locale))
                points.Set(index, ToDouble(x, locale), ToDouble(y, locale));
            else
                points.Set(index, points.X(0), points.Y(0));
        }
    }
}

} // namespace kalvrooms
