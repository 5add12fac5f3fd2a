#include "console/ListRooms.h"

#include <array>
#include <functional>
#include <string_view>

#include "files/FilePath.h"
#include "model/RuntimeError.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

std::array<std::wstring, RoomColumnCount> wide(const RoomRows::Row& row) {
    std::array<std::wstring, RoomColumnCount> texts;
    for (std::size_t i = 0; i < texts.size(); ++i)
        texts[i] = Trim(FromUtf8(row.fields[i]));
    return texts;
}

// Error: ListError with the line, for an identifier that the program cannot read either.
clsRoom roomOf(const RoomRows::Row& row, const NumberLocale& locale) {
    const auto texts = wide(row);
    RoomTexts views;
    std::copy(texts.begin(), texts.end(), views.begin());
    clsRoom room;
    try {
        FromRow(views, NumberOrZero(texts[AreaColumn], locale), locale, room);
    } catch (const RuntimeError& error) {
        throw ListError(row.line, ToUtf8(error.description()));
    }
    return room;
}

// Of a geometry that yields none the program makes no side either.
double side(const std::function<double()>& ask) {
    try {
        return ask();
    } catch (const RuntimeError&) {
        return 0.0;
    }
}

ConsoleRoom consoleRoom(clsRoom room, const NumberLocale& locale) {
    ConsoleRoom result;
    result.name = ToUtf8(room.Name());
    result.function = ToUtf8(room.FunctionName());
    result.area = room.Geometry->Area();
    result.storey = ToUtf8(room.StoryCode());
    result.enclosure = ToUtf8(room.Enclosure());
    result.occupancy = ToUtf8(room.Occupancy());
    result.areaType = ToUtf8(room.AreaType());
    result.componentId = room.ComponentID();
    result.fileNumber = room.FileNumber();
    result.fileId = ToUtf8(room.FileID());
    result.areaFrom = "list";
    result.pointFile = ToUtf8(Trim(room.Geometry->FileName()));
    result.dx = side([&] { return room.Geometry->dx(locale); });
    result.dy = side([&] { return room.Geometry->dy(locale); });
    return result;
}

} // namespace

NumberLocale LocaleOf(const RoomRows& rows, const NumberLocale& user) {
    bool comma = false;
    bool point = false;
    for (const RoomRows::Row& row : rows.rows)
        for (const RoomColumn column : {AreaColumn, DxColumn, DyColumn}) {
            comma = comma || row.fields[column].find(',') != std::string::npos;
            point = point || row.fields[column].find('.') != std::string::npos;
        }
    if (comma == point)
        return user;
    return comma ? NumberLocale::German() : NumberLocale::Point();
}

ConsoleRooms RoomsOfList(const RoomRows& rows, const NumberLocale& locale) {
    ConsoleRooms rooms;
    rooms.isList = true;
    rooms.rooms.reserve(rows.rows.size());
    for (const RoomRows::Row& row : rows.rows)
        rooms.rooms.push_back(consoleRoom(roomOf(row, locale), locale));
    return rooms;
}

void FillFloors(clsFloors& floors, const RoomRows& rows, const NumberLocale& locale,
                const std::filesystem::path& listFolder) {
    for (const RoomRows::Row& row : rows.rows) {
        clsRoom room = roomOf(row, locale);
        if (room.Geometry->CalculationType() == CalculationByFile)
            room.Geometry->SetTypeAndValue(CalculationByFile,
                                           PointFileFor(room.Geometry->FileName(), listFolder));
        floors.AddRooms(room, 1);
    }
}

RoomRows RowsOf(const clsFloors& floors, const NumberLocale& locale) {
    RoomRows rows;
    rows.titles = GermanTitles();
    RoomRow values;
    clsRoom room;
    for (std::int32_t index = 1; index <= floors.GetCountOfRooms(); ++index) {
        floors.GetRoomByIndex(index, room);
        ToRow(room, locale, values);
        RoomRows::Row& row = rows.rows.emplace_back(RoomRows::Row{{}, index + 1});
        for (std::size_t i = 0; i < row.fields.size(); ++i) {
            const double* number = std::get_if<double>(&values[i]);
            row.fields[i] =
                ToUtf8(number ? FromDouble(*number, locale) : std::get<std::wstring>(values[i]));
        }
    }
    return rows;
}

std::wstring PointFileFor(const std::wstring& named, const std::filesystem::path& listFolder) {
    std::error_code ignored;
    if (std::filesystem::exists(FilePath(named), ignored))
        return named;
    const std::filesystem::path beside =
        listFolder / FilePath(named.substr(named.find_last_of(L"\\/") + 1));
    return std::filesystem::is_regular_file(beside, ignored) ? FileName(beside) : named;
}

} // namespace kalvrooms
