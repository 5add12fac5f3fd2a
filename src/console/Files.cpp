#include "console/Files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <istream>
#include <iterator>
#include <ostream>

#include "console/Busy.h"
#include "drawing/DrawingFile.h"
#include "drawing/Text.h"
#include "files/FilePath.h"
#include "ifc/TroubleText.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

std::filesystem::path pathOf(const FileArgument& file) {
    return FilePath(FromUtf8(file.name));
}

bool endsWith(const FileArgument& file, std::wstring_view ending) {
    return EqualsIgnoringCase(FileName(pathOf(file).extension()), ending);
}

// A list in JSON is an array, or an object of rooms where a drawing has elements.
FileKind kindOfJson(const std::string& bytes) {
    const std::size_t first = bytes.find_first_of("[{");
    const bool isList = first != std::string::npos &&
                        (bytes[first] == '[' || (bytes.find("\"rooms\"") != std::string::npos &&
                                                 bytes.find("\"elements\"") == std::string::npos));
    return isList ? FileKind::JsonList : FileKind::PracticeDrawing;
}

FileKind kindOfContents(const FileArgument& file, const std::string& bytes) {
    if (ifc::IsModel(bytes) || endsWith(file, L".ifc"))
        return FileKind::Model;
    switch (FormOf(bytes)) {
    case ListForm::Json:
        return kindOfJson(bytes);
    case ListForm::Csv:
        return endsWith(file, L".txt") ? FileKind::TextList : FileKind::CsvList;
    case ListForm::Text:
        break;
    }
    return endsWith(file, L".csv") ? FileKind::CsvList : FileKind::TextList;
}

FileKind kindOf(const FileArgument& file, const std::string& bytes) {
    if (file.format == "text")
        return FileKind::TextList;
    if (file.format == "csv")
        return FileKind::CsvList;
    if (file.format == "json")
        return kindOfJson(bytes);
    if (file.format == "drawing")
        return FileKind::PracticeDrawing;
    return file.format == "ifc" ? FileKind::Model : kindOfContents(file, bytes);
}

// In one piece where the size is known: files of 100 MB come in bytes by bytes otherwise.
std::string bytesOf(std::ifstream& stream) {
    std::string bytes;
    const std::streamoff size = stream.seekg(0, std::ios::end).tellg();
    if (size > 0) {
        bytes.resize(static_cast<std::size_t>(size));
        stream.seekg(0).read(bytes.data(), size);
        bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
        return bytes;
    }
    stream.clear();
    stream.seekg(0);
    stream.clear();
    bytes.assign(std::istreambuf_iterator<char>(stream), {});
    return bytes;
}

ListForm formOf(FileKind kind) {
    return kind == FileKind::CsvList    ? ListForm::Csv
           : kind == FileKind::JsonList ? ListForm::Json
                                        : ListForm::Text;
}

} // namespace

FileError Files::error(const std::string& shownName, int line, const std::string& what) {
    std::string text = shownName;
    if (line > 0)
        text.append(":").append(std::to_string(line));
    return FileError(text.append(": ").append(what));
}

std::string Files::words(const std::string& trouble) const {
    return say_.german ? ifc::InGerman(trouble) : trouble;
}

std::string Files::shown(const FileArgument& file, bool isWritten) const {
    if (!file.IsStandardStream())
        return file.name;
    return isWritten ? say_("(Standardausgabe)", "(standard output)")
                     : say_("(Standardeingabe)", "(standard input)");
}

Files::Input Files::Open(const FileArgument& file) const {
    Input input{shown(file, false), {}, FileKind::TextList};
    const Busy busy(console_, say_("liest ", "reading ") + input.name);
    if (file.IsStandardStream()) {
        input.bytes.assign(std::istreambuf_iterator<char>(console_.in), {});
    } else {
        std::error_code ignored;
        std::ifstream stream(pathOf(file), std::ios::binary);
        if (!stream || std::filesystem::is_directory(pathOf(file), ignored))
            throw error(input.name, 0,
                        say_("die Datei ist nicht lesbar", "the file cannot be read"));
        input.bytes = bytesOf(stream);
    }
    input.kind = kindOf(file, input.bytes);
    return input;
}

