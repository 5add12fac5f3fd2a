// ifc_rooms MODEL...           what our reader says about the rooms of models, a line each
// ifc_rooms --samples FOLDER   writes the models of the tests
// ifc_rooms --change MODEL OUT renames a room, gives one another outline, moves one to another
//                              storey, and adds two rooms, one of them in a new storey

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <string>
#include <vector>

#include "drawing/DrawingFile.h"
#include "ifc/Building.h"
#include "ifc/JoinOutlines.h"
#include "ifc/RoomWriter.h"
#include "ifc/Samples.h"
#include "model/Utf8.h"
#include "model/WholeFile.h"

namespace {

using namespace kalvrooms;
using namespace kalvrooms::ifc;

void list(const std::filesystem::path& path) {
    const auto file = StepFile::Load(path);
    const Building building(*file);
    constexpr double far = std::numeric_limits<double>::infinity();
    for (const Room& room : building.Rooms()) {
        Point low{far, far};
        Point high{-far, -far};
        for (const Point& point : room.outline) {
            low = {std::min(low.x, point.x), std::min(low.y, point.y)};
            high = {std::max(high.x, point.x), std::max(high.y, point.y)};
        }
        std::cout << path.stem().string() << '\t' << ToUtf8(room.globalId) << '\t'
                  << ToUtf8(room.name) << '\t' << ToUtf8(room.function) << '\t'
                  << ToUtf8(room.storeyName) << '\t';
        std::printf("%.4f\t%.4f %.4f %.4f %.4f\t%.4f\n", room.squareMetres, low.x, low.y, high.x,
                    high.y, SignedArea(room.outline));
        std::fflush(stdout);
    }
    for (const std::string& trouble : building.Troubles())
        std::cerr << path.string() << ": " << trouble << '\n';
}

void writeSamples(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    for (const Sample& sample : Samples())
        std::ofstream(folder / (sample.name + ".ifc"), std::ios::binary) << sample.model.Text();
}

RoomChange newRoom(const wchar_t* name, const std::wstring& storey, double x) {
    RoomChange room;
    room.name = name;
    room.function = L"Büro";
    room.storey = storey;
    room.occupancy = L"NUF 2";
    room.outline = Outline{{x, 50}, {x + 5, 50}, {x + 5, 53}, {x + 2, 53}, {x + 2, 54}, {x, 54}};
    return room;
}

void change(const std::filesystem::path& model, const std::filesystem::path& out) {
    const auto file = StepFile::Load(model);
    const Building building(*file);
    RoomWriter writer(building);
    const std::vector<Room>& rooms = building.Rooms();
    RoomChange renamed;
    renamed.name = L"Umbenannt – ½";
    renamed.enclosure = L"a";
    writer.Change(rooms.front(), renamed);
    if (rooms.size() > 2) {
        RoomChange outlined;
        outlined.outline = newRoom(L"", L"", 20).outline;
        writer.Change(rooms[1], outlined);
        RoomChange moved;
        moved.storey = building.Storeys().back().name;
        writer.Change(rooms[2], moved);
    }
    writer.Add("0NewRoom00000000000001", newRoom(L"N1", building.Storeys().front().name, 30));
    writer.Add("0NewRoom00000000000002", newRoom(L"N2", L"Neues Geschoss", 40));
    WriteWhole(out, writer.Text());
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    try {
        if (words.size() == 2 && words[0] == "--samples")
            writeSamples(words[1]);
        else if (words.size() == 3 && words[0] == "--change")
            change(words[1], words[2]);
        else
            for (const std::string& word : words)
                list(word);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
    return 0;
}
