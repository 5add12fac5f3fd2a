#include "ifc/Curves.h"

#include <algorithm>
#include <iterator>
#include <numbers>
#include <optional>
#include <string_view>
#include <utility>

#include "ifc/BSpline.h"
#include "ifc/Placements.h"

namespace kalvrooms::ifc {
namespace {

constexpr double fullTurn = 2.0 * std::numbers::pi;

// Appends a piece to a chain; the point that both share stands there once.
void join(Polygon& chain, const Polygon& piece) {
    auto first = piece.begin();
    if (!chain.empty() && first != piece.end() && Length(chain.back() - *first) < 1e-6)
        ++first;
    chain.insert(chain.end(), first, piece.end());
}

Polygon placed(Polygon points, const Transform& place) {
    for (Vector& point : points)
        point = place(point);
    return points;
}

// The arc through three points; the straight way where they lie in a line.
Polygon arcThrough(const Geometry& geometry, const Vector& a, const Vector& b, const Vector& c) {
    const Vector u = b - a;
    const Vector v = c - a;
    const Vector normal = Cross(u, v);
    const double square = Dot(normal, normal);
    if (square < 1e-12 * Dot(u, u) * Dot(v, v) || square == 0.0)
        return {a, b, c};
    const Vector toCentre =
        (Cross(normal, u) * Dot(v, v) + Cross(v, normal) * Dot(u, u)) * (0.5 / square);
    Transform place;
    place.origin = a + toCentre;
    place.z = Normalized(normal);
    place.x = Normalized(toCentre * -1.0);
    place.y = Cross(place.z, place.x);
    const auto angleOf = [&](const Vector& point) {
        const double angle =
            std::atan2(Dot(point - place.origin, place.y), Dot(point - place.origin, place.x));
        return angle < 0.0 ? angle + fullTurn : angle;
    };
    const double radius = Length(toCentre);
    Polygon arc = placed(Arc(geometry, radius, radius, 0.0, angleOf(c)), place);
    arc.front() = a;
    arc.back() = c;
    return arc;
}

Polygon indexedCurve(Geometry& geometry, const Instance& curve) {
    const Polygon points = geometry.PointList(curve.Follow(0));
    if (curve[1].IsNull())
        return points;
    Polygon chain;
    for (const Value segment : curve[1]) {
        Polygon corners;
        for (const Value index : segment.Untyped()) {
            const std::int64_t number = index.Integer();
            if (number < 1 || number > static_cast<std::int64_t>(points.size()))
                index.Refuse("the index of a point is expected");
            geometry.Spend(index);
            corners.push_back(points[static_cast<std::size_t>(number - 1)]);
        }
        if (segment.Type() == "IFCARCINDEX" && corners.size() == 3)
            corners = arcThrough(geometry, corners[0], corners[1], corners[2]);
        join(chain, corners);
    }
    return chain;
}

Polygon compositeCurve(Geometry& geometry, const Instance& curve) {
    Polygon chain;
    for (const Value member : curve[0]) {
        const Instance segment = geometry.file.Get(member);
        if (!segment.Is("IFCCOMPOSITECURVESEGMENT") &&
            !segment.Is("IFCREPARAMETRISEDCOMPOSITECURVESEGMENT"))
            segment.Refuse("a segment of a composite curve is expected");
        Polygon piece = ReadCurve(geometry, segment.Follow(2));
        geometry.Spend(member, piece.size());
        if (piece.empty())
            continue;
        if (!segment[1].IsTrue())
            std::reverse(piece.begin(), piece.end());
        // Some programs mistake the sense; what goes on from the chain's end is right.
        if (!chain.empty() && Length(chain.back() - piece.front()) > 1e-3 &&
            Length(chain.back() - piece.back()) < 1e-3)
            std::reverse(piece.begin(), piece.end());
        join(chain, piece);
    }
    return chain;
}

struct Conic {
    Transform place;
    double radiusX;
    double radiusY;

