#include "console/RoomRows.h"

#include <algorithm>

#include <nlohmann/json.hpp>

#include "app/clsText.h"
#include "console/Table.h"
#include "headless/HeadlessSystem.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

using Fields = RoomRows::Fields;
using Json = nlohmann::ordered_json;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string decoded(std::string_view bytes, ListEncoding encoding) {
    if (encoding == ListEncoding::Utf8)
        return std::string(bytes);
    static const auto letters = [] {
        std::array<std::string, 256> all;
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = ToUtf8(HeadlessAnsiCodec().Decode(std::string(1, static_cast<char>(i))));
        return all;
    }();
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 16);
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        // Most letters are the same in both.
        const std::size_t plain = at;
        while (at < bytes.size() && static_cast<unsigned char>(bytes[at]) < 0x80)
            ++at;
        text.append(bytes, plain, at - plain);
        if (at < bytes.size())
            text += letters[static_cast<unsigned char>(bytes[at])];
    }
    return text;
}

std::string encoded(const std::string& text, int line, ListEncoding encoding, const Speech& say) {
    if (encoding == ListEncoding::Utf8)
        return text;
    const HeadlessAnsiCodec codec;
    const std::wstring wide = FromUtf8(text);
    std::string bytes = codec.Encode(wide);
    if (codec.Decode(bytes) != wide)
        throw ListError(
            line, say("ein Zeichen fehlt in der Codepage 1252; --encoding utf-8 schreibt es",
                      "a character is missing in code page 1252; --encoding utf-8 writes it"));
    return bytes;
}

// Error: ListError with the first line that is not UTF-8.
void checkUtf8(std::string_view bytes, const Speech& say) {
    for (int line = 1; !bytes.empty(); ++line) {
        const std::size_t end = bytes.find('\n');
        const std::string_view content = bytes.substr(0, end);
        const bool isAscii = std::all_of(content.begin(), content.end(),
                                         [](char byte) { return (byte & 0x80) == 0; });
        if (!isAscii && ToUtf8(FromUtf8(content)) != content)
            throw ListError(line, say("die Zeile ist nicht in UTF-8 geschrieben",
                                      "the line is not written in UTF-8"));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
}

// ------------------------------------------------------------------------- text list

// The blanks that frame a TAB are the separator's, all others the field's.
Fields splitAtTabs(std::string_view line) {
    Fields fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t tab = line.find('\t');
        std::string_view field = line.substr(0, tab);
        if (i > 0 && field.starts_with(' '))
            field.remove_prefix(1);
        if (tab != std::string_view::npos && field.ends_with(' '))
            field.remove_suffix(1);
        fields[i] = field;
        if (tab == std::string_view::npos)
            break;
        line.remove_prefix(tab + 1);
    }
    return fields;
}

RoomRows readText(std::string_view bytes, ListEncoding encoding) {
    const std::string text = decoded(bytes, encoding);
    std::string_view rest = text;
    RoomRows rows;
    rows.rows.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')));
    for (int line = 1; !rest.empty(); ++line) {
        const std::size_t end = rest.find('\n');
        std::string_view content = rest.substr(0, end);
        if (content.ends_with('\r'))
            content.remove_suffix(1);
        if (line == 1)
            rows.titles = splitAtTabs(content);
        else
            rows.rows.push_back({splitAtTabs(content), line});
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return rows;
}

void writeLine(std::string& text, const Fields& fields, int line, const Speech& say) {
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i].find_first_of("\t\r\n") != std::string::npos)
            throw ListError(
                line, say("ein Text mit Tabulator oder Zeilenumbruch passt nicht in eine Textliste",
                          "a text with a tab or a line break does not fit into a text list"));
        text += i == 0 ? "" : " \t ";
        text += fields[i];
    }
    text += "\r\n";
}

std::string writeText(const RoomRows& rows, ListEncoding encoding, const Speech& say) {
    std::string bytes;
    std::string line;
    const auto write = [&](const Fields& fields, int number) {
        line.clear();
        writeLine(line, fields, number, say);
        bytes += encoded(line, number, encoding, say);
    };
    write(rows.titles, 1);
    for (const RoomRows::Row& row : rows.rows)
        write(row.fields, row.line);
    return bytes;
}

