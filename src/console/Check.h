#pragma once
// What would surprise somebody who opens a list in the program and writes it into a drawing.

#include <filesystem>

#include "console/RoomRows.h"
#include "console/Table.h"
#include "files/FileServices.h"
#include "model/NumberText.h"

namespace kalvrooms {

struct Finding {
    int line = 0; // of the list
    std::string room;
    std::string kind; // area, sides, storey, length, twice, pointFile, count, din277
    std::string text;
};

std::vector<Finding> CheckRows(const RoomRows& rows, const NumberLocale& locale,
                               const std::filesystem::path& listFolder, const FileServices& files,
                               const Speech& say);
Table FindingTable(const std::vector<Finding>& findings, const Speech& say);

} // namespace kalvrooms
