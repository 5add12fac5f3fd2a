#pragma once
// What stands behind the files of the command line. The kind of what is read is told by --format,
// else by the contents; of what is written by --format, else by the name's ending.

#include <memory>
#include <string>

#include "console/FileArgument.h"
#include "console/FileError.h"
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

class Files {
  public:
    Files(const Console& console, const Speech& say) : console_(console), say_(say) {}

    ListEncoding encoding = ListEncoding::Windows1252;

    struct Input {
        std::string name;
        std::string bytes;
        FileKind kind = FileKind::TextList;

        bool IsList() const { return kind < FileKind::PracticeDrawing; }
    };
    // Error: FileError.
    Input Open(const FileArgument& file) const;
    // Errors: FileError, also for a drawing in a list's place and the other way round.
    RoomRows Rows(const Input& input) const;
    OpenDrawing DrawingOf(Input input) const;

    void SaveRows(const FileArgument& file, const RoomRows& rows) const;
    // What a text list cannot hold becomes a blank, or a question mark in code page 1252, as the
    // program writes it; each line that it happens in is told. Whether there was one.
    bool TellLosses(const FileArgument& file, RoomRows& rows) const;
    // As the model that it came from, or as a practice drawing where --format or the name says so.
    void SaveDrawing(const FileArgument& file, const OpenDrawing& drawing) const;
    // A reader of the file sees the old bytes or the new ones.
    void Save(const FileArgument& file, const std::string& bytes) const;

  private:
    OpenDrawing modelOf(Input input) const;
    FileKind kindOfList(const FileArgument& file) const;
    // As messages name it.
    std::string shown(const FileArgument& file, bool isWritten) const;
    // What a reader complains about, in the language of the user.
    std::string words(const std::string& trouble) const;
    static FileError error(const std::string& shownName, int line, const std::string& what);

    const Console& console_;
    const Speech& say_;
};

} // namespace kalvrooms
