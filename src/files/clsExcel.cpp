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

// Where a number is wanted; a date is none, even where its text reads like one.
std::wstring numberTextOf(const CellValue& value, const NumberLocale& locale) {
    return std::holds_alternative<CellDate>(value) ? std::wstring() : textOf(value, locale);
}

double numberOrZero(const CellValue& value, const NumberLocale& locale) {
    if (const auto* number = std::get_if<double>(&value))
        return *number;
    return NumberOrZero(numberTextOf(value, locale), locale);
}

constexpr std::array numberColumns = {AreaColumn, DxColumn, DyColumn};

bool holdsNumbers(std::size_t column) {
    return std::find(numberColumns.begin(), numberColumns.end(), column) != numberColumns.end();
}

} // namespace

clsExcel::clsExcel(const FileServices& services) : services_(services) {}

clsExcel::~clsExcel() {
    giveSettingsBack();
}

// ------------------------------------------------------------------------- the application

void clsExcel::takeOverRunningApplication() {
    try {
        application_ = services_.spreadsheets.AttachRunning();
        if (application_) {
            alertsBefore_ = application_->DisplayAlerts();
            application_->DisplayAlerts(false);
        }
    } catch (const RuntimeError&) {
        // An instance that does not respond counts as absent.
        giveSettingsBack();
        application_.reset();
    }
}

void clsExcel::giveSettingsBack() noexcept {
    const auto alerts = std::exchange(alertsBefore_, std::nullopt);
    const auto security = std::exchange(securityBefore_, std::nullopt);
    const auto attempt = [](const auto& step) {
        try {
            step();
        } catch (const std::exception&) {
            // There is nobody left to tell: this follows another failure.
        }
    };
    if (application_ && alerts)
        attempt([&] { application_->DisplayAlerts(*alerts); });
    if (application_ && security)
        attempt([&] { application_->AutomationSecurity(*security); });
}

void clsExcel::switchMacrosOff() {
    try {
        // Only an instance that the user keeps needs its settings back.
        if (alertsBefore_)
            securityBefore_ = application_->AutomationSecurity();
        application_->AutomationSecurity(SpreadsheetApplication::MacrosOff);
    } catch (const RuntimeError& error) {
        // Old applications do not know it. One that was busy would run the macros a moment later.
        if (error.IsBusy())
            throw;
    }
}

void clsExcel::OpenWorkbookForReading(const std::wstring& fileName) {
    takeOverRunningApplication();
    if (!application_) {
        try {
            application_ = services_.spreadsheets.CreateInstance();
            // Nobody could answer the questions of an application without a window.
            if (application_)
                application_->DisplayAlerts(false);
        } catch (const RuntimeError& error) {
            if (error.IsBusy())
                throw;
            // Other failures surface when the workbook is opened below.
        }
    }
    if (!application_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    switchMacrosOff();
    workbook_ = existing(application_->OpenWorkbook(fileName));
    sheet_ = existing(workbook_->ActiveSheet());
}

void clsExcel::PrepareWorkbookForWriting(const std::wstring& fileName, bool& isNewFile) {
    try {
        application_ = services_.spreadsheets.CreateInstance();
    } catch (const RuntimeError& error) {
        // Too busy to answer is not missing: a text file must not replace the workbook then.
        if (error.IsBusy() || error.number() == RuntimeError::AutomationError)
            throw;
        application_.reset();
    }
    if (!application_)
        throw RuntimeError(RuntimeError::CannotCreateObject);
    application_->DisplayAlerts(false);
    switchMacrosOff();

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
    } catch (const RuntimeError& error) {
        // Too busy to answer is not "no such file": a new workbook would replace the one that is
        // there, with all that the user has in it.
        if (error.IsBusy())
            throw;
        failed = true;
    }
}

