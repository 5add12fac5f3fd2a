#include "files/clsFileSytem.h"

#include <cmath>
#include <exception>
#include <new>
#include <string_view>

#include "files/RoomRow.h"
#include "files/clsExcel.h"
#include "model/RuntimeError.h"
#include "model/basValidation.h"
#include "platform/Gui.h"

namespace kalvrooms {

namespace {

constexpr std::wstring_view workbookEnding = L"xls";
constexpr std::wstring_view separator = L" \t ";
constexpr const wchar_t* applicationTitle = L"Quartino";

// Fields that the line does not reach stay empty; what stands behind the last one is dropped.
RoomTexts split(std::wstring_view line) {
    RoomTexts fields;
    for (std::wstring_view& field : fields) {
        const std::size_t tab = line.find(L'\t');
        // Blanks at both ends only: a tab has split the line before.
        field = TrimmedView(line.substr(0, tab));
        if (tab == std::wstring_view::npos)
            break;
        line.remove_prefix(tab + 1);
    }
    return fields;
}

// "2.5" would convert as well, by rounding; as a count of lines it says that this is another file.
std::int32_t wholeNumber(std::wstring_view text) {
    const NumberLocale locale = UserLocale();
    const double number = ToDouble(text, locale);
    if (number != std::floor(number))
        throw RuntimeError(RuntimeError::TypeMismatch);
    return RoundToLong(number);
}

// Lets the step run to its end or to its first error. What happens once the list is whole is no
// failure of the list.
template <class Step>
FileOutcome outcomeOf(const ListProgress& progress, Step step) {
    FileOutcome outcome;
    try {
        step();
    } catch (const RuntimeError& error) {
        outcome.failure = error;
        outcome.busy = error.IsBusy();
    } catch (const std::bad_alloc&) {
        outcome.failure = RuntimeError(RuntimeError::OutOfMemory);
    } catch (const std::exception&) {
        outcome.failure = RuntimeError(RuntimeError::DeviceError);
    }
    outcome.complete = progress.whole;
    outcome.row = progress.row;
    if (outcome.complete)
        outcome.failure.reset();
    return outcome;
}

template <class Step>
FileOutcome outcomeOfWriting(const clsFloors& floors, const ListProgress& progress, Step step) {
    FileOutcome outcome = outcomeOf(progress, step);
    if (outcome.row > 1) {
        const auto room = std::make_shared<clsRoom>();
        floors.GetRoomByIndex(outcome.row - 1, *room);
        outcome.room = room;
    }
    return outcome;
}

// A line is a room, whatever a text that came from a workbook holds.
void appendInOneLine(std::wstring& line, std::wstring_view text) {
    for (;;) {
        const std::size_t end = text.find_first_of(L"\r\n");
        line += text.substr(0, end);
        if (end == std::wstring_view::npos)
            return;
        line += L' ';
        text.remove_prefix(end + (text.substr(end).starts_with(L"\r\n") ? 2 : 1));
    }
}

} // namespace

bool clsFileSytem::IsExcelFile(const std::wstring& fileName) {
    return TrimmedView(fileName).ends_with(workbookEnding);
}

// ------------------------------------------------------------------------- writing a list

FileOutcome clsFileSytem::WriteListToFile(const std::wstring& fileName, const clsFloors& floors) {
    if (!IsExcelFile(fileName))
        return WriteListAsTextIgnoringErrors(fileName, floors);
    const FileOutcome outcome = WriteListToExcel(fileName, floors);
    const bool withoutApplication =
        outcome.failure && outcome.failure->number() == RuntimeError::CannotCreateObject;
    return withoutApplication ? WriteListAsTextIgnoringErrors(fileName, floors) : outcome;
}

void clsFileSytem::WriteListToTextFile(const std::wstring& fileName, const clsFloors& floors,
                                       ListProgress& progress) {
    const std::int32_t count = floors.GetCountOfRooms();
    if (count > 0) {
        progress.keepsOldFile = TextWriter::IsOldFile(fileName);
        TextWriter file(fileName, services_.ansi, OldFile::KeptUntilClosed);
        file.WriteLine(BuildHeaderLine());
        const NumberLocale locale = UserLocale();
        clsRoom room;
        RoomRow row;
        std::wstring line;
        for (std::int32_t index = 1; index <= count; ++index) {
            // Rooms of a list have an ID of 2 or more, so this tells whether one came back.
            room.ID(0);
            floors.GetRoomByIndex(index, room);
            if (room.ID() != 0) {
                progress.row = index + 1;
                ToRow(room, locale, row);
                progress.row = 0;
                BuildRoomLine(row, locale, line);
                file.WriteLine(line);
            }
        }
        file.Close();
    }
    progress.whole = true;
}

std::wstring clsFileSytem::BuildHeaderLine() const {
    std::wstring line;
    for (const std::int32_t title : RoomColumnTitles) {
        if (title != RoomColumnTitles.front())
            line += separator;
        line += services_.texts.GetText(title);
    }
    return line;
}

void clsFileSytem::BuildRoomLine(const RoomRow& row, const NumberLocale& locale,
                                 std::wstring& line) {
    line.clear();
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (column > 0)
            line += separator;
        if (const auto* text = std::get_if<std::wstring>(&row[column]))
            appendInOneLine(line, *text);
        else
            AppendDouble(line, std::get<double>(row[column]), locale);
    }
}

