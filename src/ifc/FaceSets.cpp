#include "ifc/FaceSets.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "ifc/Curves.h"

namespace kalvrooms::ifc {
namespace {

using Faces = std::vector<Polygon>;

Vector vertex(const Geometry& geometry, const Instance& edge, std::size_t end) {
    const Instance point = edge.Follow(end);
    if (!point.Is("IFCVERTEXPOINT"))
        point.Refuse("a vertex with a point is expected");
    return geometry.Point(point.Follow(0));
}

Polygon edgeLoop(Geometry& geometry, const Instance& loop) {
    Polygon points;
    for (const Value member : loop[0]) {
        const Instance oriented = geometry.file.Get(member);
        const Instance edge = oriented.Follow(2);
        const Vector from = vertex(geometry, edge, 0);
        const Vector to = vertex(geometry, edge, 1);
        geometry.Spend(member, 2);
        Polygon way = edge.Is("IFCEDGECURVE")
                          ? ReadCurveBetween(geometry, edge.Follow(2), from, to, edge[3].IsTrue())
                          : Polygon{from, to};
        geometry.Spend(member, way.size());
        if (!oriented[3].IsTrue())
            std::reverse(way.begin(), way.end());
        // The next edge begins where this one ends.
        points.insert(points.end(), way.begin(), way.end() - 1);
    }
    return points;
}

// The outer bound of a face; without one that says so, the first.
Polygon face(Geometry& geometry, const Instance& face) {
    std::optional<Instance> outer;
    for (const Value member : face[0]) {
        const Instance bound = geometry.file.Get(member);
        if (!outer || bound.Is("IFCFACEOUTERBOUND"))
            outer = bound;
    }
    if (!outer)
        face.Refuse("a face with a bound is expected");
    const Instance loop = outer->Follow(0);
    if (loop.Is("IFCPOLYLOOP"))
        return Polyline(geometry, loop);
    if (loop.Is("IFCEDGELOOP"))
        return edgeLoop(geometry, loop);
    return {}; // a single vertex, as a cone has one
}

// A connected face set, as shells are too.
void addFaceSet(Geometry& geometry, const Instance& set, Faces& faces) {
    for (const Value member : set[0]) {
        geometry.Spend(member);
        faces.push_back(face(geometry, geometry.file.Get(member)));
    }
}

// Voids within stay out.
Faces brep(Geometry& geometry, const Instance& shape) {
    Faces faces;
    addFaceSet(geometry, shape.Follow(0), faces);
    return faces;
}

Faces surfaceModel(Geometry& geometry, const Instance& shape) {
    Faces faces;
    for (const Value set : shape[0])
        addFaceSet(geometry, geometry.file.Get(set), faces);
    return faces;
}

Faces faceSet(Geometry& geometry, const Instance& shape) {
    Faces faces;
    addFaceSet(geometry, shape, faces);
    return faces;
}

// Points by their number, perhaps by way of a list of numbers.
class IndexedPoints {
  public:
    IndexedPoints(Geometry& geometry, const Instance& shape, std::size_t numbers)
        : geometry_(geometry), points_(geometry.PointList(shape.Follow(0))) {
        // The first IFC4 had numbers of normals in that place, in lists.
        if (shape[numbers].IsNull() || shape[numbers][0].IsList())
            return;
        for (const Value number : shape[numbers])
            numbers_.push_back(indexOf(number, points_.size()));
    }

    Polygon Face(const Value& indices) const {
        Polygon face;
        for (const Value index : indices) {
            geometry_.Spend(index);
            face.push_back(points_[numbers_.empty() ? indexOf(index, points_.size())
                                                    : numbers_[indexOf(index, numbers_.size())]]);
        }
        return face;
    }

  private:
    static std::size_t indexOf(const Value& value, std::size_t count) {
        const std::int64_t number = value.Integer();
        if (number < 1 || number > static_cast<std::int64_t>(count))
            value.Refuse("the index of a point is expected");
        return static_cast<std::size_t>(number - 1);
    }

    Geometry& geometry_;
    Polygon points_;
    std::vector<std::size_t> numbers_;
};

Faces triangles(Geometry& geometry, const Instance& shape) {
    const IndexedPoints points(geometry, shape, 4);
    Faces faces;
    for (const Value triangle : shape[3])
        faces.push_back(points.Face(triangle));
    return faces;
}

Faces polygons(Geometry& geometry, const Instance& shape) {
    const IndexedPoints points(geometry, shape, 3);
    Faces faces;
    for (const Value member : shape[2])
        faces.push_back(points.Face(geometry.file.Get(member)[0]));
    return faces;
}

using Reader = Faces (*)(Geometry&, const Instance&);
constexpr std::pair<std::string_view, Reader> readers[] = {
    {"IFCFACETEDBREP", brep},
    {"IFCFACETEDBREPWITHVOIDS", brep},
    {"IFCADVANCEDBREP", brep},
    {"IFCADVANCEDBREPWITHVOIDS", brep},
    {"IFCSHELLBASEDSURFACEMODEL", surfaceModel},
    {"IFCFACEBASEDSURFACEMODEL", surfaceModel},
    {"IFCCONNECTEDFACESET", faceSet},
    {"IFCCLOSEDSHELL", faceSet},
    {"IFCOPENSHELL", faceSet},
    {"IFCTRIANGULATEDFACESET", triangles},
    {"IFCTRIANGULATEDIRREGULARNETWORK", triangles},
    {"IFCPOLYGONALFACESET", polygons},
};

} // namespace

std::optional<Faces> ReadFaces(Geometry& geometry, const Instance& shape) {
    const auto* reader = std::find_if(std::begin(readers), std::end(readers),
                                      [&](const auto& known) { return shape.Is(known.first); });
    if (reader == std::end(readers))
        return std::nullopt;
    return reader->second(geometry, shape);
}

} // namespace kalvrooms::ifc
