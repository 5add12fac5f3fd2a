#include "ifc/InstanceWriter.h"

#include <array>
#include <charconv>
#include <cmath>

#include "ifc/GlobalId.h"
#include "ifc/StepText.h"

namespace kalvrooms::ifc {
namespace {

constexpr const char* contextNames[] = {"Body", "FootPrint"};

bool isNamed(const Value& value, std::string_view name) {
    return value.IsText() && value.RawText() == name;
}

bool isUpright(const Transform& place) {
    return place.x.x > 1.0 - 1e-12 && place.z.z > 1.0 - 1e-12;
}

} // namespace

InstanceWriter::InstanceWriter(const Building& building, StepChanges& changes)
    : building_(building), changes_(changes) {
    for (const InstanceId project : building.File().OfType("IFCPROJECT"))
        owner_ = changes.Argument(project, 1);
}

std::string InstanceWriter::Text(std::wstring_view text) {
    return text.empty() ? "$" : EncodeText(text);
}

std::string InstanceWriter::List(const std::vector<InstanceId>& ids) {
    std::string list;
    for (const InstanceId id : ids)
        list.append(1, list.empty() ? '(' : ',').append(Reference(id));
    return list + ")";
}

// Without what computing has left behind the fifteenth digit and the ninth decimal.
std::string InstanceWriter::number(double value) {
    std::array<char, 40> digits;
    const char* end =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::round(value * 1e9) / 1e9,
                      std::chars_format::scientific, 14)
            .ptr;
    double rounded = 0.0;
    std::from_chars(digits.data(), end, rounded);
    return EncodeReal(rounded == 0.0 ? 0.0 : rounded);
}

std::string InstanceWriter::Length(double metres) const {
    return number(metres / building_.Units().length);
}

std::string InstanceWriter::Area(double squareMetres, double unit) {
    return number(squareMetres / unit);
}

InstanceId InstanceWriter::Root(const std::string& keyword, const std::string& globalId,
                                const std::string& attributes) {
    return changes_.Add(keyword + "('" + globalId + "'," + owner_ + "," + attributes + ")");
}

InstanceId InstanceWriter::Root(const std::string& keyword, const std::string& attributes) {
    return Root(keyword, NewGlobalId(), attributes);
}

InstanceId InstanceWriter::Axes(const Transform& place) {
    const auto direction = [&](const Vector& v) {
        return Reference(changes_.Add("IFCDIRECTION((" + EncodeReal(v.x) + "," + EncodeReal(v.y) +
                                      "," + EncodeReal(v.z) + "))"));
    };
    const Vector& o = place.origin;
    const InstanceId origin = changes_.Add("IFCCARTESIANPOINT((" + Length(o.x) + "," + Length(o.y) +
                                           "," + Length(o.z) + "))");
    const std::string axes =
        isUpright(place) ? "$,$" : direction(place.z) + "," + direction(place.x);
    return changes_.Add("IFCAXIS2PLACEMENT3D(" + Reference(origin) + "," + axes + ")");
}

InstanceId InstanceWriter::Placement(const std::string& relativeTo, const Transform& place) {
    const InstanceId axes = Axes(place);
    return changes_.Add("IFCLOCALPLACEMENT(" + relativeTo + "," + Reference(axes) + ")");
}

// Closed by its first point.
InstanceId InstanceWriter::polyline(const std::vector<Vector>& points, bool flat) {
    std::vector<InstanceId> ids;
    for (const Vector& point : points) {
        std::string coordinates = Length(point.x) + "," + Length(point.y);
        if (!flat)
            coordinates.append(1, ',').append(Length(point.z));
        ids.push_back(changes_.Add("IFCCARTESIANPOINT((" + coordinates + "))"));
    }
    ids.push_back(ids.front());
    return changes_.Add("IFCPOLYLINE(" + List(ids) + ")");
}