    double AngleOf(const Vector& point) const {
        const Vector inside = point - place.origin;
        return std::atan2(Dot(inside, place.y) / radiusY, Dot(inside, place.x) / radiusX);
    }
};

std::optional<Conic> readConic(Geometry& geometry, const Instance& curve) {
    const bool circle = curve.Is("IFCCIRCLE");
    if (!circle && !curve.Is("IFCELLIPSE"))
        return std::nullopt;
    const double radius = geometry.Length(curve[1]);
    Conic conic{ReadAxes(geometry, curve[0]), radius, circle ? radius : geometry.Length(curve[2])};
    if (!(conic.radiusX > 0.0) || !(conic.radiusY > 0.0))
        curve.Refuse("a radius greater than 0 is expected");
    return conic;
}

Polygon wholeConic(Geometry& geometry, const Instance& curve) {
    const auto conic = readConic(geometry, curve);
    return placed(Arc(geometry, conic->radiusX, conic->radiusY, 0.0, fullTurn), conic->place);
}

Polygon conicPiece(const Geometry& geometry, const Conic& conic, double from, double to,
                   bool sameSense) {
    // The turn goes on in its sense until it is there; equal ends are a whole turn.
    double angle = std::fmod(sameSense ? to - from : from - to, fullTurn);
    if (angle < 1e-9)
        angle += fullTurn;
    return placed(
        Arc(geometry, conic.radiusX, conic.radiusY, from, from + (sameSense ? angle : -angle)),
        conic.place);
}

// Where a curve is trimmed: by a parameter, by a point, or by both of which one is preferred.
struct Trim {
    std::optional<double> parameter;
    std::optional<Vector> point;
};

Trim readTrim(const Geometry& geometry, const Value& select, bool preferParameter) {
    Trim trim;
    for (const Value value : select)
        if (value.IsReference())
            trim.point = geometry.Point(geometry.file.Get(value));
        else
            trim.parameter = value.Untyped().Number();
    if (trim.point && trim.parameter)
        preferParameter ? trim.point.reset() : trim.parameter.reset();
    if (!trim.point && !trim.parameter)
        select.Refuse("a trimming point is expected");
    return trim;
}

Vector onLine(const Geometry& geometry, const Instance& line, const Trim& trim) {
    if (trim.point)
        return *trim.point;
    const Instance vector = line.Follow(1);
    return geometry.Point(line.Follow(0)) +
           Geometry::Direction(vector.Follow(0)) * (geometry.Length(vector[1]) * *trim.parameter);
}

// The place on a chain nearest to a point, as an index and the part of the way to the next.
double nearest(const Polygon& chain, const Vector& point) {
    double best = 0.0;
    double shortest = -1.0;
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) {
        const Vector way = chain[i + 1] - chain[i];
        const double square = Dot(way, way);
        const double part =
            square > 0.0 ? std::clamp(Dot(point - chain[i], way) / square, 0.0, 1.0) : 0.0;
        const double distance = Length(chain[i] + way * part - point);
        if (shortest < 0.0 || distance < shortest) {
            shortest = distance;
            best = static_cast<double>(i) + part;
        }
    }
    return best;
}

Polygon piece(const Polygon& chain, double from, double to) {
    const double last = static_cast<double>(chain.size()) - 1.0;
    from = std::clamp(from, 0.0, last);
    to = std::clamp(to, 0.0, last);
    const bool backwards = from > to;
    if (backwards)
        std::swap(from, to);
    const auto at = [&](double place) {
        const std::size_t i = static_cast<std::size_t>(place);
        const double part = place - static_cast<double>(i);
        return part > 0.0 ? chain[i] + (chain[i + 1] - chain[i]) * part : chain[i];
    };
    Polygon points{at(from)};
    for (double i = std::floor(from) + 1.0; i < to; i += 1.0)
        points.push_back(chain[static_cast<std::size_t>(i)]);
    points.push_back(at(to));
    if (backwards)
        std::reverse(points.begin(), points.end());
    return points;
}

// Whether one more of its parameter is the next of its points: the parameter of an arc is an angle.
// For curves that were read before, so that they are made of finitely many.
bool countsItsPoints(const Instance& curve) {
    if (curve.Is("IFCPOLYLINE"))
        return true;
    if (curve.Is("IFCINDEXEDPOLYCURVE"))
        return curve[1].IsNull();
    if (!curve.Is("IFCCOMPOSITECURVE") && !curve.Is("IFC2DCOMPOSITECURVE"))
        return false;
    for (const Value member : curve[0]) {
        const Instance segment = member.File().Get(member);
        if (!segment.Is("IFCCOMPOSITECURVESEGMENT") || !countsItsPoints(segment.Follow(2)))
            return false;
    }
    return true;
}

Polygon trimmedCurve(Geometry& geometry, const Instance& curve) {
    const Instance basis = curve.Follow(0);
    const bool preferParameter = !curve[4].IsNull() && curve[4].Word() != "CARTESIAN";
    const Trim from = readTrim(geometry, curve[1], preferParameter);
    const Trim to = readTrim(geometry, curve[2], preferParameter);
    const bool sameSense = curve[3].IsTrue();
    if (basis.Is("IFCLINE"))
        return {onLine(geometry, basis, from), onLine(geometry, basis, to)};
    if (const auto conic = readConic(geometry, basis)) {
        const auto angle = [&](const Trim& trim, const Value& select) {
            if (trim.point)
                return conic->AngleOf(*trim.point);
            for (const Value value : select)
                if (!value.IsReference())
                    return geometry.Angle(value);
            return 0.0;
        };
        return conicPiece(geometry, *conic, angle(from, curve[1]), angle(to, curve[2]), sameSense);
    }
    const Polygon chain = ReadCurve(geometry, basis);
    if (chain.size() < 2)
        basis.Refuse("a curve that can be trimmed is expected");
    // A polyline counts its points; a spline was sampled in equal steps of its parameter.
    const auto range = SplineRange(basis);
    if ((!from.point || !to.point) && !range && !countsItsPoints(basis))
        curve.Refuse("points are expected where a curve of several kinds is trimmed");
    const auto place = [&](const Trim& trim) {
        if (trim.point)
            return nearest(chain, *trim.point);
        if (!range)
            return *trim.parameter;
        return (*trim.parameter - range->first) / (range->second - range->first) *
               static_cast<double>(chain.size() - 1);
    };
    return piece(chain, place(from), place(to));
}

Polygon surfaceCurve(Geometry& geometry, const Instance& curve) {
    return ReadCurve(geometry, curve.Follow(0));
}

using Reader = Polygon (*)(Geometry&, const Instance&);
constexpr std::pair<std::string_view, Reader> readers[] = {
    {"IFCPOLYLINE", Polyline},
    {"IFCINDEXEDPOLYCURVE", indexedCurve},
    {"IFCCOMPOSITECURVE", compositeCurve},
    {"IFC2DCOMPOSITECURVE", compositeCurve},
    {"IFCCOMPOSITECURVEONSURFACE", compositeCurve},
    {"IFCBOUNDARYCURVE", compositeCurve},
    {"IFCOUTERBOUNDARYCURVE", compositeCurve},
    {"IFCTRIMMEDCURVE", trimmedCurve},
    {"IFCCIRCLE", wholeConic},
    {"IFCELLIPSE", wholeConic},
    {"IFCBSPLINECURVEWITHKNOTS", SplineCurve},
    {"IFCRATIONALBSPLINECURVEWITHKNOTS", SplineCurve},
    {"IFCBEZIERCURVE", SplineCurve},
    {"IFCRATIONALBEZIERCURVE", SplineCurve},
    {"IFCSURFACECURVE", surfaceCurve},
    {"IFCINTERSECTIONCURVE", surfaceCurve},
    {"IFCSEAMCURVE", surfaceCurve},
};

} // namespace