std::exception_ptr clsExcel::SaveWorkbook(const std::wstring& fileName, bool isNewFile) {
    try {
        if (isNewFile)
            sheet_->SaveAs(fileName);
        else
            workbook_->Save();
        return nullptr;
    } catch (const RuntimeError&) {
        // The application is closed all the same, or it would stay behind with the workbook.
        return std::current_exception();
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
    progress_.row = 0;
    progress_.whole = true;
    services_.table.UpdateTable(false);
    CloseSpreadsheetApplication();
}

void clsExcel::readRooms(clsFloors& floors) {
    const NumberLocale locale = UserLocale();
    progress_.row = firstRoomRow;
    for (;;) {
        const int row = progress_.row;
        const int rows = rowsPerBlock - (row - 1) % rowsPerBlock;
        const CellBlock block = sheet_->Values({row, 1, rows, columnCount});
        for (int i = 0; i < rows; ++i, ++progress_.row) {
            if (textOf(block.At(i, NameColumn), locale).empty())
                return;
            addRoom(block, i, locale, floors);
        }
    }
}

void clsExcel::addRoom(const CellBlock& rows, int row, const NumberLocale& locale,
                       clsFloors& floors) {
    std::array<std::wstring, RoomColumnCount> texts;
    for (std::size_t column = 0; column < RoomColumnCount; ++column) {
        const CellValue& value = rows.At(row, static_cast<int>(column));
        texts[column] = holdsNumbers(column) ? numberTextOf(value, locale) : textOf(value, locale);
    }
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
    progress_.whole = count == 0;
    if (progress_.whole)
        return;
    bool isNewFile = false;
    PrepareWorkbookForWriting(fileName, isNewFile);
    formatColumns(count, isNewFile);
    WriteHeaderRow();
    writeRooms(floors, count, isNewFile);
    const std::exception_ptr failure = SaveWorkbook(fileName, isNewFile);
    progress_.whole = !failure;
    CloseSpreadsheetApplication();
    if (failure)
        std::rethrow_exception(failure);
}

void clsExcel::formatColumns(std::int32_t countOfRooms, bool isNewFile) {
    if (!isNewFile) {
        // The user's number formats are left alone.
        sheet_->NumberFormat({headerRow, 1, 1, columnCount}, TextNumberFormat);
        for (int first = 0; first < columnCount; ++first) {
            int end = first;
            while (end < columnCount && !holdsNumbers(static_cast<std::size_t>(end)))
                ++end;
            if (end > first)
                sheet_->NumberFormat({firstRoomRow, first + 1, countOfRooms, end - first},
                                     TextNumberFormat);
            first = end;
        }
        return;
    }
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

void clsExcel::writeRooms(const clsFloors& floors, std::int32_t countOfRooms, bool isNewFile) {
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
            progress_.row = topRow + i;
            ToRow(room, locale, row);
            progress_.row = 0;
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
        if (!isNewFile)
            keepNumbersNumbers(topRow, block);
    }
}

// A cell that turned its number into a text, or into a date, gets the general format and its number
// once more.
void clsExcel::keepNumbersNumbers(int topRow, const CellBlock& block) {
    constexpr int first = AreaColumn;
    const CellBlock written =
        sheet_->Values({topRow, first + 1, block.Rows(), DyColumn - first + 1});
    for (const int column : numberColumns) {
        const auto wasTurned = [&](int row) {
            return row < block.Rows() && std::holds_alternative<double>(block.At(row, column)) &&
                   !std::holds_alternative<double>(written.At(row, column - first));
        };
        for (int row = 0; row < block.Rows(); ++row) {
            int rows = 0;
            while (wasTurned(row + rows))
                ++rows;
            if (rows == 0)
                continue;
            const CellRange turned = {topRow + row, column + 1, rows, 1};
            CellBlock numbers(rows, 1);
            for (int i = 0; i < rows; ++i)
                numbers.At(i, 0) = block.At(row + i, column);
            sheet_->NumberFormat(turned, GeneralNumberFormat);
            sheet_->Values(turned, numbers);
            row += rows;
        }
    }
}

// ------------------------------------------------------------------------- points

void clsExcel::ReadPointsFromGeometryFile(const std::wstring& fileName, PointArray& points) {
    clsWait wait(services_.desktop);
    wait.StartWait();
    OpenWorkbookForReading(fileName);
    const NumberLocale locale = UserLocale();
    const std::wstring count = numberTextOf(sheet_->Value(1, 1), locale);
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
            const std::wstring x = numberTextOf(block.At(i, 0), locale);
            const std::wstring y = numberTextOf(block.At(i, 1), locale);
            if (IsNumeric(x, locale) && IsNumeric(y, locale))
                points.Set(index, ToDouble(x, locale), ToDouble(y, locale));
            else
                points.Set(index, points.X(0), points.Y(0));
        }
    }
}

} // namespace kalvrooms
