#include "console/Files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <istream>
#include <iterator>
#include <optional>
#include <ostream>
#include <string_view>

#include "drawing/DrawingFile.h"
#include "files/FilePath.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

constexpr const char* standardStream = "-";
constexpr std::string_view modelBegins = "ISO-10303-21";

std::filesystem::path pathOf(const std::string& name) {
    return FilePath(FromUtf8(name));
}

std::optional<FileKind> kindOfFormat(const std::string& format) {
    if (format == "text")
        return FileKind::TextList;
    if (format == "csv")
        return FileKind::CsvList;
    if (format == "json")
        return FileKind::JsonList;
    if (format == "drawing")
        return FileKind::PracticeDrawing;
    if (format == "ifc")
        return FileKind::Model;
    return std::nullopt;
}

// A list in JSON is an array, or an object of rooms where a drawing has elements.
FileKind kindOfContents(const std::string& bytes) {
    const std::size_t start = std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size());
    if (bytes.compare(start, modelBegins.size(), modelBegins) == 0)
        return FileKind::Model;
    switch (FormOf(bytes)) {
    case ListForm::Csv:
        return FileKind::CsvList;
    case ListForm::Text:
        return FileKind::TextList;
    case ListForm::Json:
        break;
    }
    const std::size_t first = bytes.find_first_of("[{");
    const bool isList = bytes[first] == '[' || (bytes.find("\"rooms\"") != std::string::npos &&
                                                bytes.find("\"elements\"") == std::string::npos);
    return isList ? FileKind::JsonList : FileKind::PracticeDrawing;
}

ListForm formOf(FileKind kind) {
    return kind == FileKind::CsvList    ? ListForm::Csv
           : kind == FileKind::JsonList ? ListForm::Json
                                        : ListForm::Text;
}

} // namespace

FileError Files::error(const std::string& name, int line, const std::string& what) const {
    std::string text =
        name == standardStream ? say_("(Standardeingabe)", "(standard input)") : name;
    if (line > 0)
        text.append(":").append(std::to_string(line));
    return FileError(text.append(": ").append(what));
}

Files::Input Files::Open(const std::string& name) const {
    Input input{name, {}, FileKind::TextList};
    if (name == standardStream) {
        input.bytes.assign(std::istreambuf_iterator<char>(console_.in), {});
    } else {
        std::error_code ignored;
        std::ifstream file(pathOf(name), std::ios::binary);
        if (!file || std::filesystem::is_directory(pathOf(name), ignored))
            throw error(name, 0, say_("die Datei ist nicht lesbar", "the file cannot be read"));
        input.bytes.assign(std::istreambuf_iterator<char>(file), {});
    }
    input.kind = kindOfFormat(format).value_or(kindOfContents(input.bytes));
    return input;
}

RoomRows Files::Rows(const Input& input) const {
    if (!input.IsList())
        throw error(input.name, 0, say_("eine Raumliste wird erwartet", "a room list is expected"));
    try {
        return ReadRows(input.bytes, formOf(input.kind), encoding, say_);
    } catch (const ListError& found) {
        throw error(input.name, found.line, found.what());
    }
}

OpenDrawing Files::DrawingOf(const Input& input) const {
    if (input.IsList())
        throw error(input.name, 0, say_("eine Zeichnung wird erwartet", "a drawing is expected"));
    try {
        if (input.kind == FileKind::PracticeDrawing)
            return {ReadDrawing(input.bytes), nullptr};
        auto model = std::make_shared<const ifc::IfcDrawing>(ifc::ModelBytes{input.bytes});
        for (const std::string& trouble : model->Troubles())
            console_.err << error(input.name, 0, trouble).what() << '\n';
        return {model->Read(), model};
    } catch (const HostError& found) {
        throw error(input.name, 0, ToUtf8(found.description()));
    }
}

void Files::SaveRows(const std::string& name, const RoomRows& rows) const {
    const FileKind kind =
        kindOfFormat(format).value_or(name.ends_with(".csv")    ? FileKind::CsvList
                                      : name.ends_with(".json") ? FileKind::JsonList
                                                                : FileKind::TextList);
    try {
        Save(name, WriteRows(rows, formOf(kind), encoding, say_));
    } catch (const ListError& found) {
        throw error(name, found.line, found.what());
    }
}

void Files::SaveDrawing(const std::string& name, const OpenDrawing& drawing) const {
    const bool asModel = drawing.model && !name.ends_with(".json");
    Save(name, asModel ? drawing.model->Write(drawing.drawing) : WriteDrawing(drawing.drawing));
}

void Files::Save(const std::string& name, const std::string& bytes) const {
    if (name == standardStream) {
        console_.out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return;
    }
    try {
        SaveText(pathOf(name), bytes);
    } catch (const HostError& found) {
        throw error(name, 0, ToUtf8(found.description()));
    }
}

} // namespace kalvrooms
