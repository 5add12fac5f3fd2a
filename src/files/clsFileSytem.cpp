#include "files/clsFileSytem.h"

#include <array>
#include <cmath>
#include <exception>
#include <string_view>

#include "files/RoomColumns.h"
#include "files/clsExcel.h"
#include "model/RuntimeError.h"
#include "model/basValidation.h"
#include "platform/Gui.h"

namespace kalvrooms {

namespace {

constexpr std::wstring_view workbookEnding = L"xls";
constexpr std::wstring_view separator = L" \t ";
constexpr std::int32_t textWorkbookNeedsApplication = 73;
constexpr const wchar_t* applicationTitle = L"Quartino";

using Fields = std::array<std::wstring, RoomColumnCount>;

// Blanks at both ends only; a tab has split the line before.
std::wstring trimmed(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L' ');
    if (first == std::wstring_view::npos) {
        return {};
    }
    return std::wstring(text.substr(first, text.find_last_not_of(L' ') - first + 1));
}

// Fields that the line does not reach stay empty; what stands behind the last one is dropped.
Fields split(const std::wstring& line) {
    Fields fields;
    std::wstring_view rest = line;
    for (std::wstring& field : fields) {
        const std::size_t tab = rest.find(L'\t');
        field = trimmed(rest.substr(0, tab));
        if (tab == std::wstring_view::npos) {
            break;
        }
        rest.remove_prefix(tab + 1);
    }
    return fields;
}

std::wstring join(const Fields& fields) {
    std::size_t length = 0;
    for (const std::wstring& field : fields) {
        length += field.size() + separator.size();
    }
    std::wstring line;
    line.reserve(length);
    for (const std::wstring& field : fields) {
        if (&field != &fields.front()) {
            line += separator;
        }
        line += field;
    }
    return line;
}

// "2.5" would convert as well, by rounding; as a count of lines it says that this is another file.
std::int32_t wholeNumber(const std::wstring& text) {
    const NumberLocale locale = UserLocale();
    const double number = ToDouble(text, locale);
    if (number != std::floor(number)) {
        throw RuntimeError(RuntimeError::TypeMismatch);
    }
    return RoundToLong(number);
}

} // namespace

bool clsFileSytem::IsExcelFile(const std::wstring& fileName) {
    return Trim(fileName).ends_with(workbookEnding);
}

// ------------------------------------------------------------------------- writing a list

void clsFileSytem::WriteListToFile(const std::wstring& fileName, const clsFloors& floors) {
    const bool isWorkbook = IsExcelFile(fileName);
    bool withoutApplication = false;
    try {
        if (isWorkbook) {
            WriteListToExcel(fileName, floors);
        } else {
            WriteListToTextFile(fileName, floors);
        }
    } catch (const RuntimeError& error) {
        withoutApplication = isWorkbook && error.number() == RuntimeError::CannotCreateObject;
    } catch (const std::exception&) {
        // Ends like every other failure: what was written stays.
    }
    if (withoutApplication) {
        WriteListAsTextIgnoringErrors(fileName, floors);
    }
}

void clsFileSytem::WriteListToTextFile(const std::wstring& fileName, const clsFloors& floors) {
    const std::int32_t count = floors.GetCountOfRooms();
    if (count == 0) {
        return;
    }
    TextWriter file(fileName, services_.ansi);
    file.WriteLine(BuildHeaderLine());
    const NumberLocale locale = UserLocale();
    clsRoom room;
    for (std::int32_t index = 1; index <= count; ++index) {
        // Rooms of a list have an ID of 2 or more, so this tells whether one came back.
        room.ID(0);
        floors.GetRoomByIndex(index, room);
        if (room.ID() != 0) {
            file.WriteLine(BuildRoomLine(room, locale));
        }
    }
    file.Close();
}

std::wstring clsFileSytem::BuildHeaderLine() const {
    Fields titles;
    for (std::size_t column = 0; column < titles.size(); ++column) {
        titles[column] = services_.texts.GetText(RoomColumnTitles[column]);
    }
    return join(titles);
}

std::wstring clsFileSytem::BuildRoomLine(const clsRoom& room, const NumberLocale& locale) {
    clsGeometry& geometry = *room.Geometry;
    // In this order: asking for a side may change the type, the path comes before that.
    Fields fields;
    fields[0] = room.Name();
    fields[1] = room.FunctionName();
    fields[2] = FromDouble(geometry.Area(), locale);
    fields[3] = room.StoryCode();
    fields[4] = room.Enclosure();
    fields[5] = room.Occupancy();
    fields[6] = room.AreaType();
    fields[7] = geometry.FileName();
    fields[8] = FromDouble(geometry.dx(), locale);
    fields[9] = FromDouble(geometry.dy(), locale);
    fields[10] = room.GetRoomID();
    return join(fields);
}

void clsFileSytem::WriteListAsTextIgnoringErrors(const std::wstring& fileName,
                                                 const clsFloors& floors) {
    try {
        WriteListToTextFile(fileName, floors);
    } catch (const std::exception&) {
        // Already the way out of another failure: nobody is left to be told.
    }
}

