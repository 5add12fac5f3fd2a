#include "drawing/DrawingFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <fstream>
#include <initializer_list>
#include <limits>
#include <system_error>

namespace kalvrooms::practice {

namespace {

using Json = nlohmann::ordered_json;

// Deeper than any drawing; writing goes down by recursion, so endless nesting must not get in.
constexpr int DeepestNesting = 100;

[[noreturn]] void Refuse(const std::string& where, const std::string& trouble) {
    throw HostError(L"The drawing cannot be read: " + FromUtf8(where) + L" " + FromUtf8(trouble));
}

const Json* Find(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

void MustBeObject(const Json& json, const std::string& where) {
    if (!json.is_object())
        Refuse(where, "is not an object.");
}

std::wstring Text(const Json& object, const char* key, const std::string& where) {
    const Json* value = Find(object, key);
    if (!value)
        return {};
    if (!value->is_string())
        Refuse(where + "." + key, "is not a text.");
    return FromUtf8(value->get_ref<const std::string&>());
}

std::int32_t Whole(const Json& value, const std::string& where) {
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > 0x7FFFFFFF)
        Refuse(where, "does not fit into 32 bits.");
    if (!value.is_number_integer())
        Refuse(where, "is not a whole number.");
    const auto number = value.get<std::int64_t>();
    if (number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max())
        Refuse(where, "does not fit into 32 bits.");
    return static_cast<std::int32_t>(number);
}

std::int32_t Whole(const Json& object, const char* key, const std::string& where,
                   std::int32_t otherwise) {
    const Json* value = Find(object, key);
    return value ? Whole(*value, where + "." + key) : otherwise;
}

double Number(const Json& value, const std::string& where) {
    if (!value.is_number() || !std::isfinite(value.get<double>()))
        Refuse(where, "is not a number.");
    return value.get<double>();
}

Point ReadPoint(const Json& json, const std::string& where) {
    if (!json.is_array() || json.size() != 2)
        Refuse(where, "is not a point [x,y].");
    return {Number(json[0], where), Number(json[1], where)};
}

// The array under the key, an empty one when it is missing.
const Json& List(const Json& object, const char* key, const std::string& where) {
    static const Json empty = Json::array();
    const Json* value = Find(object, key);
    if (!value)
        return empty;
    if (!value->is_array())
        Refuse(where + "." + key, "is not a list.");
    return *value;
}

std::string At(const std::string& where, const char* key, std::size_t index) {
    return (where.empty() ? std::string() : where + ".") + key + "[" + std::to_string(index) + "]";
}

UnknownKeys Unknown(const Json& object, std::initializer_list<const char*> known) {
    UnknownKeys unknown;
    for (const auto& [key, value] : object.items()) {
        if (std::find(known.begin(), known.end(), key) == known.end())
            unknown.emplace_back(key, value.dump());
    }
    return unknown;
}

void PutUnknown(Json& object, const UnknownKeys& unknown) {
    for (const auto& [key, value] : unknown)
        object[key] = Json::parse(value);
}

Attribute ReadAttribute(const Json& json, const std::string& where) {
    MustBeObject(json, where);
    Attribute attribute;
    attribute.name = Text(json, "name", where);
    if (const Json* value = Find(json, "value")) {
        if (value->is_string())
            attribute.value = FromUtf8(value->get_ref<const std::string&>());
        else
            attribute.value = Number(*value, where + ".value");
    }
    attribute.unknown = Unknown(json, {"name", "value"});
    return attribute;
}

Element ReadElement(const Json& json, const std::string& where) {
    MustBeObject(json, where);
    Element element;
    element.componentId = Whole(json, "componentId", where, -1);
    element.fileNumber = Whole(json, "fileNumber", where, 1);
    element.fileId = Find(json, "fileId") ? Text(json, "fileId", where)
                                          : L"K" + std::to_wstring(element.fileNumber);
    element.name = Text(json, "name", where);
    element.function = Text(json, "function", where);
    element.storey = Text(json, "storey", where);
    element.colour = Whole(json, "colour", where, 0);
    const Json& outline = List(json, "outline", where);
    for (std::size_t i = 0; i < outline.size(); ++i)
        element.outline.push_back(ReadPoint(outline[i], At(where, "outline", i)));
    CloseOutline(element.outline);
    const Json& attributes = List(json, "attributes", where);
    for (std::size_t i = 0; i < attributes.size(); ++i)
        element.attributes.push_back(ReadAttribute(attributes[i], At(where, "attributes", i)));
    element.unknown = Unknown(json, {"componentId", "fileNumber", "fileId", "name", "function",
                                     "storey", "colour", "outline", "attributes"});
    return element;
}

Placement ReadPlacement(const Json& json, const std::string& where) {
    MustBeObject(json, where);
    Placement placement;
    placement.mode = Whole(json, "mode", where, 0);
    if (const Json* at = Find(json, "at"))
        placement.at = ReadPoint(*at, where + ".at");
    const Json& ids = List(json, "componentIds", where);
    for (std::size_t i = 0; i < ids.size(); ++i)
        placement.componentIds.push_back(Whole(ids[i], At(where, "componentIds", i)));
    placement.unknown = Unknown(json, {"mode", "at", "componentIds"});
    return placement;
}

std::map<std::int32_t, std::wstring> ReadAttributeNames(const Json& json) {
    MustBeObject(json, "attributeNames");
    std::map<std::int32_t, std::wstring> names;
    for (const auto& [key, value] : json.items()) {
        std::int32_t number = 0;
        const char* end = key.data() + key.size();
        const auto read = std::from_chars(key.data(), end, number);
        if (read.ec != std::errc() || read.ptr != end)
            Refuse("attributeNames", "has a key that is not a number: " + key);
        if (!value.is_string())
            Refuse("attributeNames." + key, "is not a text.");
        names[number] = FromUtf8(value.get_ref<const std::string&>());
    }
    return names;
}

// Elements without a number of their own get the next free ones.
void NumberElements(Drawing& drawing, const Json& elements) {
    std::int64_t highest = 0;
    for (const Element& element : drawing.elements)
        highest = std::max<std::int64_t>(highest, element.componentId);
    for (std::size_t i = 0; i < drawing.elements.size(); ++i) {
        if (Find(elements[i], "componentId"))
            continue;
        if (++highest > std::numeric_limits<std::int32_t>::max())
            Refuse(At("", "elements", i), "has no componentId, and none is left.");
        drawing.elements[i].componentId = static_cast<std::int32_t>(highest);
    }
}

Json Parse(std::string_view text) {
    const auto shallow = [](int depth, Json::parse_event_t, Json&) {
        if (depth > DeepestNesting)
            Refuse("", "it is nested too deep.");
        return true;
    };
    try {
        return Json::parse(text, shallow);
    } catch (const Json::exception& error) {
        Refuse("it is not JSON:", error.what());
    }
}

Json Write(const Attribute& attribute) {
    Json json;
    json["name"] = ToUtf8(attribute.name);
    if (const auto* number = std::get_if<double>(&attribute.value))
        json["value"] = *number;
    else
        json["value"] = ToUtf8(std::get<std::wstring>(attribute.value));
    PutUnknown(json, attribute.unknown);
    return json;
}

Json Write(const Point& point) {
    return Json::array({point.x, point.y});
}

Json Write(const Element& element) {
    Json json;
    json["componentId"] = element.componentId;
    json["fileNumber"] = element.fileNumber;
    json["fileId"] = ToUtf8(element.fileId);
    json["name"] = ToUtf8(element.name);
    json["function"] = ToUtf8(element.function);
    json["storey"] = ToUtf8(element.storey);
    json["colour"] = element.colour;
    json["outline"] = Json::array();
    for (const Point& point : element.outline)
        json["outline"].push_back(Write(point));
    json["attributes"] = Json::array();
    for (const Attribute& attribute : element.attributes)
        json["attributes"].push_back(Write(attribute));
    PutUnknown(json, element.unknown);
    return json;
}

Json Write(const Placement& placement) {
    Json json;
    json["mode"] = placement.mode;
    json["at"] = Write(placement.at);
    json["componentIds"] = placement.componentIds;
    PutUnknown(json, placement.unknown);
    return json;
}

} // namespace

Drawing ReadDrawing(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    const Json json = Parse(text);
    MustBeObject(json, "it");

    Drawing drawing;
    if (const Json* project = Find(json, "project")) {
        MustBeObject(*project, "project");
        drawing.project.name = Text(*project, "name", "project");
        drawing.project.folder = Text(*project, "folder", "project");
        drawing.project.number = Whole(*project, "number", "project", 0);
        drawing.project.unknown = Unknown(*project, {"name", "folder", "number"});
    }
    if (const Json* names = Find(json, "attributeNames"))
        drawing.attributeNames = ReadAttributeNames(*names);
    if (Find(json, "newElementAttributes")) {
        drawing.newElementAttributes.emplace();
        for (const Json& name : List(json, "newElementAttributes", "it")) {
            if (!name.is_string())
                Refuse("newElementAttributes", "has an entry that is not a text.");
            drawing.newElementAttributes->push_back(FromUtf8(name.get_ref<const std::string&>()));
        }
    }
    const Json& elements = List(json, "elements", "it");
    for (std::size_t i = 0; i < elements.size(); ++i)
        drawing.elements.push_back(ReadElement(elements[i], At("", "elements", i)));
    NumberElements(drawing, elements);
    const Json& placements = List(json, "placements", "it");
    for (std::size_t i = 0; i < placements.size(); ++i)
        drawing.placements.push_back(ReadPlacement(placements[i], At("", "placements", i)));
    drawing.unknown = Unknown(
        json, {"project", "attributeNames", "newElementAttributes", "elements", "placements"});
    return drawing;
}

std::string WriteDrawing(const Drawing& drawing) {
    Json json;
    Json& project = json["project"];
    project["name"] = ToUtf8(drawing.project.name);
    project["folder"] = ToUtf8(drawing.project.folder);
    project["number"] = drawing.project.number;
    PutUnknown(project, drawing.project.unknown);
    Json& names = json["attributeNames"] = Json::object();
    for (const auto& [number, name] : drawing.attributeNames)
        names[std::to_string(number)] = ToUtf8(name);
    if (drawing.newElementAttributes) {
        Json& carried = json["newElementAttributes"] = Json::array();
        for (const std::wstring& name : *drawing.newElementAttributes)
            carried.push_back(ToUtf8(name));
    }
    Json& elements = json["elements"] = Json::array();
    for (const Element& element : drawing.elements)
        elements.push_back(Write(element));
    Json& placements = json["placements"] = Json::array();
    for (const Placement& placement : drawing.placements)
        placements.push_back(Write(placement));
    PutUnknown(json, drawing.unknown);
    return json.dump(1) + "\n";
}

Drawing LoadDrawing(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text;
    std::array<char, 65536> piece{};
    // The stream traps what a folder or a broken disk raises; it is asked once at the end.
    while (stream.read(piece.data(), piece.size()) || stream.gcount() > 0)
        text.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    if (!stream.is_open() || stream.bad())
        throw HostError(L"The drawing cannot be opened: " + file.wstring());
    return ReadDrawing(text);
}

void SaveDrawing(const Drawing& drawing, const std::filesystem::path& file) {
    WriteWhole(file, WriteDrawing(drawing));
}

void WriteWhole(const std::filesystem::path& file, std::string_view bytes) {
    std::filesystem::path unfinished = file;
    unfinished += L".unfinished";
    std::error_code trouble;
    {
        std::ofstream stream(unfinished, std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        stream.close();
        if (!stream)
            trouble = std::make_error_code(std::errc::io_error);
    }
    if (!trouble)
        std::filesystem::rename(unfinished, file, trouble);
    if (trouble) {
        std::error_code ignored;
        std::filesystem::remove(unfinished, ignored);
        throw HostError(L"The file cannot be written: " + file.wstring());
    }
}

} // namespace kalvrooms::practice
