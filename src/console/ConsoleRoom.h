#pragma once
// A room as it is listed, summed up and compared, whether it comes from a list or from a drawing.
// Texts are UTF-8, lengths metres, areas square metres.

#include <cstdint>
#include <string>
#include <vector>

#include "host/HostApplication.h"

namespace kalvrooms {

struct ConsoleRoom {
    std::string name;
    std::string function;
    double area = 0.0;
    std::string storey;
    std::string enclosure;
    std::string occupancy;
    std::string areaType;
    std::int32_t componentId = -1;
    std::int32_t fileNumber = -1;
    std::string fileId;
    Outline outline; // without a repeated last point; empty where none is known
    // Where the area comes from: "list"; "attribute" or "outline" of a drawing; of a model "net" or
    // "gross" floor area, any other "area", "outline", or empty where there is none.
    std::string areaFrom;

    // Of a room of a list only.
    double dx = 0.0;
    double dy = 0.0;
    std::string pointFile;

    bool HasIdentity() const { return componentId >= 0 && !fileId.empty(); }
};

struct ConsoleRooms {
    std::string file; // as the user named it
    bool isList = false;
    std::vector<ConsoleRoom> rooms;
};

} // namespace kalvrooms
