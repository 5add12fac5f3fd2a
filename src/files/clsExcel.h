#pragma once
// Room lists and point lists in the spreadsheet application's workbooks, by remote control of the
// application. One object serves one operation. Errors go to the caller and leave the application
// as it stands at that moment; only a completed operation closes it.

#include <cstdint>
#include <memory>
#include <string>

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
    // Errors: ObjectVariableNotSet without the application, the application's own.
    void ReadListFromFile(const std::wstring& fileName, clsFloors& floors);

    void onlyATest();

    // Writes the whole list, always in an application of its own. An empty list starts nothing. A
    // failed saving is not reported. Errors: CannotCreateObject without the application, the
    // application's own, those of a room's sides.
    void WriteListToFile(const std::wstring& fileName, const clsFloors& floors);

  private:
    void OpenWorkbookForReading(const std::wstring& fileName);
    void PrepareWorkbookForWriting(const std::wstring& fileName, bool& isNewFile);
    void TryOpenWorkbook(const std::wstring& fileName, bool& failed);
    void WriteHeaderRow();
    void SaveWorkbook(const std::wstring& fileName, bool isNewFile);
    void CloseSpreadsheetApplication();
    void ReadPointsFromSheet(std::int32_t count, PointArray& points);

    void readRooms(clsFloors& floors);
    void addRoom(const CellBlock& rows, int row, const NumberLocale& locale, clsFloors& floors);
    void formatColumns(std::int32_t countOfRooms);
    void writeRooms(const clsFloors& floors, std::int32_t countOfRooms);

    const FileServices services_;
    // Released from the bottom up: sheet, workbook, application.
    std::unique_ptr<SpreadsheetApplication> application_;
    std::unique_ptr<SpreadsheetWorkbook> workbook_;
    std::unique_ptr<Worksheet> sheet_;
};

} // namespace kalvrooms
