#include "ifc/Profiles.h"

#include <algorithm>
#include <iterator>
#include <numbers>
#include <string_view>
#include <utility>

#include "ifc/Curves.h"
#include "ifc/Placements.h"

namespace kalvrooms::ifc {
namespace {

using Outlines = std::vector<Polygon>;

// A corner that may be rounded.
struct Corner {
    double x;
    double y;
    double radius = 0.0;
};

// The dimensions of a parametrised profile; absent ones are 0.
class Dimensions {
  public:
    Dimensions(const Geometry& geometry, const Instance& profile)
        : geometry_(geometry), profile_(profile) {}
    double operator[](std::size_t index) const {
        const Value value = profile_[index];
        return value.IsNull() ? 0.0 : geometry_.Length(value);
    }

  private:
    const Geometry& geometry_;
    const Instance& profile_;
};

// The arc that rounds a corner; the corner itself where there is no room for it.
void roundCorner(const Geometry& geometry, const Vector& before, const Corner& corner,
                 const Vector& behind, Polygon& outline) {
    const Vector here{corner.x, corner.y, 0.0};
    const Vector in = Normalized(before - here);
    const Vector out = Normalized(behind - here);
    const double half = std::acos(std::clamp(Dot(in, out), -1.0, 1.0)) / 2.0;
    const double cut = half > 1e-6 ? corner.radius / std::tan(half) : 0.0;
    if (corner.radius <= 0.0 || cut <= 0.0 || cut > Length(before - here) ||
        cut > Length(behind - here)) {
        outline.push_back(here);
        return;
    }
    Transform place;
    place.origin = here + Normalized(in + out) * (corner.radius / std::sin(half));
    const Vector from = here + in * cut - place.origin;
    const Vector to = here + out * cut - place.origin;
    const double begin = std::atan2(from.y, from.x);
    const double turn = std::atan2(Cross(from, to).z, Dot(from, to));
    for (const Vector& point : Arc(geometry, corner.radius, corner.radius, begin, begin + turn))
        outline.push_back(place(point));
}

Outlines rounded(const Geometry& geometry, const std::vector<Corner>& corners) {
    Polygon outline;
    const std::size_t count = corners.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Corner& before = corners[(i + count - 1) % count];
        const Corner& behind = corners[(i + 1) % count];
        roundCorner(geometry, {before.x, before.y, 0.0}, corners[i], {behind.x, behind.y, 0.0},
                    outline);
    }
    return {outline};
}

Outlines rectangle(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double x = size[3] / 2;
    const double y = size[4] / 2;
    const double r = profile.Is("IFCROUNDEDRECTANGLEPROFILEDEF")  ? size[5]
                     : profile.Is("IFCRECTANGLEHOLLOWPROFILEDEF") ? size[7]
                                                                  : 0.0;
    return rounded(geometry, {{-x, -y, r}, {x, -y, r}, {x, y, r}, {-x, y, r}});
}

Outlines ellipse(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double radiusY = profile.Is("IFCELLIPSEPROFILEDEF") ? size[4] : size[3];
    Polygon outline = Arc(geometry, size[3], radiusY, 0.0, 2.0 * std::numbers::pi);
    outline.pop_back();
    return {outline};
}

Outlines trapezium(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double left = -size[3] / 2;
    const double y = size[5] / 2;
    return rounded(geometry,
                   {{left, -y}, {-left, -y}, {left + size[6] + size[4], y}, {left + size[6], y}});
}

// Also with flanges that differ: then the upper one has dimensions of its own.
Outlines iShape(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const bool symmetric = profile.Is("IFCISHAPEPROFILEDEF");
    const double below = size[3] / 2;
    const double y = size[4] / 2;
    const double web = size[5] / 2;
    const double flange = size[6];
    const double fillet = size[7];
    const double above = symmetric ? below : size[8] / 2;
    const double upperFlange = symmetric || size[9] == 0.0 ? flange : size[9];
    const double upperFillet = symmetric ? fillet : size[10];
    const double edge = symmetric ? size[8] : 0.0;
    return rounded(geometry, {{-below, -y},
                              {below, -y},
                              {below, -y + flange, edge},
                              {web, -y + flange, fillet},
                              {web, y - upperFlange, upperFillet},
                              {above, y - upperFlange, edge},
                              {above, y},
                              {-above, y},
                              {-above, y - upperFlange, edge},
                              {-web, y - upperFlange, upperFillet},
                              {-web, -y + flange, fillet},
                              {-below, -y + flange, edge}});
}

Outlines lShape(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double y = size[3] / 2;
    const double x = size[4] == 0.0 ? y : size[4] / 2;
    const double thick = size[5];
    return rounded(geometry, {{-x, -y},
                              {x, -y},
                              {x, -y + thick, size[7]},
                              {-x + thick, -y + thick, size[6]},
                              {-x + thick, y, size[7]},
                              {-x, y}});
}

Outlines tShape(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double y = size[3] / 2;
    const double x = size[4] / 2;
    const double web = size[5] / 2;
    const double flange = y - size[6];
    return rounded(geometry, {{-web, -y, size[9]},
                              {web, -y, size[9]},
                              {web, flange, size[7]},
                              {x, flange, size[8]},
                              {x, y},
                              {-x, y},
                              {-x, flange, size[8]},
                              {-web, flange, size[7]}});
}

Outlines uShape(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double y = size[3] / 2;
    const double x = size[4] / 2;
    const double web = -x + size[5];
    const double flange = y - size[6];
    return rounded(geometry, {{-x, -y},
                              {x, -y},
                              {x, -flange, size[8]},
                              {web, -flange, size[7]},
                              {web, flange, size[7]},
                              {x, flange, size[8]},
                              {x, y},
                              {-x, y}});
}

Outlines zShape(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double y = size[3] / 2;
    const double web = size[5] / 2;
    const double x = size[4] / 2;
    const double flange = y - size[6];
    return rounded(geometry, {{-web, -y},
                              {x, -y},
                              {x, -flange, size[8]},
                              {web, -flange, size[7]},
                              {web, y},
                              {-x, y},
                              {-x, flange, size[8]},
                              {-web, flange, size[7]}});
}

Outlines cShape(const Geometry& geometry, const Instance& profile) {
    const Dimensions size(geometry, profile);
    const double y = size[3] / 2;
    const double x = size[4] / 2;
    const double thick = size[5];
    const double lip = y - size[6];
    const double inner = size[7];
    const double outer = inner > 0.0 ? inner + thick : 0.0;
    return rounded(geometry, {{-x, -y, outer},
                              {x, -y, outer},
                              {x, -lip},
                              {x - thick, -lip},
                              {x - thick, -y + thick, inner},
                              {-x + thick, -y + thick, inner},
                              {-x + thick, y - thick, inner},
                              {x - thick, y - thick, inner},
                              {x - thick, lip},
                              {x, lip},
                              {x, y, outer},
                              {-x, y, outer}});
}

using ShapeReader = Outlines (*)(const Geometry&, const Instance&);
constexpr std::pair<std::string_view, ShapeReader> parametrised[] = {
    {"IFCRECTANGLEPROFILEDEF", rectangle},
    {"IFCROUNDEDRECTANGLEPROFILEDEF", rectangle},
    {"IFCRECTANGLEHOLLOWPROFILEDEF", rectangle},
    {"IFCCIRCLEPROFILEDEF", ellipse},
    {"IFCCIRCLEHOLLOWPROFILEDEF", ellipse},
    {"IFCELLIPSEPROFILEDEF", ellipse},
    {"IFCTRAPEZIUMPROFILEDEF", trapezium},
    {"IFCISHAPEPROFILEDEF", iShape},
    {"IFCASYMMETRICISHAPEPROFILEDEF", iShape},
    {"IFCLSHAPEPROFILEDEF", lShape},
    {"IFCTSHAPEPROFILEDEF", tShape},
    {"IFCUSHAPEPROFILEDEF", uShape},
    {"IFCZSHAPEPROFILEDEF", zShape},
    {"IFCCSHAPEPROFILEDEF", cShape},
};

void place(Outlines& outlines, const Transform& transform) {
    for (Polygon& outline : outlines)
        for (Vector& point : outline)
            point = transform(point);
}

Outlines closedCurve(Geometry& geometry, const Instance& profile) {
    Polygon outline = ReadCurve(geometry, profile.Follow(2));
    if (outline.size() > 1 && Length(outline.front() - outline.back()) < 1e-6)
        outline.pop_back();
    return {outline};
}

Outlines composite(Geometry& geometry, const Instance& profile) {
    Outlines outlines;
    for (const Value member : profile[2]) {
        Outlines part = ReadProfile(geometry, geometry.file.Get(member));
        std::move(part.begin(), part.end(), std::back_inserter(outlines));
    }
    return outlines;
}

// A mirrored profile derives its operator: the Y axis is the mirror.
Outlines derived(Geometry& geometry, const Instance& profile) {
    const Transform mirror{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {}};
    const Transform transform =
        profile[3].IsReference() ? ReadOperator(geometry, profile.Follow(3)) : mirror;
    const Geometry::Level level(geometry, profile,
                                std::max(Length(transform.x), Length(transform.y)));
    Outlines outlines = ReadProfile(geometry, profile.Follow(2));
    for (const Polygon& outline : outlines)
        geometry.Spend(profile.Arguments(), outline.size());
    place(outlines, transform);
    return outlines;
}

} // namespace

Outlines ReadProfile(Geometry& geometry, const Instance& profile) {
    const Geometry::Level level(geometry, profile);
    const auto* shape = std::find_if(std::begin(parametrised), std::end(parametrised),
                                     [&](const auto& known) { return profile.Is(known.first); });
    if (shape != std::end(parametrised)) {
        Outlines outlines = shape->second(geometry, profile);
        geometry.Spend(profile.Arguments(), outlines.front().size());
        place(outlines, ReadAxes(geometry, profile[2]));
        return outlines;
    }
    if (profile.Is("IFCARBITRARYCLOSEDPROFILEDEF") || profile.Is("IFCARBITRARYPROFILEDEFWITHVOIDS"))
        return closedCurve(geometry, profile);
    if (profile.Is("IFCCOMPOSITEPROFILEDEF"))
        return composite(geometry, profile);
    if (profile.Is("IFCDERIVEDPROFILEDEF") || profile.Is("IFCMIRROREDPROFILEDEF"))
        return derived(geometry, profile);
    profile.Refuse("a kind of profile that is known is expected");
}

} // namespace kalvrooms::ifc
