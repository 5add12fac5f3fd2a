#include "drawing/DrawingFile.h"

#include "drawing/Text.h"
#include "model/WholeFile.h"

// A refusal names its place in the file.
#define JSON_DIAGNOSTICS 1
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <concepts>
#include <fstream>
#include <limits>
#include <system_error>

using Json = nlohmann::ordered_json;

namespace {

[[noreturn]] void Refuse(const Json& json, const std::string& trouble) {
    throw Json::type_error::create(302, trouble, &json);
}

} // namespace

// Types that the library does not map, or too leniently.
namespace nlohmann {

template <>
struct adl_serializer<std::wstring> {
    static void from_json(const Json& json, std::wstring& text) {
        text = kalvrooms::FromUtf8(json.get<std::string>());
    }
    static void to_json(Json& json, const std::wstring& text) { json = kalvrooms::ToUtf8(text); }
};

template <>
struct adl_serializer<std::int32_t> {
    static void from_json(const Json& json, std::int32_t& number) {
        if (!json.is_number_integer())
            Refuse(json, "is not a whole number");
        const auto wide = json.get<std::int64_t>();
        number = static_cast<std::int32_t>(wide);
        if (number != wide || (json.is_number_unsigned() && wide < 0))
            Refuse(json, "does not fit into 32 bits");
    }
    static void to_json(Json& json, std::int32_t number) { json = std::int64_t{number}; }
};

template <>
struct adl_serializer<std::variant<std::wstring, double>> {
    using Value = std::variant<std::wstring, double>;
    static void from_json(const Json& json, Value& value) {
        if (json.is_string())
            value = json.get<std::wstring>();
        else
            value = json.get<double>();
    }
    static void to_json(Json& json, const Value& value) {
        std::visit([&](const auto& held) { json = held; }, value);
    }
};

template <>
struct adl_serializer<std::map<std::int32_t, std::wstring>> {
    using Names = std::map<std::int32_t, std::wstring>;
    static void from_json(const Json& json, Names& names) {
        names.clear();
        for (const auto& [key, name] : json.get_ref<const Json::object_t&>()) {
            const auto number = kalvrooms::NumberFrom<std::int32_t>(kalvrooms::FromUtf8(key));
            if (!number)
                Refuse(json, "has a key that is not a number: " + key);
            name.get_to(names[*number]);
        }
    }
    static void to_json(Json& json, const Names& names) {
        json = Json::object();
        for (const auto& [number, name] : names)
            json[std::to_string(number)] = name;
    }
};

} // namespace nlohmann

namespace kalvrooms {

namespace {

// Deeper than any drawing. Writing recurses, so endless nesting must not get in.
constexpr int DeepestNesting = 100;

bool Has(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && !found->is_null();
}

// Reads the values of an object's keys; what the object lacks keeps its default.
class Reader {
  public:
    explicit Reader(const Json& json) : json_(json) {
        if (!json.is_object())
            Refuse(json, "is not an object");
    }
    template <class Value>
    void operator()(const char* key, Value& value) {
        known_.emplace_back(key);
        if (Has(json_, key))
            json_.at(key).get_to(value);
    }
    template <class Value>
    void operator()(const char* key, std::optional<Value>& value) {
        Value read;
        (*this)(key, read);
        if (Has(json_, key))
            value = std::move(read);
    }
    UnknownKeys Unknown() const {
        UnknownKeys unknown;
        for (const auto& [key, value] : json_.items())
            if (std::find(known_.begin(), known_.end(), key) == known_.end())
                unknown.emplace_back(key, value.dump());
        return unknown;
    }

  private:
    const Json& json_;
    std::vector<std::string> known_;
};

class Writer {
  public:
    explicit Writer(Json& json) : json_(json) { json_ = Json::object(); }
    template <class Value>
    void operator()(const char* key, const Value& value) {
        json_[key] = value;
    }
    template <class Value>
    void operator()(const char* key, const std::optional<Value>& value) {
        if (value)
            json_[key] = *value;
    }
    void Unknown(const UnknownKeys& unknown) {
        for (const auto& [key, value] : unknown)
            json_[key] = Json::parse(value);
    }

