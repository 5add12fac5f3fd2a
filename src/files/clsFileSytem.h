#pragma once
// The file gateway: room lists and outlines of rooms, as text or as workbook. A name that ends in
// "xls" is a workbook's, every other one a text file's. Nothing is kept between the calls.

#include <cstdint>
#include <string>

#include "files/FileOutcome.h"
#include "files/FileServices.h"
#include "files/PointArray.h"
#include "files/RoomRow.h"
#include "files/TextStream.h"
#include "model/NumberText.h"
#include "model/clsFloors.h"

namespace kalvrooms {

class clsFileSytem {
  public:
    explicit clsFileSytem(const FileServices& services) : services_(services) {}

    // Writes the whole list; an empty one leaves the disk alone. Without the spreadsheet
    // application a workbook's name gets a text file. No errors: what was written before one stays
    // on disk, beside the file that was there before.
    FileOutcome WriteListToFile(const std::wstring& fileName, const clsFloors& floors);

    // Adds the file's rooms to the list. Without the spreadsheet application a text file under a
    // workbook's name is read; a real workbook gets text 73 in a message box. No errors: rooms
    // that came in before one stay in the list.
    FileOutcome ReadListFromFile(const std::wstring& fileName, clsFloors& floors);

    // False when the file could not be read to its end; the points are then as far as they were
    // filled. True with unset points for a workbook without a count.
    bool ReadPointsFromGeometryFile(const std::wstring& fileName, PointArray& points);

    // Always as text, whatever the name; the last point, which repeats the first, is left out.
    // Errors: TypeMismatch for unset points, Overflow for more than 32,768, those of the file.
    void WritePointsToGeometryFile(const std::wstring& fileName, const PointArray& points);

    // Whether a point file of the outline would be read as the points.
    static bool WouldBeReadAs(const PointArray& outline, const PointArray& points);

  private:
    static bool IsExcelFile(const std::wstring& fileName);

    void WriteListToTextFile(const std::wstring& fileName, const clsFloors& floors,
                             ListProgress& progress);
    void ReadListFromTextFile(const std::wstring& fileName, clsFloors& floors,
                              ListProgress& progress);
    std::wstring BuildHeaderLine() const;
    static void BuildRoomLine(const RoomRow& row, const NumberLocale& locale, std::wstring& line);
    FileOutcome WriteListAsTextIgnoringErrors(const std::wstring& fileName,
                                              const clsFloors& floors);
    FileOutcome ReadListAsTextIgnoringErrors(const std::wstring& fileName, clsFloors& floors);
    FileOutcome ReadListFromExcel(const std::wstring& fileName, clsFloors& floors);
    FileOutcome WriteListToExcel(const std::wstring& fileName, const clsFloors& floors);
    static void ReadPointsFromTextFile(TextReader& file, std::int32_t count, PointArray& points);

    const FileServices services_;
};

} // namespace kalvrooms