// ------------------------------------------------------------------------- CSV

// Records of RFC 4180; a line feed alone ends one as well.
class CsvReader {
  public:
    CsvReader(std::string_view text, const Speech& say) : rest_(text), say_(say) {}

    // False at the end. The line is the one in which the record begins.
    bool read(std::vector<std::string>& record, int& line) {
        if (rest_.empty())
            return false;
        record.assign(1, {});
        line = line_;
        while (!rest_.empty()) {
            if (rest_.front() == '"' && record.back().empty()) {
                readQuoted(record.back(), line);
            } else if (rest_.front() == ',') {
                rest_.remove_prefix(1);
                record.emplace_back();
            } else if (rest_.starts_with("\r\n") || rest_.front() == '\n') {
                rest_.remove_prefix(rest_.front() == '\n' ? 1 : 2);
                ++line_;
                return true;
            } else {
                record.back() += rest_.front();
                rest_.remove_prefix(1);
            }
        }
        return true;
    }

  private:
    void readQuoted(std::string& field, int line) {
        for (rest_.remove_prefix(1); !rest_.empty(); rest_.remove_prefix(1)) {
            if (rest_.front() == '"') {
                rest_.remove_prefix(1);
                if (rest_.empty() || rest_.front() != '"')
                    return;
            }
            line_ += rest_.front() == '\n' ? 1 : 0;
            field += rest_.front();
        }
        throw ListError(line, say_("das Anführungszeichen wird nicht geschlossen",
                                   "the quotation mark is never closed"));
    }

    std::string_view rest_;
    const Speech& say_;
    int line_ = 1;
};

RoomRows readCsv(std::string_view bytes, const Speech& say) {
    CsvReader reader(bytes, say);
    RoomRows rows;
    std::vector<std::string> record;
    int line = 0;
    for (bool isTitles = true; reader.read(record, line); isTitles = false) {
        if (record.size() != RoomColumnCount)
            throw ListError(line,
                            say("elf Spalten werden erwartet", "eleven columns are expected"));
        Fields& fields =
            isTitles ? rows.titles : rows.rows.emplace_back(RoomRows::Row{{}, line}).fields;
        std::move(record.begin(), record.end(), fields.begin());
    }
    return rows;
}

std::string writeCsv(const RoomRows& rows) {
    std::string text;
    const auto write = [&](const Fields& fields) {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            text += i == 0 ? "" : ",";
            text += CsvField(fields[i]);
        }
        text += "\r\n";
    };
    write(rows.titles);
    for (const RoomRows::Row& row : rows.rows)
        write(row.fields);
    return text;
}

// ------------------------------------------------------------------------- JSON

RoomRows readJson(std::string_view bytes, const Speech& say) {
    Json json;
    try {
        json = Json::parse(bytes);
    } catch (const Json::parse_error& error) {
        const auto before = bytes.substr(0, error.byte);
        // Behind the library's own name for it.
        std::string reason = error.what();
        reason.erase(0, std::min(reason.find("] ") + 2, reason.size()));
        throw ListError(1 + static_cast<int>(std::count(before.begin(), before.end(), '\n')),
                        say("kein gültiges JSON: ", "no valid JSON: ") + reason);
    }
    RoomRows rows;
    rows.titles = GermanTitles();
    if (json.is_object() && json.contains("titles")) {
        const Json& titles = json["titles"];
        for (std::size_t i = 0; i < rows.titles.size() && i < titles.size(); ++i)
            rows.titles[i] = titles[i].is_string() ? titles[i].get<std::string>() : std::string();
    }
    const Json& rooms = json.is_object() && json.contains("rooms") ? json["rooms"] : json;
    if (!rooms.is_array())
        throw ListError(
            0, say("eine Liste von Räumen wird erwartet", "an array of rooms is expected"));
    for (const Json& room : rooms) {
        const int number = static_cast<int>(rows.rows.size()) + 1;
        if (!room.is_object())
            throw ListError(number, say("der Raum ist kein Objekt", "the room is no object"));
        RoomRows::Row& row = rows.rows.emplace_back(RoomRows::Row{{}, number});
        for (std::size_t i = 0; i < RoomColumnCount; ++i) {
            const auto found = room.find(ColumnKeys()[i]);
            if (found != room.end() && !found->is_null())
                row.fields[i] = found->is_string() ? found->get<std::string>() : found->dump();
        }
    }
    return rows;
}

