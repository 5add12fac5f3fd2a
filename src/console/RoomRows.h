#pragma once
// The eleven columns of a room list as texts, letter by letter: as Quartino's text list, as CSV and
// as JSON. Nothing is computed here; numbers stay as they were written.

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "console/Speech.h"
#include "files/RoomRow.h"

namespace kalvrooms {

enum class ListForm { Text, Csv, Json };
enum class ListEncoding { Windows1252, Utf8 };

struct RoomRows {
    using Fields = std::array<std::string, RoomColumnCount>; // UTF-8
    struct Row {
        Fields fields;
        int line = 0; // of the file, from 1; the number of the room in JSON
    };
    Fields titles; // as the program writes them, blanks included
    std::vector<Row> rows;
};

// What is wrong with a file's contents, and in which line (0: none in particular).
struct ListError : std::runtime_error {
    ListError(int lineNumber, const std::string& what)
        : std::runtime_error(what), line(lineNumber) {}
    int line;
};

// The titles of the built-in texts.
const RoomRows::Fields& GermanTitles();
// Keys of the columns in JSON: name, function, area, storey, enclosure, occupancy, areaType,
// pointFile, dx, dy, roomId.
const RoomRows::Fields& ColumnKeys();

// What the bytes look like: JSON begins with a bracket, a text list has a TAB in its first line.
ListForm FormOf(std::string_view bytes);
// Error: ListError.
RoomRows ReadRows(std::string_view bytes, ListForm form, ListEncoding encoding, const Speech& say);
// Puts a blank for every TAB and line break; in which lines.
std::vector<int> PutInOneLine(RoomRows& rows);
// Puts a question mark for every character that the encoding of a text list lacks; in which lines.
std::vector<int> FitEncoding(RoomRows& rows, ListEncoding encoding);
// Error: ListError for a character that the encoding lacks, or a text that would break its line.
std::string WriteRows(const RoomRows& rows, ListForm form, ListEncoding encoding,
                      const Speech& say);

} // namespace kalvrooms