FileOutcome clsFileSytem::WriteListAsTextIgnoringErrors(const std::wstring& fileName,
                                                        const clsFloors& floors) {
    ListProgress progress;
    FileOutcome outcome = outcomeOfWriting(
        floors, progress, [&] { WriteListToTextFile(fileName, floors, progress); });
    if (!outcome.complete && progress.keepsOldFile)
        outcome.oldFile = fileName;
    return outcome;
}

FileOutcome clsFileSytem::WriteListToExcel(const std::wstring& fileName, const clsFloors& floors) {
    clsExcel excel(services_);
    return outcomeOfWriting(floors, excel.Progress(),
                            [&] { excel.WriteListToFile(fileName, floors); });
}

// ------------------------------------------------------------------------- reading a list

FileOutcome clsFileSytem::ReadListFromFile(const std::wstring& fileName, clsFloors& floors) {
    if (!IsExcelFile(fileName))
        return ReadListAsTextIgnoringErrors(fileName, floors);
    const FileOutcome outcome = ReadListFromExcel(fileName, floors);
    const bool withoutApplication =
        outcome.failure && outcome.failure->number() == RuntimeError::ObjectVariableNotSet;
    return withoutApplication ? ReadListAsTextIgnoringErrors(fileName, floors) : outcome;
}

void clsFileSytem::ReadListFromTextFile(const std::wstring& fileName, clsFloors& floors,
                                        ListProgress& progress) {
    TextReader file(fileName, services_.ansi);
    const std::wstring_view header = file.ReadLine();
    // The first bytes of a real workbook may hold a TAB by chance, but never without NULs; a header
    // line has none.
    const bool isBinary = header.find(L'\0') != std::wstring_view::npos;
    if ((header.find(L'\t') == std::wstring_view::npos || isBinary) && IsExcelFile(fileName)) {
        services_.desktop.ShowMessage(
            {services_.texts.GetText(TextNumber::WorkbookNeedsApplication), applicationTitle});
        return;
    }
    const NumberLocale locale = UserLocale();
    clsRoom room;
    for (progress.row = 2; !file.AtEnd(); ++progress.row) {
        const RoomTexts fields = split(file.ReadLine());
        FromRow(fields, NumberOrZero(fields[AreaColumn], locale), locale, room);
        floors.AddRoom(room);
    }
    progress.row = 0;
    progress.whole = true;
}

FileOutcome clsFileSytem::ReadListAsTextIgnoringErrors(const std::wstring& fileName,
                                                       clsFloors& floors) {
    ListProgress progress;
    return outcomeOf(progress, [&] { ReadListFromTextFile(fileName, floors, progress); });
}

FileOutcome clsFileSytem::ReadListFromExcel(const std::wstring& fileName, clsFloors& floors) {
    clsExcel excel(services_);
    return outcomeOf(excel.Progress(), [&] { excel.ReadListFromFile(fileName, floors); });
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
        const std::wstring_view line = file.ReadLine();
        const std::size_t tab = line.find(L'\t');
        if (tab == std::wstring_view::npos)
            continue;
        const double x = TextToNumber(line.substr(0, tab));
        // An error in Y leaves the point with the X that it has.
        points.Set(index, x, 0.0);
        points.Set(index, x, TextToNumber(line.substr(tab + 1)));
    }
}

void clsFileSytem::WritePointsToGeometryFile(const std::wstring& fileName,
                                             const PointArray& points) {
    if (!points.IsSet())
        throw RuntimeError(RuntimeError::TypeMismatch);
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

bool clsFileSytem::WouldBeReadAs(const PointArray& outline, const PointArray& points) {
    const auto reads = [](double written, double read) {
        return TextToNumber(FromDoubleInvariant(written)) == read;
    };
    try {
        const std::int16_t last = RoundToInteger(outline.Count() - 1);
        bool same = points.Count() == last;
        for (std::int32_t index = 0; same && index < last; ++index)
            same = reads(outline.X(index), points.X(index)) &&
                   reads(outline.Y(index), points.Y(index));
        return same;
    } catch (const RuntimeError&) {
        // Nothing that could be written, or read.
        return false;
    }
}

} // namespace kalvrooms