std::vector<InstanceId> InstanceWriter::Representations(const Outline& outline,
                                                        const Transform& place, double height) {
    std::vector<Vector> profile;
    std::vector<Vector> ground;
    for (const Point& point : outline) {
        profile.push_back({point.x, point.y, 0.0});
        ground.push_back(place(profile.back()));
    }
    const InstanceId curve = polyline(profile, true);
    const InstanceId area =
        changes_.Add("IFCARBITRARYCLOSEDPROFILEDEF(.AREA.,$," + Reference(curve) + ")");
    const InstanceId axes = Axes(place);
    const InstanceId up = changes_.Add("IFCDIRECTION((0.,0.,1.))");
    const InstanceId solid =
        changes_.Add("IFCEXTRUDEDAREASOLID(" + Reference(area) + "," + Reference(axes) + "," +
                     Reference(up) + "," + Length(height) + ")");
    // Upright, the footprint is the curve of the profile.
    const InstanceId footprint = isUpright(place) ? curve : polyline(ground, false);
    const InstanceId set = changes_.Add("IFCGEOMETRICCURVESET(" + List({footprint}) + ")");
    const auto shape = [&](Context which, const char* kind, InstanceId item) {
        return changes_.Add("IFCSHAPEREPRESENTATION(" + context(which) + ",'" +
                            contextNames[which] + "','" + kind + "'," + List({item}) + ")");
    };
    return {shape(Body, "SweptSolid", solid), shape(FootPrint, "GeometricCurveSet", set)};
}

InstanceId InstanceWriter::ProductShape(const std::vector<InstanceId>& representations) {
    return changes_.Add("IFCPRODUCTDEFINITIONSHAPE($,$," + List(representations) + ")");
}

void InstanceWriter::Properties(InstanceId room, const std::vector<InstanceId>& properties) {
    const InstanceId set =
        Root("IFCPROPERTYSET", std::string("'") + OwnPropertySet + "',$," + List(properties));
    Root("IFCRELDEFINESBYPROPERTIES", "$,$," + List({room}) + "," + Reference(set));
}

InstanceId InstanceWriter::Property(std::wstring_view name, std::wstring_view value) {
    return changes_.Add("IFCPROPERTYSINGLEVALUE(" + EncodeText(name) + ",$,IFCLABEL(" +
                        EncodeText(value) + "),$)");
}

void InstanceWriter::Quantities(InstanceId room, double squareMetres, double height, bool own) {
    const bool old = building_.Schema() == Schema::Ifc2x3;
    // IFC4 has a formula behind the value.
    const std::string end = old ? ")" : ",$)";
    std::vector<InstanceId> quantities;
    if (height > 0.0)
        quantities.push_back(
            changes_.Add("IFCQUANTITYLENGTH('Height',$,$," + Length(height) + end));
    quantities.push_back(changes_.Add("IFCQUANTITYAREA('NetFloorArea',$,$," +
                                      Area(squareMetres, building_.Units().area) + end));
    const std::string name = own   ? OwnPropertySet
                             : old ? "BaseQuantities"
                                   : "Qto_SpaceBaseQuantities";
    const InstanceId set = Root("IFCELEMENTQUANTITY", "'" + name + "',$,$," + List(quantities));
    Root("IFCRELDEFINESBYPROPERTIES", "$,$," + List({room}) + "," + Reference(set));
}

std::string InstanceWriter::context(Context which) {
    std::string& context = contexts_[which];
    if (context.empty())
        context = findContext(which);
    if (context.empty())
        context = which == FootPrint ? this->context(Body) : newContext();
    return context;
}

// The one that other rooms have, or the one that is made for it, or the model's.
std::string InstanceWriter::findContext(Context which) const {
    const StepFile& file = building_.File();
    for (const Room& room : building_.Rooms()) {
        const Instance space = file.Get(room.instance);
        if (!space[6].IsReference() || !file.Has(space[6].Reference()))
            continue;
        for (const Value member : space.Follow(6)[2]) {
            const Instance representation = file.Get(member);
            if (isNamed(representation[1], contextNames[which]) && representation[0].IsReference())
                return std::string(representation[0].Raw());
        }
    }
    for (const InstanceId id : file.OfType("IFCGEOMETRICREPRESENTATIONSUBCONTEXT"))
        if (isNamed(file.Get(id)[0], contextNames[which]))
            return Reference(id);
    if (which == FootPrint)
        return {};
    const std::vector<InstanceId> contexts = file.OfType("IFCGEOMETRICREPRESENTATIONCONTEXT");
    for (const InstanceId id : contexts)
        if (isNamed(file.Get(id)[1], "Model"))
            return Reference(id);
    return contexts.empty() ? std::string() : Reference(contexts.front());
}

std::string InstanceWriter::newContext() {
    const InstanceId axes = Axes({});
    const InstanceId context = changes_.Add(
        "IFCGEOMETRICREPRESENTATIONCONTEXT($,'Model',3,1.E-05," + Reference(axes) + ",$)");
    for (const InstanceId project : building_.File().OfType("IFCPROJECT"))
        changes_.Set(project, 7, List({context}));
    return Reference(context);
}

} // namespace kalvrooms::ifc
