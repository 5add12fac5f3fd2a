#include "ifc/JoinOutlines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

namespace kalvrooms::ifc {
namespace {

constexpr double near = 2e-4;
// Below this an outline is a flaw of the model, no ground.
constexpr double leastArea = 1e-4;
// Beyond that crossings are not looked for: it would take too long.
constexpr std::size_t mostCrossingEdges = 6000;
constexpr std::size_t mostBorders = 200;
// A crossing takes as long as eight points of a shape, and so many looks at two edges as one.
constexpr std::size_t crossingCost = 8;
constexpr std::size_t looksPerPoint = 8;

using Vertex = std::uint32_t;
using Edge = std::pair<Vertex, Vertex>;

double cross(const Point& a, const Point& b, const Point& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double distance(const Point& a, const Point& b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

// Points that are near each other become one vertex.
class Vertices {
  public:
    Vertex Find(const Point& point) {
        const Cell here{static_cast<std::int64_t>(std::floor(point.x / near)),
                        static_cast<std::int64_t>(std::floor(point.y / near))};
        for (std::int64_t x = here.first - 1; x <= here.first + 1; ++x) {
            for (std::int64_t y = here.second - 1; y <= here.second + 1; ++y) {
                const auto found = cells_.find({x, y});
                // A cell holds one vertex.
                if (found != cells_.end() &&
                    (found->first == here || distance(points_[found->second], point) < near))
                    return found->second;
            }
        }
        const auto vertex = static_cast<Vertex>(points_.size());
        cells_.emplace(here, vertex);
        points_.push_back(point);
        return vertex;
    }
    const Point& operator[](Vertex vertex) const { return points_[vertex]; }
    std::size_t Count() const { return points_.size(); }

  private:
    using Cell = std::pair<std::int64_t, std::int64_t>;
    struct Hash {
        std::size_t operator()(const Cell& cell) const {
            const auto x = static_cast<std::uint64_t>(cell.first);
            const auto y = static_cast<std::uint64_t>(cell.second);
            return static_cast<std::size_t>(x * 0x9E3779B97F4A7C15u + y * 0xC2B2AE3D27D4EB4Fu);
        }
    };

    std::unordered_map<Cell, Vertex, Hash> cells_;
    std::vector<Point> points_;
};

// The edges of all polygons and lines, cut where they meet.
class Network {
  public:
    explicit Network(const Spending& spend) : spend_(spend) {}

    // An edge between two polygons that stand on its two sides is no border of anything.
    void AddPolygon(Outline polygon) {
        if (SignedArea(polygon) < 0.0)
            std::reverse(polygon.begin(), polygon.end());
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const Vertex from = vertices_.Find(polygon[i]);
            const Vertex to = vertices_.Find(polygon[(i + 1) % polygon.size()]);
            if (from != to && edges_.erase({to, from}) == 0)
                edges_.insert({from, to});
        }
    }

    void AddLine(const Outline& line) {
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            const Vertex from = vertices_.Find(line[i]);
            const Vertex to = vertices_.Find(line[i + 1]);
            if (from != to)
                edges_.insert({from, to});
        }
    }

    std::vector<Outline> Borders() {
        cut();
        for (const auto& [from, to] : edges_) {
            neighbours_[from].emplace_back(angle(from, to), to);
            neighbours_[to].emplace_back(angle(to, from), from);
        }
        for (auto& [vertex, neighbours] : neighbours_)
            std::sort(neighbours.begin(), neighbours.end());
        std::vector<Outline> borders;
        for (const Vertex start : leftmostOfEachPiece())
            addLoops(walkAround(start), borders);
        return borders;
    }

  private:
    // Where an edge is cut, by the part of its way.
    using Cuts = std::map<double, Vertex>;
    // By the angle at which it is seen.
    using Neighbour = std::pair<double, Vertex>;

    double angle(Vertex from, Vertex to) const {
        return std::atan2(vertices_[to].y - vertices_[from].y, vertices_[to].x - vertices_[from].x);
    }

    void cut() {
        std::vector<Edge> edges(edges_.begin(), edges_.end());
        if (edges.size() > mostCrossingEdges)
            return;
        const auto left = [&](const Edge& e) {
            return std::min(vertices_[e.first].x, vertices_[e.second].x);
        };
        const auto right = [&](const Edge& e) {
            return std::max(vertices_[e.first].x, vertices_[e.second].x);
        };
        std::sort(edges.begin(), edges.end(),
                  [&](const Edge& a, const Edge& b) { return left(a) < left(b); });
        std::vector<Cuts> cuts(edges.size());
        for (std::size_t i = 0; i < edges.size(); ++i) {
            const double end = right(edges[i]) + near;
            std::size_t crossings = 0;
            std::size_t j = i + 1;
            for (; j < edges.size() && left(edges[j]) <= end; ++j)
                crossings += meet(edges[i], edges[j], cuts[i], cuts[j]) ? 1 : 0;
            if (spend_)
                spend_(crossings * crossingCost + (j - i) / looksPerPoint);
        }
        edges_.clear();
        for (std::size_t i = 0; i < edges.size(); ++i) {
            Vertex from = edges[i].first;
            cuts[i].emplace(1.0, edges[i].second);
            for (const auto& [part, to] : cuts[i]) {
                if (from != to)
                    edges_.insert(std::minmax(from, to));
                from = to;
            }
        }
    }

    // A vertex that lies on an edge cuts it. Tells whether it is near the edge at all.
    bool cutAt(const Edge& edge, Vertex vertex, Cuts& cuts) const {
        if (vertex == edge.first || vertex == edge.second)
            return true;
        const Point& a = vertices_[edge.first];
        const Point& b = vertices_[edge.second];
        const Point& p = vertices_[vertex];
        const double length = distance(a, b);
        const double along = ((p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y)) / length;
        if (std::abs(cross(a, b, p)) > near * length || along < 0.0 || along > length)
            return false;
        cuts.emplace(along / length, vertex);
        return true;
    }

    // Whether they cross between their ends.
    bool meet(const Edge& e, const Edge& f, Cuts& cutsOfE, Cuts& cutsOfF) {
        const Point a = vertices_[e.first];
        const Point b = vertices_[e.second];
        const Point c = vertices_[f.first];
        const Point d = vertices_[f.second];
        if (std::max(a.y, b.y) + near < std::min(c.y, d.y) ||
            std::max(c.y, d.y) + near < std::min(a.y, b.y))
            return false;
        bool touch = cutAt(e, f.first, cutsOfE);
        touch = cutAt(e, f.second, cutsOfE) || touch;
        touch = cutAt(f, e.first, cutsOfF) || touch;
        touch = cutAt(f, e.second, cutsOfF) || touch;
        const double ofA = cross(c, d, a);
        const double ofB = cross(c, d, b);
        const double ofC = cross(a, b, c);
        const double ofD = cross(a, b, d);
        if (touch || (ofA > 0.0) == (ofB > 0.0) || (ofC > 0.0) == (ofD > 0.0))
            return false;
        const double part = ofA / (ofA - ofB);
        const Vertex vertex = vertices_.Find({a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part});
        cutsOfE.emplace(part, vertex);
        cutsOfF.emplace(ofC / (ofC - ofD), vertex);
        return true;
    }

    std::vector<Vertex> leftmostOfEachPiece() const {
        std::vector<Vertex> starts;
        std::vector<bool> seen(vertices_.Count());
        for (const auto& [first, ignored] : neighbours_) {
            if (seen[first])
                continue;
            Vertex leftmost = first;
            std::vector<Vertex> open{first};
            seen[first] = true;
            while (!open.empty()) {
                const Vertex vertex = open.back();
                open.pop_back();
                if (std::pair(vertices_[vertex].x, vertices_[vertex].y) <
                    std::pair(vertices_[leftmost].x, vertices_[leftmost].y))
                    leftmost = vertex;
                for (const auto& [direction, next] : neighbours_.at(vertex)) {
                    if (!seen[next])
                        open.push_back(next);
                    seen[next] = true;
                }
            }
            starts.push_back(leftmost);
        }
        return starts;
    }

    // The neighbour behind another one, counter-clockwise: what lies outside stays on the right.
    Vertex turn(Vertex at, Vertex from) const {
        const std::vector<Neighbour>& neighbours = neighbours_.at(at);
        const auto next = std::upper_bound(neighbours.begin(), neighbours.end(),
                                           Neighbour(angle(at, from), from));
        return next == neighbours.end() ? neighbours.front().second : next->second;
    }

    std::vector<Vertex> walkAround(Vertex start) const {
        // All neighbours of the leftmost vertex lie to its right; the first one is the lowest.
        const Vertex second = neighbours_.at(start).front().second;
        std::vector<Vertex> way;
        Vertex from = start;
        Vertex to = second;
        do {
            way.push_back(from);
            const Vertex next = turn(to, from);
            from = to;
            to = next;
        } while ((from != start || to != second) && way.size() <= 2 * edges_.size());
        return way;
    }

    // A way around touches itself where pieces hang together by one vertex; each is an outline.
    void addLoops(const std::vector<Vertex>& way, std::vector<Outline>& borders) const {
        std::vector<Vertex> open;
        std::unordered_map<Vertex, std::size_t> place;
        const auto close = [&](std::size_t from) {
            Outline outline;
            for (std::size_t i = from; i < open.size(); ++i)
                outline.push_back(vertices_[open[i]]);
            if (SignedArea(outline) > leastArea)
                borders.push_back(std::move(outline));
        };
        for (const Vertex vertex : way) {
            const auto before = place.find(vertex);
            if (before == place.end()) {
                place.emplace(vertex, open.size());
                open.push_back(vertex);
                continue;
            }
            const std::size_t keep = before->second;
            close(keep);
            for (std::size_t i = keep + 1; i < open.size(); ++i)
                place.erase(open[i]);
            open.resize(keep + 1);
        }
        close(0);
    }

    const Spending& spend_;
    Vertices vertices_;
    std::set<Edge> edges_;
    // Counter-clockwise.
    std::map<Vertex, std::vector<Neighbour>> neighbours_;
};

bool contains(const Outline& outline, const Point& point) {
    bool inside = false;
    for (std::size_t i = 0, j = outline.size() - 1; i < outline.size(); j = i++) {
        const Point& a = outline[i];
        const Point& b = outline[j];
        if ((a.y > point.y) != (b.y > point.y) &&
            point.x < (b.x - a.x) * (point.y - a.y) / (b.y - a.y) + a.x)
            inside = !inside;
    }
    return inside;
}

// Without the points that lie in the middle of a straight line.
Outline withoutStraightPoints(const Outline& outline) {
    constexpr double straight = 1e-4;
    constexpr std::size_t mostLookedBack = 64;
    Outline kept;
    Outline passed; // since the last one kept
    const std::size_t count = outline.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Point& next = outline[(i + 1) % count];
        passed.push_back(outline[i]);
        const Point& from = kept.empty() ? outline[count - 1] : kept.back();
        const double length = distance(from, next);
        const bool inLine = passed.size() < mostLookedBack &&
                            std::all_of(passed.begin(), passed.end(), [&](const Point& point) {
                                const double along = (point.x - from.x) * (next.x - from.x) +
                                                     (point.y - from.y) * (next.y - from.y);
                                return std::abs(cross(from, next, point)) <= straight * length &&
                                       along > 0.0 && along < length * length;
                            });
        if (inLine)
            continue;
        kept.push_back(outline[i]);
        passed.clear();
    }
    return kept;
}

} // namespace

