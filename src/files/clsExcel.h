#pragma once
// Room lists and point lists in the spreadsheet application's workbooks, by remote control of the
// application. One object serves one operation. Errors go to the caller and leave the application
// as it stands at that moment; only a completed operation closes it. One that the user has open
// gets its own settings back when it is not closed.

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "files/FileOutcome.h"
#include "files/FileServices.h"
#include "files/PointArray.h"
#include "model/NumberText.h"
#include "model/clsFloors.h"

namespace kalvrooms {

class clsExcel {
  public:
    explicit clsExcel(const FileServices& services);
    ~clsExcel();
    clsExcel(const clsExcel&) = delete;
    clsExcel& operator=(const clsExcel&) = delete;

    // Points from cell A1 (their count) and columns A and B below. With an A1 that is no number
    // the points stay as they were. A row that is not numeric repeats the first point.
    // Errors: ObjectVariableNotSet without the application, SubscriptOutOfRange for a count
    // below 1, the application's own.
    void ReadPointsFromGeometryFile(const std::wstring& fileName, PointArray& points);

    // Appends the rooms of the active sheet, from row 2 to the first row with an empty first cell.
    // A running application is taken over, and closed in the end with all that is open in it.
    // Errors: ObjectVariableNotSet without the application, the application's own, also when it is
    // too busy to answer.
    void ReadListFromFile(const std::wstring& fileName, clsFloors& floors);

    void onlyATest();

    // Writes the whole list, always in an application of its own. An empty list starts nothing.
    // After a failed saving the application is closed all the same. Errors: CannotCreateObject
    // without the application, the application's own, those of a room's sides.
    void WriteListToFile(const std::wstring& fileName, const clsFloors& floors);

    const ListProgress& Progress() const { return progress_; }

  private:
    void takeOverRunningApplication();
    void switchMacrosOff();
    void giveSettingsBack() noexcept;
    void OpenWorkbookForReading(const std::wstring& fileName);
    void PrepareWorkbookForWriting(const std::wstring& fileName, bool& isNewFile);
    void TryOpenWorkbook(const std::wstring& fileName, bool& failed);
    void WriteHeaderRow();
    // Gives the error, if there was one.
    std::exception_ptr SaveWorkbook(const std::wstring& fileName, bool isNewFile);
    void CloseSpreadsheetApplication();
    void ReadPointsFromSheet(std::int32_t count, PointArray& points);

    void readRooms(clsFloors& floors);
    void addRoom(const CellBlock& rows, int row, const NumberLocale& locale, clsFloors& floors);
    void formatColumns(std::int32_t countOfRooms, bool isNewFile);
    void writeRooms(const clsFloors& floors, std::int32_t countOfRooms, bool isNewFile);
    void keepNumbersNumbers(int topRow, const CellBlock& block);

    const FileServices services_;
    ListProgress progress_;
    // What the user's own application was set to.
    std::optional<bool> alertsBefore_;
    std::optional<std::int32_t> securityBefore_;
    // Released from the bottom up: sheet, workbook, application.
    std::unique_ptr<SpreadsheetApplication> application_;
    std::unique_ptr<SpreadsheetWorkbook> workbook_;
    std::unique_ptr<Worksheet> sheet_;
};

} // namespace kalvrooms
