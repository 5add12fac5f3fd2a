#include "ifc/Geometry.h"

#include <algorithm>

namespace kalvrooms::ifc {
namespace {

constexpr int deepest = 40;
constexpr std::size_t mostPoints = 1'000'000;
constexpr std::size_t mostPointsInAll = 20'000'000;

Vector numbers(const Value& list) {
    double coordinates[3] = {0.0, 0.0, 0.0};
    int count = 0;
    for (const Value value : list) {
        if (count == 3)
            list.Refuse("at most three coordinates are expected");
        coordinates[count++] = value.Untyped().Number();
    }
    if (count < 2)
        list.Refuse("coordinates are expected");
    return {coordinates[0], coordinates[1], coordinates[2]};
}

} // namespace

Vector Geometry::Coordinates(const Value& list) const {
    return numbers(list) * units_.length;
}

Vector Geometry::Point(const Instance& point) const {
    if (!point.Is("IFCCARTESIANPOINT"))
        point.Refuse("a point is expected");
    return Coordinates(point[0]);
}

Polygon Geometry::PointList(const Instance& list) {
    Polygon points;
    for (const Value point : list[0]) {
        Spend(point);
        points.push_back(Coordinates(point));
    }
    return points;
}

Vector Geometry::Direction(const Instance& direction) {
    if (!direction.Is("IFCDIRECTION"))
        direction.Refuse("a direction is expected");
    return Normalized(numbers(direction[0]));
}

int Geometry::ArcSteps(double radius, double angle) const {
    const double error = ChordError();
    // A quarter at least: a small column stays round.
    double step = std::acos(-1.0) / 8.0;
    if (radius > error)
        step = std::min(step, 2.0 * std::acos(1.0 - error / radius));
    return static_cast<int>(std::clamp(std::ceil(std::abs(angle) / step - 1e-9), 1.0, 4096.0));
}

Geometry::Level::Level(Geometry& geometry, const Instance& shape, double scale)
    : geometry_(geometry), scale_(geometry.scale_) {
    if (geometry_.depth_ >= deepest) {
        geometry_.ended_ = true;
        shape.Refuse("the shape is made of too many shapes within each other");
    }
    geometry_.Spend(shape.Arguments());
    ++geometry_.depth_;
    geometry_.scale_ = std::max(scale_ * scale, 1e-6);
}

Geometry::Level::~Level() {
    --geometry_.depth_;
    geometry_.scale_ = scale_;
}

void Geometry::Spend(const Value& place, std::size_t points) {
    spent_ += points;
    spentInAll_ += points;
    const bool tooManyInAll = spentInAll_ > mostPointsInAll + file.Text().size();
    ended_ = ended_ || tooManyInAll || spent_ > mostPoints;
    if (spent_ > mostPoints)
        place.Refuse("the shape has too many points");
    if (tooManyInAll)
        place.Refuse("the shapes of the model have too many points");
}

} // namespace kalvrooms::ifc
