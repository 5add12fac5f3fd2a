#pragma once
// What the journeys have in common: the titles and menus of the program, lists on disk, drawings of
// the practice host, and the steps that most journeys take.

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "journeys/QuartinoProcess.h"
#include "support/Drawings.h"
#include "win32/ControlIds.h"

namespace kalvrooms::testing {

namespace ui = kalvrooms::driver;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

inline constexpr const wchar_t* keyPath = L"Software\\QuartinoJourneys";

// Titles as they are shown.
inline constexpr const wchar_t* addTitle = L" Raum hinzufügen ";
inline constexpr const wchar_t* modifyTitle = L" Raum modifizieren ";
inline constexpr const wchar_t* geometryTitle = L" Geometrie";
inline constexpr const wchar_t* optionsTitle = L" Optionen ";
inline constexpr const wchar_t* reportTitle = L" Quartino";
inline constexpr const wchar_t* savePrompt = L" Sollen Ihre Änderungen gespeichert werden?";

// "12.5" as the user writes it.
inline std::wstring number(std::wstring text) {
    if (const auto at = text.find(L'.'); at != std::wstring::npos)
        text.replace(at, 1, decimalMark());
    return text;
}

inline std::vector<std::wstring> fieldsOf(const std::wstring& line) {
    std::vector<std::wstring> fields;
    std::wistringstream rest(line);
    for (std::wstring field; std::getline(rest, field, L'\t');) {
        const auto first = field.find_first_not_of(L' ');
        const auto last = field.find_last_not_of(L' ');
        fields.push_back(first == std::wstring::npos ? L"" : field.substr(first, last - first + 1));
    }
    return fields;
}

// The rooms of a list on disk, field by field.
inline std::vector<std::vector<std::wstring>> roomsIn(const std::filesystem::path& file) {
    std::vector<std::vector<std::wstring>> rooms;
    std::istringstream lines(readBytes(file));
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        EXPECT_EQ(line.back(), '\r');
        line.pop_back();
        rooms.push_back(fieldsOf(fromAnsi(line)));
    }
    return rooms;
}

struct ListedRoom {
    std::wstring name;
    std::wstring area;
    std::wstring points = L" ";
    std::wstring dx = L"4";
    std::wstring dy = L"4";
    std::wstring id{};
};

inline void writeList(const std::filesystem::path& file, const std::vector<ListedRoom>& rooms) {
    std::wstring text = L"header\r\n";
    for (const ListedRoom& room : rooms) {
        text += room.name;
        for (const std::wstring& field :
             {std::wstring(L"Büro"), room.area, std::wstring(L"EG"), std::wstring(L"a"),
              std::wstring(L"HNF 2"), std::wstring(L"N"), room.points, room.dx, room.dy, room.id})
            text += L" \t " + field;
        text += L"\r\n";
    }
    writeBytes(file, toAnsi(text));
}

class JourneyTest : public ::testing::Test {
  protected:
    JourneyTest() {
        folder.writeHandOver(keyPath);
        practiceHost().clearFaults();
        practiceHost().state(L"");
        loadDrawing({});
    }

    void loadDrawing(std::vector<Element> elements) const {
        practiceHost().load(drawingOf(std::move(elements), folder.path().wstring()));
    }
    void loadTwoRooms() const {
        loadDrawing({roomElement(17, 3, L"Flur 17"), roomElement(18, 3, L"Flur 18", L"EG", 10)});
    }

    std::filesystem::path file(const wchar_t* name) const { return folder.path() / name; }

    static void open(QuartinoProcess& quartino, const std::filesystem::path& list) {
        quartino.open(list);
    }
    static void saveAs(QuartinoProcess& quartino, const std::filesystem::path& list) {
        quartino.saveAs(list);
    }
    // Adds rooms by the keyboard.
    void add(QuartinoProcess& quartino, const std::wstring& name, const std::wstring& area,
             const std::wstring& quantity) const {
        quartino.command([&] {
            quartino.chooseByKeys(editMenu, addLine);
            const HWND dialog = quartino.dialog(addTitle);
            quartino.type(dialog, ID_ROOM_TXTSTORYCODE, L"EG");
            quartino.tabTo(dialog, ID_ROOM_TXTNAME);
            quartino.type(dialog, ID_ROOM_TXTNAME, name);
            quartino.tabTo(dialog, {ID_ROOM_TXTFUNCTION, ID_ROOM_TXTAREA});
            quartino.type(dialog, ID_ROOM_TXTAREA, area);
            quartino.tabTo(dialog,
                           {ID_ROOM_CMDGEOMETRY, ID_ROOM_CBOENCLOSURETYPE, ID_ROOM_CBOOCCUPANCY,
                            ID_ROOM_CBOAREATYPE, ID_ROOM_TXTQUANTITY});
            quartino.type(dialog, ID_ROOM_TXTQUANTITY, quantity);
            ui::typeKey(VK_RETURN);
        });
    }

    ProgramFolder folder;
    SettingsKey whole{keyPath};
    SettingsKey key{std::wstring(keyPath) + L"\\QTO"};
};

} // namespace kalvrooms::testing