void clsFileSytem::WriteListToExcel(const std::wstring& fileName, const clsFloors& floors) {
    clsExcel(services_).WriteListToFile(fileName, floors);
}

// ------------------------------------------------------------------------- reading a list

void clsFileSytem::ReadListFromFile(const std::wstring& fileName, clsFloors& floors) {
    const bool isWorkbook = IsExcelFile(fileName);
    bool withoutApplication = false;
    try {
        if (isWorkbook) {
            ReadListFromExcel(fileName, floors);
        } else {
            ReadListFromTextFile(fileName, floors);
        }
    } catch (const RuntimeError& error) {
        withoutApplication = isWorkbook && error.number() == RuntimeError::ObjectVariableNotSet;
    } catch (const std::exception&) {
        // Ends like every other failure: the rooms that came in stay.
    }
    if (withoutApplication) {
        ReadListAsTextIgnoringErrors(fileName, floors);
    }
}

void clsFileSytem::ReadListFromTextFile(const std::wstring& fileName, clsFloors& floors) {
    TextReader file(fileName, services_.ansi);
    const std::wstring header = file.ReadLine();
    // The first bytes of a real workbook may hold a TAB by chance, but never without NULs; a header
    // line has none.
    const bool isBinary = header.find(L'\0') != std::wstring::npos;
    if ((header.find(L'\t') == std::wstring::npos || isBinary) && IsExcelFile(fileName)) {
        services_.desktop.ShowMessage(
            {services_.texts.GetText(textWorkbookNeedsApplication), applicationTitle});
        return;
    }
    const NumberLocale locale = UserLocale();
    while (!file.AtEnd()) {
        ParseRoomLine(file.ReadLine(), locale, floors);
    }
}

void clsFileSytem::ParseRoomLine(const std::wstring& line, const NumberLocale& locale,
                                 clsFloors& floors) {
    const Fields fields = split(line);
    clsRoom room;
    room.Name(fields[0]);
    room.FunctionName(fields[1]);
    room.Geometry->Area(IsNumeric(fields[2], locale) ? ToDouble(fields[2], locale) : 0.0);
    room.StoryCode(fields[3]);
    room.Enclosure(fields[4]);
    room.Occupancy(fields[5]);
    room.AreaType(fields[6]);
    room.SetRoomID(fields[10]);
    if (fields[7].empty()) {
        room.Geometry->SetAspectRatio(fields[8], fields[9]);
    } else {
        room.Geometry->SetTypeAndValue(CalculationByFile, fields[7]);
    }
    floors.AddRooms(room, 1);
}

void clsFileSytem::ReadListAsTextIgnoringErrors(const std::wstring& fileName, clsFloors& floors) {
    try {
        ReadListFromTextFile(fileName, floors);
    } catch (const std::exception&) {
        // Already the way out of another failure: nobody is left to be told.
    }
}

void clsFileSytem::ReadListFromExcel(const std::wstring& fileName, clsFloors& floors) {
    clsExcel(services_).ReadListFromFile(fileName, floors);
}

// ------------------------------------------------------------------------- points

bool clsFileSytem::ReadPointsFromGeometryFile(const std::wstring& fileName, PointArray& points) {
    try {
        if (IsExcelFile(fileName)) {
            clsExcel(services_).ReadPointsFromGeometryFile(fileName, points);
            return true;
        }
        TextReader file(fileName, services_.ansi);
        const std::int32_t count = wholeNumber(file.ReadLine());
        ReadPointsFromTextFile(file, count, points);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void clsFileSytem::ReadPointsFromTextFile(TextReader& file, std::int32_t count,
                                          PointArray& points) {
    points.Dimension(count);
    for (std::int32_t index = 0; index < count; ++index) {
        const std::wstring line = file.ReadLine();
        const std::size_t tab = line.find(L'\t');
        if (tab == std::wstring::npos) {
            continue;
        }
        const double x = TextToNumber(line.substr(0, tab));
        // An error in Y leaves the point with the X that it has.
        points.Set(index, x, 0.0);
        points.Set(index, x, TextToNumber(line.substr(tab + 1)));
    }
}

void clsFileSytem::WritePointsToGeometryFile(const std::wstring& fileName,
                                             const PointArray& points) {
    if (!points.IsSet()) {
        throw RuntimeError(RuntimeError::TypeMismatch);
    }
    // The last point closes the outline: its index is the number of points to write.
    const std::int16_t last = RoundToInteger(points.Count() - 1);
    TextWriter file(fileName, services_.ansi);
    file.WriteLine(FromLong(last));
    for (std::int32_t index = 0; index < last; ++index) {
        file.WriteLine(FromDoubleInvariant(points.X(index)) + L'\t' +
                       FromDoubleInvariant(points.Y(index)));
    }
    file.WriteLine(L"end");
    file.Close();
}

} // namespace kalvrooms