  private:
    Json& json_;
};

template <class Object, class Kind>
concept Some = std::same_as<std::remove_const_t<Object>, Kind>;

// The keys of each object, for reading and for writing.
void Fields(auto& field, Some<Attribute> auto& attribute) {
    field("name", attribute.name);
    field("value", attribute.value);
}

void Fields(auto& field, Some<Element> auto& element) {
    field("componentId", element.identity.ComponentID);
    field("fileNumber", element.identity.FileNumber);
    field("fileId", element.identity.FileID);
    field("name", element.name);
    field("function", element.function);
    field("storey", element.storey);
    field("colour", element.colour);
    field("outline", element.outline);
    field("attributes", element.attributes);
}

void Fields(auto& field, Some<PlacementRecord> auto& placement) {
    field("mode", placement.mode);
    field("at", placement.at);
    field("componentIds", placement.componentIds);
}

void Fields(auto& field, Some<Project> auto& project) {
    field("name", project.name);
    field("folder", project.folder);
    field("number", project.number);
}

void Fields(auto& field, Some<Drawing> auto& drawing) {
    field("project", drawing.project);
    field("attributeNames", drawing.attributeNames);
    field("newElementAttributes", drawing.newElementAttributes);
    field("elements", drawing.elements);
    field("placements", drawing.placements);
}

template <class Object>
concept HasFields = Some<Object, Attribute> || Some<Object, Element> ||
    Some<Object, PlacementRecord> || Some<Object, Project> || Some<Object, Drawing>;

} // namespace

static void from_json(const Json& json, Point& point) {
    if (!json.is_array() || json.size() != 2)
        Refuse(json, "is not a point [x,y]");
    json[0].get_to(point.x);
    json[1].get_to(point.y);
}

static void to_json(Json& json, const Point& point) {
    json = Json::array({point.x, point.y});
}

static void from_json(const Json& json, HasFields auto& object) {
    Reader reader(json);
    Fields(reader, object);
    object.unknown = reader.Unknown();
}

static void to_json(Json& json, const HasFields auto& object) {
    Writer writer(json);
    Fields(writer, object);
    writer.Unknown(object.unknown);
}

namespace {

// What the file leaves out of an element: the next free number, and the first file.
void Complete(std::vector<Element>& elements, const Json& json) {
    std::int64_t highest = 0;
    for (const Element& element : elements)
        highest = std::max<std::int64_t>(highest, element.identity.ComponentID);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        HostIdentity& identity = elements[i].identity;
        if (!Has(json[i], "componentId")) {
            if (++highest > std::numeric_limits<std::int32_t>::max())
                Refuse(json[i], "has no componentId, and none is left");
            identity.ComponentID = static_cast<std::int32_t>(highest);
        }
        if (!Has(json[i], "fileNumber"))
            identity.FileNumber = 1;
        if (!Has(json[i], "fileId"))
            identity.FileID = L"K" + std::to_wstring(identity.FileNumber);
        CloseOutline(elements[i].outline);
    }
}

bool Shallow(int depth, Json::parse_event_t, Json& json) {
    if (depth > DeepestNesting)
        Refuse(json, "is nested too deep");
    return true;
}

} // namespace

Drawing ReadDrawing(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    try {
        const Json json = Json::parse(text, Shallow);
        auto drawing = json.get<Drawing>();
        if (Has(json, "elements"))
            Complete(drawing.elements, json["elements"]);
        return drawing;
    } catch (const Json::exception& error) {
        throw HostError(L"The drawing cannot be read: " + FromUtf8(error.what()));
    }
}

std::string WriteDrawing(const Drawing& drawing) {
    return Json(drawing).dump(1) + "\n";
}

const std::vector<std::pair<std::string_view, std::string_view>> DrawingTroubles{
    {"The drawing cannot be read: ", "Die Zeichnung ist nicht lesbar: "},
    {"The drawing cannot be opened: ", "Die Zeichnung lässt sich nicht öffnen: "},
    {"The file cannot be written: ", "Die Datei ist nicht schreibbar: "},
    {"is not a whole number", "ist keine ganze Zahl"},
    {"does not fit into 32 bits", "passt nicht in 32 Bit"},
    {"has a key that is not a number: ", "hat einen Schlüssel, der keine Zahl ist: "},
    {"is not an object", "ist kein Objekt"},
    {"is not a point [x,y]", "ist kein Punkt [x,y]"},
    {"has no componentId, and none is left", "hat keine componentId, und keine ist mehr frei"},
    {"is nested too deep", "ist zu tief geschachtelt"},
};

Drawing LoadDrawing(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text;
    std::array<char, 65536> piece{};
    // Reading a folder or a broken disk only marks the stream as bad, which is checked at the end.
    while (stream.read(piece.data(), piece.size()) || stream.gcount() > 0)
        text.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    if (!stream.is_open() || stream.bad())
        throw HostError(L"The drawing cannot be opened: " + file.wstring());
    return ReadDrawing(text);
}

void SaveDrawing(const Drawing& drawing, const std::filesystem::path& file) {
    SaveText(file, WriteDrawing(drawing));
}

void SaveText(const std::filesystem::path& file, std::string_view text) {
    try {
        WriteWhole(file, text);
    } catch (const std::system_error&) {
        throw HostError(L"The file cannot be written: " + file.wstring());
    }
}

} // namespace kalvrooms