Polygon Polyline(Geometry& geometry, const Instance& instance) {
    Polygon points;
    for (const Value point : instance[0]) {
        geometry.Spend(point);
        points.push_back(geometry.Point(geometry.file.Get(point)));
    }
    return points;
}

Polygon Arc(const Geometry& geometry, double radiusX, double radiusY, double from, double to) {
    const int steps = geometry.ArcSteps(std::max(radiusX, radiusY), to - from);
    Polygon points;
    for (int i = 0; i <= steps; ++i) {
        const double angle = from + (to - from) * i / steps;
        points.push_back({radiusX * std::cos(angle), radiusY * std::sin(angle), 0.0});
    }
    return points;
}

Polygon ReadCurve(Geometry& geometry, const Instance& curve) {
    const Geometry::Level level(geometry, curve);
    const auto* reader = std::find_if(std::begin(readers), std::end(readers),
                                      [&](const auto& known) { return curve.Is(known.first); });
    if (reader == std::end(readers))
        curve.Refuse("a kind of curve that is known is expected");
    Polygon points = reader->second(geometry, curve);
    geometry.Spend(curve.Arguments(), points.size());
    return points;
}

Polygon ReadCurveBetween(Geometry& geometry, const Instance& curve, const Vector& from,
                         const Vector& to, bool sameSense) {
    const Geometry::Level level(geometry, curve);
    if (curve.Is("IFCLINE"))
        return {from, to};
    if (const auto conic = readConic(geometry, curve))
        return conicPiece(geometry, *conic, conic->AngleOf(from), conic->AngleOf(to), sameSense);
    const Polygon chain = ReadCurve(geometry, curve);
    if (chain.size() < 2)
        return {from, to};
    return piece(chain, nearest(chain, from), nearest(chain, to));
}

} // namespace kalvrooms::ifc
