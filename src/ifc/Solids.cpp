#include "ifc/Solids.h"

#include <algorithm>
#include <iterator>
#include <numbers>
#include <string_view>
#include <utility>

#include "ifc/Curves.h"
#include "ifc/Placements.h"
#include "ifc/Profiles.h"

namespace kalvrooms::ifc {
namespace {

using Faces = std::vector<Polygon>;

constexpr double fullTurn = 2.0 * std::numbers::pi;

Polygon placed(Polygon points, const Transform& place) {
    for (Vector& point : points)
        point = place(point);
    return points;
}

// The faces between two outlines of which one was moved from the other.
void addSides(Faces& faces, const Polygon& from, const Polygon& to) {
    if (from.size() != to.size())
        return;
    for (std::size_t i = 0; i < from.size(); ++i) {
        const std::size_t next = (i + 1) % from.size();
        faces.push_back({from[i], from[next], to[next], to[i]});
    }
}

void addPrism(Geometry& geometry, const Instance& solid, Faces& faces, const Polygon& from,
              const Polygon& to) {
    geometry.Spend(solid.Arguments(), 4 * from.size());
    faces.push_back(from);
    faces.push_back(to);
    addSides(faces, from, to);
}

Faces extruded(Geometry& geometry, const Instance& solid) {
    const Transform place = ReadAxes(geometry, solid[1]);
    const Vector way = Geometry::Direction(solid.Follow(2)) * geometry.Length(solid[3]);
    const std::vector<Polygon> from = ReadProfile(geometry, solid.Follow(0));
    const bool tapered = solid.Is("IFCEXTRUDEDAREASOLIDTAPERED");
    const std::vector<Polygon> to = tapered ? ReadProfile(geometry, solid.Follow(4)) : from;
    if (from.size() != to.size())
        solid.Refuse("the profiles of both ends do not fit each other");
    Transform end = place;
    end.origin = place(way);
    Faces faces;
    for (std::size_t i = 0; i < from.size(); ++i)
        addPrism(geometry, solid, faces, placed(from[i], place), placed(to[i], end));
    return faces;
}

// Turned about an axis by an angle.
Transform turned(const Vector& origin, const Vector& axis, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const auto turn = [&](const Vector& v) {
        return v * c + Cross(axis, v) * s + axis * (Dot(axis, v) * (1.0 - c));
    };
    Transform transform{turn({1, 0, 0}), turn({0, 1, 0}), turn({0, 0, 1}), {}};
    transform.origin = origin - transform.Turn(origin);
    return transform;
}

Faces revolved(Geometry& geometry, const Instance& solid) {
    const Transform place = ReadAxes(geometry, solid[1]);
    const Instance axis = solid.Follow(2);
    const Vector origin = geometry.Point(axis.Follow(0));
    const Vector direction =
        axis[1].IsNull() ? Vector{0, 0, 1} : Geometry::Direction(axis.Follow(1));
    const double angle = std::clamp(geometry.Angle(solid[3]), -fullTurn, fullTurn);
    Faces faces;
    for (const Polygon& profile : ReadProfile(geometry, solid.Follow(0))) {
        double radius = 0.0;
        for (const Vector& point : profile)
            radius = std::max(radius, Length(Cross(point - origin, direction)));
        const int steps = geometry.ArcSteps(radius, angle);
        geometry.Spend(solid.Arguments(), 4 * profile.size() * static_cast<std::size_t>(steps));
        Polygon last = placed(profile, place);
        faces.push_back(last);
        for (int i = 1; i <= steps; ++i) {
            const Transform turn = turned(origin, direction, angle * i / steps);
            Polygon next = placed(profile, place * turn);
            addSides(faces, last, next);
            last = std::move(next);
        }
        faces.push_back(last);
    }
    return faces;
}

// Profiles moved along a curve: each stands across the way there, its X axis as near to the
// reference as can be; without one its Y axis as upright.
Faces sweptAlong(Geometry& geometry, const Instance& solid, const Polygon& directrix,
                 const std::vector<Polygon>& profiles, const Vector& reference = {}) {
    if (directrix.size() < 2)
        solid.Refuse("a directrix with two points at least is expected");
    Faces faces;
    for (const Polygon& profile : profiles) {
        geometry.Spend(solid.Arguments(), 4 * profile.size() * directrix.size());
        Polygon last;
        for (std::size_t i = 0; i < directrix.size(); ++i) {
            const Vector& before = directrix[i == 0 ? 0 : i - 1];
            const Vector& behind = directrix[std::min(i + 1, directrix.size() - 1)];
            Transform place;
            place.origin = directrix[i];
            place.z = Normalized(behind - before);
            const Vector up = std::abs(place.z.z) < 0.99 ? Vector{0, 0, 1} : Vector{0, 1, 0};
            const Vector rest = reference - place.z * Dot(reference, place.z);
            place.x = Normalized(Length(rest) > 1e-9 ? rest : Cross(up, place.z));
            place.y = Cross(place.z, place.x);
            Polygon next = placed(profile, place);
            if (i == 0)
                faces.push_back(next);
            else
                addSides(faces, last, next);
            last = std::move(next);
        }
        faces.push_back(last);
    }
    return faces;
}

Faces sweptCurve(Geometry& geometry, const Instance& solid) {
    const Transform place = ReadAxes(geometry, solid[1]);
    const bool fixed = solid.Is("IFCFIXEDREFERENCESWEPTAREASOLID");
    Faces faces = sweptAlong(geometry, solid, ReadCurve(geometry, solid.Follow(2)),
                             ReadProfile(geometry, solid.Follow(0)),
                             fixed ? Geometry::Direction(solid.Follow(5)) : Vector{});
    for (Polygon& face : faces)
        face = placed(face, place);
    return faces;
}

Faces sweptDisk(Geometry& geometry, const Instance& solid) {
    const double radius = geometry.Length(solid[1]);
    return sweptAlong(geometry, solid, ReadCurve(geometry, solid.Follow(0)),
                      {Arc(geometry, radius, radius, 0.0, fullTurn)});
}

Polygon rectangle(double x, double y) {
    return {{0, 0, 0}, {x, 0, 0}, {x, y, 0}, {0, y, 0}};
}

Polygon raised(Polygon points, double height) {
    for (Vector& point : points)
        point.z += height;
    return points;
}

// A base and a tip above it.
Faces pointed(const Polygon& base, const Vector& tip) {
    Faces faces{base};
    for (std::size_t i = 0; i < base.size(); ++i)
        faces.push_back({base[i], base[(i + 1) % base.size()], tip});
    return faces;
}

Faces primitive(Geometry& geometry, const Instance& solid) {
    const auto length = [&](std::size_t index) { return geometry.Length(solid[index]); };
    const auto circle = [&](double radius) { return Arc(geometry, radius, radius, 0.0, fullTurn); };
    Faces faces;
    if (solid.Is("IFCBLOCK")) {
        const Polygon base = rectangle(length(1), length(2));
        addPrism(geometry, solid, faces, base, raised(base, length(3)));
    } else if (solid.Is("IFCRECTANGULARPYRAMID")) {
        faces = pointed(rectangle(length(1), length(2)), {length(1) / 2, length(2) / 2, length(3)});
    } else if (solid.Is("IFCRIGHTCIRCULARCYLINDER")) {
        const Polygon base = circle(length(2));
        addPrism(geometry, solid, faces, base, raised(base, length(1)));
    } else if (solid.Is("IFCRIGHTCIRCULARCONE")) {
        faces = pointed(circle(length(2)), {0, 0, length(1)});
    } else {
        faces = {circle(length(1))}; // from above a sphere is its equator
    }
    const Transform place = ReadAxes(geometry, solid[0]);
    for (Polygon& face : faces)
        face = placed(face, place);
    return faces;
}

Faces boundingBox(Geometry& geometry, const Instance& box) {
    Transform place;
    place.origin = geometry.Point(box.Follow(0));
    const Polygon base = placed(rectangle(geometry.Length(box[1]), geometry.Length(box[2])), place);
    Faces faces;
    addPrism(geometry, box, faces, base, raised(base, geometry.Length(box[3])));
    return faces;
}

using Reader = Faces (*)(Geometry&, const Instance&);
constexpr std::pair<std::string_view, Reader> readers[] = {
    {"IFCEXTRUDEDAREASOLID", extruded},
    {"IFCEXTRUDEDAREASOLIDTAPERED", extruded},
    {"IFCREVOLVEDAREASOLID", revolved},
    {"IFCREVOLVEDAREASOLIDTAPERED", revolved},
    {"IFCSURFACECURVESWEPTAREASOLID", sweptCurve},
    {"IFCFIXEDREFERENCESWEPTAREASOLID", sweptCurve},
    {"IFCSWEPTDISKSOLID", sweptDisk},
    {"IFCSWEPTDISKSOLIDPOLYGONAL", sweptDisk},
    {"IFCBLOCK", primitive},
    {"IFCRECTANGULARPYRAMID", primitive},
    {"IFCRIGHTCIRCULARCYLINDER", primitive},
    {"IFCRIGHTCIRCULARCONE", primitive},
    {"IFCSPHERE", primitive},
    {"IFCBOUNDINGBOX", boundingBox},
};

} // namespace

std::optional<Faces> ReadSolid(Geometry& geometry, const Instance& solid) {
    const auto* reader = std::find_if(std::begin(readers), std::end(readers),
                                      [&](const auto& known) { return solid.Is(known.first); });
    if (reader == std::end(readers))
        return std::nullopt;
    return reader->second(geometry, solid);
}

} // namespace kalvrooms::ifc