RoomRows Files::Rows(const Input& input) const {
    if (!input.IsList())
        throw error(input.name, 0, say_("eine Raumliste wird erwartet", "a room list is expected"));
    try {
        const Busy busy(console_, say_("liest ", "reading ") + input.name);
        return ReadRows(input.bytes, formOf(input.kind), encoding, say_);
    } catch (const ListError& found) {
        throw error(input.name, found.line, found.what());
    }
}

OpenDrawing Files::DrawingOf(Input input) const {
    if (input.IsList())
        throw error(input.name, 0, say_("eine Zeichnung wird erwartet", "a drawing is expected"));
    const std::string name = input.name;
    try {
        if (input.kind == FileKind::PracticeDrawing)
            return {ReadDrawing(input.bytes), nullptr};
        return modelOf(std::move(input));
    } catch (const ifc::ModelError& found) {
        throw error(name, found.Line(), words(found.Trouble()));
    } catch (const HostError& found) {
        throw error(name, 0, words(ToUtf8(found.description())));
    }
}

OpenDrawing Files::modelOf(Input input) const {
    std::shared_ptr<const ifc::IfcDrawing> model;
    {
        const Busy busy(console_, say_("liest ", "reading ") + input.name);
        model = std::make_shared<const ifc::IfcDrawing>(ifc::ModelBytes{std::move(input.bytes)});
    }
    for (const std::string& trouble : model->Troubles())
        console_.err << error(input.name, 0, words(trouble)).what() << '\n';
    return {model->Read(), model};
}

FileKind Files::kindOfList(const FileArgument& file) const {
    if (file.format == "csv" || (file.format.empty() && endsWith(file, L".csv")))
        return FileKind::CsvList;
    if (file.format == "json" || (file.format.empty() && endsWith(file, L".json")))
        return FileKind::JsonList;
    return FileKind::TextList;
}

bool Files::TellLosses(const FileArgument& file, RoomRows& rows) const {
    if (kindOfList(file) != FileKind::TextList)
        return false;
    const auto tell = [&](const std::vector<int>& lines, const char* what) {
        for (const int line : lines)
            console_.err << error(shown(file, true), line, what).what() << '\n';
        return !lines.empty();
    };
    const bool broken =
        tell(PutInOneLine(rows), say_("ein Tabulator oder Zeilenumbruch wird ein Leerzeichen",
                                      "a tab or a line break becomes a blank"));
    return tell(FitEncoding(rows, encoding),
                say_("ein Zeichen fehlt in der Codepage 1252 und wird ein Fragezeichen; "
                     "--encoding utf-8 schreibt es",
                     "a character is missing in code page 1252 and becomes a question mark; "
                     "--encoding utf-8 writes it")) ||
           broken;
}

void Files::SaveRows(const FileArgument& file, const RoomRows& rows) const {
    try {
        Save(file, WriteRows(rows, formOf(kindOfList(file)), encoding, say_));
    } catch (const ListError& found) {
        throw error(shown(file, true), found.line, found.what());
    }
}

void Files::SaveDrawing(const FileArgument& file, const OpenDrawing& drawing) const {
    const bool named = file.format.empty();
    const bool asJson =
        named ? endsWith(file, L".json") : file.format == "json" || file.format == "drawing";
    const bool asModel = named ? endsWith(file, L".ifc") : file.format == "ifc";
    if (asModel && !drawing.model)
        throw error(shown(file, true), 0,
                    say_("aus einer Übungszeichnung wird kein Modell",
                         "a practice drawing does not become a model"));
    std::string bytes;
    try {
        const Busy busy(console_, say_("schreibt ", "writing ") + shown(file, true));
        bytes = drawing.model && !asJson ? drawing.model->Write(drawing.drawing)
                                         : WriteDrawing(drawing.drawing);
    } catch (const HostError& found) {
        throw error(shown(file, true), 0, words(ToUtf8(found.description())));
    }
    Save(file, bytes);
}

void Files::Save(const FileArgument& file, const std::string& bytes) const {
    if (file.IsStandardStream()) {
        console_.out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return;
    }
    try {
        const Busy busy(console_, say_("schreibt ", "writing ") + shown(file, true));
        SaveText(pathOf(file), bytes);
    } catch (const HostError&) {
        throw error(file.name, 0,
                    say_("die Datei ist nicht schreibbar", "the file cannot be written"));
    }
}

} // namespace kalvrooms