double SignedArea(const Outline& outline) {
    double twice = 0.0;
    for (std::size_t i = 1; i + 1 < outline.size(); ++i)
        twice += cross(outline[0], outline[i], outline[i + 1]);
    return twice / 2.0;
}

std::vector<Outline> JoinOutlines(const std::vector<Outline>& polygons,
                                  const std::vector<Outline>& lines, const Spending& spend) {
    Network network(spend);
    for (const Outline& polygon : polygons)
        network.AddPolygon(polygon);
    for (const Outline& line : lines)
        network.AddLine(line);
    std::vector<Outline> borders = network.Borders();
    std::stable_sort(borders.begin(), borders.end(), [](const Outline& a, const Outline& b) {
        return SignedArea(a) > SignedArea(b);
    });
    // Crumbs beside the largest ones are no ground.
    borders.resize(std::min(borders.size(), mostBorders));
    std::vector<Outline> outlines;
    for (const Outline& border : borders) {
        const bool within =
            std::any_of(outlines.begin(), outlines.end(),
                        [&](const Outline& outline) { return contains(outline, border.front()); });
        Outline plain = withoutStraightPoints(border);
        if (!within && plain.size() >= 3)
            outlines.push_back(std::move(plain));
    }
    return outlines;
}

} // namespace kalvrooms::ifc