std::string writeJson(const RoomRows& rows) {
    Json rooms = Json::array();
    for (const RoomRows::Row& row : rows.rows) {
        Json room = Json::object();
        for (std::size_t i = 0; i < RoomColumnCount; ++i)
            room[ColumnKeys()[i]] = row.fields[i];
        rooms.push_back(std::move(room));
    }
    // Titles of another language are kept; those that the program has built in need no word.
    Json json = std::move(rooms);
    if (rows.titles != GermanTitles())
        json = {{"titles", rows.titles}, {"rooms", std::move(json)}};
    return json.dump(1, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace

const Fields& GermanTitles() {
    static const Fields titles = [] {
        HeadlessResourceLibraries libraries;
        HeadlessEnvironment environment;
        const clsText texts(libraries, environment);
        Fields fields;
        for (std::size_t i = 0; i < fields.size(); ++i)
            fields[i] = ToUtf8(texts.GetText(RoomColumnTitles[i]));
        return fields;
    }();
    return titles;
}

const Fields& ColumnKeys() {
    static const Fields keys = {"name",     "function",  "area", "storey", "enclosure", "occupancy",
                                "areaType", "pointFile", "dx",   "dy",     "roomId"};
    return keys;
}

ListForm FormOf(std::string_view bytes) {
    if (bytes.starts_with(byteOrderMark))
        bytes.remove_prefix(byteOrderMark.size());
    const std::size_t first = bytes.find_first_not_of(" \t\r\n");
    if (first != std::string_view::npos && (bytes[first] == '[' || bytes[first] == '{'))
        return ListForm::Json;
    const std::string_view line = bytes.substr(0, bytes.find('\n'));
    return line.find('\t') == std::string_view::npos && line.find(',') != std::string_view::npos
               ? ListForm::Csv
               : ListForm::Text;
}

RoomRows ReadRows(std::string_view bytes, ListForm form, ListEncoding encoding, const Speech& say) {
    if (form != ListForm::Text || encoding == ListEncoding::Utf8)
        if (bytes.starts_with(byteOrderMark))
            bytes.remove_prefix(byteOrderMark.size());
    if (form == ListForm::Csv || (form == ListForm::Text && encoding == ListEncoding::Utf8))
        checkUtf8(bytes, say);
    switch (form) {
    case ListForm::Csv:
        return readCsv(bytes, say);
    case ListForm::Json:
        return readJson(bytes, say);
    case ListForm::Text:
        break;
    }
    return readText(bytes, encoding);
}

std::vector<int> PutInOneLine(RoomRows& rows) {
    std::vector<int> lines;
    for (RoomRows::Row& row : rows.rows) {
        const Fields before = row.fields;
        for (std::string& field : row.fields)
            std::replace_if(
                field.begin(), field.end(),
                [](char byte) { return byte == '\t' || byte == '\r' || byte == '\n'; }, ' ');
        if (row.fields != before)
            lines.push_back(row.line);
    }
    return lines;
}

std::vector<int> FitEncoding(RoomRows& rows, ListEncoding encoding) {
    std::vector<int> lines;
    if (encoding == ListEncoding::Utf8)
        return lines;
    const HeadlessAnsiCodec codec;
    for (RoomRows::Row& row : rows.rows) {
        const Fields before = row.fields;
        for (std::string& field : row.fields)
            field = ToUtf8(codec.Decode(codec.Encode(FromUtf8(field))));
        if (row.fields != before)
            lines.push_back(row.line);
    }
    return lines;
}

std::string WriteRows(const RoomRows& rows, ListForm form, ListEncoding encoding,
                      const Speech& say) {
    switch (form) {
    case ListForm::Csv:
        return writeCsv(rows);
    case ListForm::Json:
        return writeJson(rows);
    case ListForm::Text:
        break;
    }
    return writeText(rows, encoding, say);
}

} // namespace kalvrooms
