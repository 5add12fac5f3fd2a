#include "ifc/BSpline.h"

#include <algorithm>
#include <vector>

namespace kalvrooms::ifc {
namespace {

constexpr std::int64_t highestDegree = 24;

struct Weighted {
    Vector point; // times its weight
    double weight = 1.0;
};

bool isBezier(const Instance& curve) {
    return curve.Is("IFCBEZIERCURVE") || curve.Is("IFCRATIONALBEZIERCURVE");
}

bool isSpline(const Instance& curve) {
    return curve.Is("IFCBSPLINECURVEWITHKNOTS") || curve.Is("IFCRATIONALBSPLINECURVEWITHKNOTS");
}

std::size_t degreeOf(const Instance& curve) {
    const std::int64_t degree = curve[0].Integer();
    if (degree < 1 || degree > highestDegree)
        curve.Refuse("a degree from 1 to 24 is expected");
    return static_cast<std::size_t>(degree);
}

// Bézier curves that go on in each other meet in knots that stand there degree times.
std::vector<double> bezierKnots(std::size_t points, std::size_t degree) {
    std::vector<double> knots(degree + 1, 0.0);
    double value = 1.0;
    for (std::size_t i = degree; i < points; i += degree, value += 1.0)
        knots.insert(knots.end(), degree, value);
    knots.push_back(knots.back());
    return knots;
}

std::vector<double> listedKnots(const Instance& curve, std::size_t points, std::size_t degree) {
    std::vector<double> knots;
    Value::Iterator value = curve[6].begin();
    for (const Value multiplicity : curve[5]) {
        const std::int64_t times = multiplicity.Integer();
        if (times < 1 || times > static_cast<std::int64_t>(points + degree + 1) ||
            value == curve[6].end())
            multiplicity.Refuse("a knot for each multiplicity is expected");
        knots.insert(knots.end(), static_cast<std::size_t>(times), (*value).Untyped().Number());
        ++value;
    }
    return knots;
}

std::vector<double> readKnots(const Instance& curve, std::size_t points, std::size_t degree) {
    std::vector<double> knots =
        isBezier(curve) ? bezierKnots(points, degree) : listedKnots(curve, points, degree);
    if (knots.size() != points + degree + 1 || !std::is_sorted(knots.begin(), knots.end()))
        curve.Refuse("the knots do not fit the points");
    return knots;
}

std::vector<Weighted> readPoints(Geometry& geometry, const Instance& curve) {
    std::vector<Weighted> points;
    for (const Value point : curve[1]) {
        geometry.Spend(point);
        points.push_back({geometry.Point(geometry.file.Get(point)), 1.0});
    }
    const std::size_t weights = curve.Is("IFCRATIONALBEZIERCURVE")             ? 5
                                : curve.Is("IFCRATIONALBSPLINECURVEWITHKNOTS") ? 8
                                                                               : 0;
    if (weights) {
        std::size_t i = 0;
        for (const Value value : curve[weights]) {
            const double weight = value.Untyped().Number();
            if (i == points.size() || !(weight > 0.0))
                value.Refuse("a weight greater than 0 for each point is expected");
            points[i] = {points[i].point * weight, weight};
            ++i;
        }
    }
    return points;
}

// De Boor: `span` is the knot before the parameter.
Vector at(const std::vector<Weighted>& points, const std::vector<double>& knots, std::size_t degree,
          std::size_t span, double parameter) {
    std::vector<Weighted> d(points.begin() + static_cast<std::ptrdiff_t>(span - degree),
                            points.begin() + static_cast<std::ptrdiff_t>(span + 1));
    for (std::size_t level = 1; level <= degree; ++level) {
        for (std::size_t j = degree; j >= level; --j) {
            const double left = knots[span - degree + j];
            const double right = knots[span + 1 + j - level];
            const double part = right > left ? (parameter - left) / (right - left) : 0.0;
            d[j] = {d[j - 1].point * (1.0 - part) + d[j].point * part,
                    d[j - 1].weight * (1.0 - part) + d[j].weight * part};
        }
    }
    return d[degree].point * (1.0 / d[degree].weight);
}

// So many steps a span keep within the chord error, from how far the points leave the straight.
std::size_t stepsOfSpan(const Geometry& geometry, const std::vector<Weighted>& points,
                        std::size_t degree) {
    double bend = 0.0;
    for (std::size_t i = 0; i + 2 < points.size(); ++i) {
        const auto plain = [&](std::size_t k) { return points[k].point * (1 / points[k].weight); };
        bend = std::max(bend, Length(plain(i) - plain(i + 1) * 2.0 + plain(i + 2)));
    }
    const double steps =
        std::sqrt(static_cast<double>(degree * (degree - 1)) * bend / (8 * geometry.ChordError()));
    return static_cast<std::size_t>(std::clamp(std::ceil(steps), 1.0, 200.0));
}

} // namespace

std::optional<std::pair<double, double>> SplineRange(const Instance& curve) {
    if (!isBezier(curve) && !isSpline(curve))
        return std::nullopt;
    const std::size_t degree = degreeOf(curve);
    const std::size_t points = curve[1].Count();
    if (points <= degree)
        curve.Refuse("more points than the degree are expected");
    const std::vector<double> knots = readKnots(curve, points, degree);
    if (!(knots[degree] < knots[points]))
        curve.Refuse("knots that grow are expected");
    return std::pair(knots[degree], knots[points]);
}

Polygon SplineCurve(Geometry& geometry, const Instance& curve) {
    const auto [first, last] = *SplineRange(curve);
    const std::size_t degree = degreeOf(curve);
    const std::vector<Weighted> points = readPoints(geometry, curve);
    const std::vector<double> knots = readKnots(curve, points.size(), degree);
    const std::size_t steps = std::min<std::size_t>(
        stepsOfSpan(geometry, points, degree) * (points.size() - degree), 20000);
    geometry.Spend(curve.Arguments(), steps * degree * degree);
    Polygon chain;
    std::size_t span = degree;
    for (std::size_t i = 0; i <= steps; ++i) {
        const double parameter =
            first + (last - first) * static_cast<double>(i) / static_cast<double>(steps);
        while (span + 1 < points.size() && knots[span + 1] <= parameter)
            ++span;
        chain.push_back(at(points, knots, degree, span, parameter));
    }
    return chain;
}

} // namespace kalvrooms::ifc
