#include "ifc/GroundOutline.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kalvrooms::ifc {
namespace {

// A level: faces that differ by less are one.
constexpr double levelHeight = 0.01;
// Beyond the reach of any map; what lies there is a flaw of the file.
constexpr double farthest = 1e8;

struct SeenFace {
    Outline outline;
    double area = 0.0;
    double bottom = std::numeric_limits<double>::max();
    double top = std::numeric_limits<double>::lowest();

    bool IsFlat() const { return top - bottom < levelHeight; }
};

Outline fromAbove(const Polygon& points) {
    Outline outline;
    for (const Vector& point : points)
        outline.push_back({point.x, point.y});
    return outline;
}

bool isReachable(const Polygon& points) {
    return std::all_of(
        points.begin(), points.end(),
        [](const Vector& point) {
            return std::abs(point.x) < farthest && std::abs(point.y) < farthest &&
                   std::abs(point.z) < farthest;
        });
}

std::vector<SeenFace> facesOf(const Part& part) {
    std::vector<SeenFace> faces;
    for (const Polygon& points : part.faces) {
        if (points.size() < 3 || !isReachable(points))
            continue;
        SeenFace face;
        face.outline = fromAbove(points);
        face.area = std::abs(SignedArea(face.outline));
        for (const Vector& point : points) {
            face.bottom = std::min(face.bottom, point.z);
            face.top = std::max(face.top, point.z);
        }
        faces.push_back(std::move(face));
    }
    return faces;
}

// Leaves the faces that are the ground.
void keepGround(std::vector<SeenFace>& faces) {
    constexpr double leastSeen = 1e-9;
    double lowest = std::numeric_limits<double>::max();
    double lowestFlat = lowest;
    double seen = 0.0;
    for (const SeenFace& face : faces) {
        lowest = std::min(lowest, face.bottom);
        if (face.IsFlat() && face.area > leastSeen)
            lowestFlat = std::min(lowestFlat, face.bottom);
        seen += face.area;
    }
    const auto isGround = [&](const SeenFace& face) {
        return face.IsFlat() && face.bottom < lowestFlat + levelHeight;
    };
    double ground = 0.0;
    for (const SeenFace& face : faces)
        ground += isGround(face) ? face.area : 0.0;
    // A closed body is seen twice, from above and from below.
    const bool whole = lowestFlat > lowest + 5 * levelHeight || ground < 0.5 * seen / 2.0;
    std::erase_if(faces, [&](const SeenFace& face) {
        return face.area <= leastSeen || (!whole && !isGround(face));
    });
}

} // namespace

std::optional<Ground> GroundOutline(const std::vector<Part>& parts, const Spending& spend) {
    Ground ground;
    ground.bottom = std::numeric_limits<double>::max();
    ground.top = std::numeric_limits<double>::lowest();
    std::vector<Outline> polygons;
    std::vector<Outline> lines;
    for (const Part& part : parts) {
        std::vector<SeenFace> faces = facesOf(part);
        for (const SeenFace& face : faces) {
            ground.bottom = std::min(ground.bottom, face.bottom);
            ground.top = std::max(ground.top, face.top);
        }
        keepGround(faces);
        for (SeenFace& face : faces)
            polygons.push_back(std::move(face.outline));
        for (const Polygon& line : part.lines)
            if (isReachable(line))
                lines.push_back(fromAbove(line));
    }
    // A single line that was left open means to be closed.
    if (polygons.empty() && lines.size() == 1 && lines.front().size() > 2)
        lines.front().push_back(lines.front().front());
    const std::vector<Outline> outlines = JoinOutlines(polygons, lines, spend);
    if (outlines.empty())
        return std::nullopt;
    ground.outline = outlines.front();
    ground.outlines = outlines.size();
    return ground;
}

} // namespace kalvrooms::ifc
