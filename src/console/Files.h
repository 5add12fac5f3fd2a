#pragma once
// What stands behind a file name of the command line: "-" is standard input or output, the kind is
// told by --format, else by the name's ending, else by the contents.

#include <memory>
#include <stdexcept>
#include <string>

#include "console/Qto.h"
#include "console/RoomRows.h"
#include "console/Speech.h"
#include "drawing/Drawing.h"
#include "ifc/IfcDrawing.h"

namespace kalvrooms {

enum class FileKind { TextList, CsvList, JsonList, PracticeDrawing, Model };

// A model goes back into its own file, so that it is kept beside the drawing that was made of it.
struct OpenDrawing {
    Drawing drawing;
    std::shared_ptr<const ifc::IfcDrawing> model; // null for a practice drawing
};

// A file that cannot be used; the message begins with its name.
struct FileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Files {
  public:
    Files(const Console& console, const Speech& say) : console_(console), say_(say) {}

    ListEncoding encoding = ListEncoding::Windows1252;
    std::string format; // empty, "text", "csv", "json", "drawing" or "ifc"

    struct Input {
        std::string name;
        std::string bytes;
        FileKind kind = FileKind::TextList;

        bool IsList() const { return kind < FileKind::PracticeDrawing; }
    };
    // Error: FileError.
    Input Open(const std::string& name) const;
    // Errors: FileError, also for a drawing in a list's place and the other way round.
    RoomRows Rows(const Input& input) const;
    OpenDrawing DrawingOf(const Input& input) const;

    void SaveRows(const std::string& name, const RoomRows& rows) const;
    // As the model that it came from, or as a practice drawing where the name says so.
    void SaveDrawing(const std::string& name, const OpenDrawing& drawing) const;
    // A reader of the file sees the old bytes or the new ones.
    void Save(const std::string& name, const std::string& bytes) const;

  private:
    FileError error(const std::string& name, int line, const std::string& what) const;

    const Console& console_;
    const Speech& say_;
};

} // namespace kalvrooms
