#include "drawing/DrawingScene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace kalvrooms::practice {

namespace {

// Light enough for black and red letters, far enough apart to be told at a glance.
constexpr std::array<std::int32_t, 8> Tints = {0xBFE3FD, 0xF9E1C9, 0xC9EED1, 0xDDCBF7,
                                               0xF5D6E4, 0xE8EEC4, 0xB9D3EA, 0xE2E2E2};
// The mean width of a letter and the distance of lines, in font sizes.
constexpr double LetterWidth = 0.56;
constexpr double LineHeight = 1.22;
constexpr double LabelMargin = 0.84;

struct Box {
    double left = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();
    double bottom = std::numeric_limits<double>::infinity();
    double top = -std::numeric_limits<double>::infinity();

    void Take(const Point& point) {
        left = std::min(left, point.x);
        right = std::max(right, point.x);
        bottom = std::min(bottom, point.y);
        top = std::max(top, point.y);
    }
    void Take(const Outline& outline) {
        for (const Point& point : outline)
            Take(point);
    }
    // Makes room for the outlines to the right, where the user will most likely want them.
    void TakeBeside(const std::vector<Outline>& outlines) {
        Box others;
        for (const Outline& outline : outlines)
            others.Take(outline);
        if (others.Empty())
            return;
        const Point corner = Empty() ? Point{others.left, others.bottom} : Point{right + 1, bottom};
        Take(corner);
        Take(Point{corner.x + (others.right - others.left),
                   corner.y + (others.top - others.bottom)});
    }
    bool Empty() const { return left > right; }
};

Box BoxOf(const Outline& outline) {
    Box box;
    box.Take(outline);
    return box;
}

View Fit(const Box& box, const Frame& frame) {
    if (box.Empty())
        return {1.0, {frame.left + frame.width / 2, frame.top + frame.height / 2}};
    // Halves: the extent of a drawing at the edge of what numbers can say would overflow.
    const double halfWidth = box.right / 2 - box.left / 2;
    const double halfHeight = box.top / 2 - box.bottom / 2;
    double scale = std::numeric_limits<double>::infinity();
    if (halfWidth > 0)
        scale = std::min(scale, frame.width / 2 / halfWidth);
    if (halfHeight > 0)
        scale = std::min(scale, frame.height / 2 / halfHeight);
    if (!std::isfinite(scale))
        scale = 1.0;
    const Point middle{box.left + halfWidth, box.bottom + halfHeight};
    return {scale,
            {frame.left + frame.width / 2 - middle.x * scale,
             frame.top + frame.height / 2 + middle.y * scale}};
}

// The stretches of the level line at `y` that lie inside of the outline.
std::vector<std::pair<double, double>> InsideAt(const Outline& outline, double y) {
    std::vector<double> crossings;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Point& a = outline[i];
        const Point& b = outline[(i + 1) % outline.size()];
        if ((a.y > y) != (b.y > y))
            crossings.push_back(a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x));
    }
    std::sort(crossings.begin(), crossings.end());
    std::vector<std::pair<double, double>> stretches;
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
        stretches.emplace_back(crossings[i], crossings[i + 1]);
    return stretches;
}

// A free rectangle inside of an outline.
struct Spot {
    Point centre;
    double width = 0.0;
    double height = 0.0;
};

bool IsUpright(const Outline& outline) {
    if (outline.size() != 4)
        return false;
    for (std::size_t i = 0; i < 4; ++i) {
        const Point& a = outline[i];
        const Point& b = outline[(i + 1) % 4];
        const Point& c = outline[(i + 2) % 4];
        const bool turns = (a.x == b.x && b.y == c.y) || (a.y == b.y && b.x == c.x);
        if (!turns)
            return false;
    }
    return true;
}

// The part of an edge between two heights, from left to right; none when it only touches them.
std::optional<std::pair<double, double>> Between(Point a, Point b, double low, double high) {
    if (a.y > b.y)
        std::swap(a, b);
    if (b.y <= low || a.y >= high)
        return std::nullopt;
    const auto at = [&](double y) { return a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x); };
    const double first = a.y < low ? at(low) : a.x;
    const double last = b.y > high ? at(high) : b.x;
    return std::minmax(first, last);
}

// The stretches that are inside at every height from `y` - `half` to `y` + `half`: no edge comes
// between, and at `y` they are inside.
std::vector<std::pair<double, double>> InsideAround(const Outline& outline, double y, double half) {
    std::vector<std::pair<double, double>> edges;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        if (const auto edge =
                Between(outline[i], outline[(i + 1) % outline.size()], y - half, y + half))
            edges.push_back(*edge);
    }
    std::sort(edges.begin(), edges.end());
    const std::vector<std::pair<double, double>> inside = InsideAt(outline, y);
    std::vector<std::pair<double, double>> free;
    auto stretch = inside.begin();
    double right = edges.empty() ? 0.0 : edges.front().second;
    for (const auto& edge : edges) {
        while (stretch != inside.end() && stretch->second <= right)
            ++stretch;
        if (edge.first > right && stretch != inside.end() && stretch->first <= right)
            free.emplace_back(right, edge.first);
        right = std::max(right, edge.second);
    }
    return free;
}

// Rectangles of many heights that lie inside, those near the middle first.
std::vector<Spot> FreeSpots(const Outline& outline) {
    const Box box = BoxOf(outline);
    const double width = box.right - box.left;
    const double height = box.top - box.bottom;
    if (IsUpright(outline))
        return {{{box.left + width / 2, box.bottom + height / 2}, width, height}};
    constexpr int Lines = 15;
    std::vector<Spot> spots;
    for (int line = 0; line < Lines; ++line) {
        const int step = (line + 1) / 2 * (line % 2 == 0 ? 1 : -1);
        const double y = box.bottom + height * (0.5 + static_cast<double>(step) / (Lines + 1));
        for (const double part : {0.48, 0.36, 0.25, 0.18, 0.12, 0.08, 0.05}) {
            const double half = height * part;
            if (y - half < box.bottom || y + half > box.top)
                continue;
            for (const auto& [left, right] : InsideAround(outline, y, half))
                spots.push_back({{left + (right - left) / 2, y}, right - left, 2 * half});
        }
    }
    return spots;
}

std::vector<std::wstring> Words(const std::wstring& text) {
    std::vector<std::wstring> words;
    std::size_t at = 0;
    while ((at = text.find_first_not_of(L" \t\r\n", at)) != std::wstring::npos) {
        const std::size_t end = std::min(text.find_first_of(L" \t\r\n", at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

// The words in lines of at most `width` letters, except for a word that is longer by itself.
std::vector<std::wstring> Wrap(const std::vector<std::wstring>& words, std::size_t width) {
    std::vector<std::wstring> lines;
    for (const std::wstring& word : words) {
        if (!lines.empty() && lines.back().size() + 1 + word.size() <= width)
            lines.back() += L" " + word;
        else
            lines.push_back(word);
    }
    return lines;
}

std::size_t Longest(const std::vector<std::wstring>& lines) {
    std::size_t longest = 1;
    for (const std::wstring& line : lines)
        longest = std::max(longest, line.size());
    return longest;
}

using Wraps = std::vector<std::vector<std::wstring>>;

Wraps WithArea(Wraps wraps, double area) {
    for (std::vector<std::wstring>& lines : wraps)
        lines.push_back(AreaText(area));
    return wraps;
}

SceneLabel LargestLabel(const std::vector<Spot>& spots, const Wraps& wraps, double largest) {
    SceneLabel best;
    for (const Spot& spot : spots) {
        for (const std::vector<std::wstring>& lines : wraps) {
            const double byWidth =
                spot.width * LabelMargin / (LetterWidth * static_cast<double>(Longest(lines)));
            const double byHeight =
                spot.height * LabelMargin / (LineHeight * static_cast<double>(lines.size()));
            const double size = std::min({byWidth, byHeight, largest});
            // What is only a little larger is not worth the move.
            if (size > best.fontSize * 1.05)
                best = {spot.centre, size, lines};
        }
    }
    return best;
}

} // namespace

Point View::ToPicture(const Point& metres) const {
    return {origin.x + metres.x * scale, origin.y - metres.y * scale};
}

Point View::ToMetres(const Point& pixel) const {
    return {(pixel.x - origin.x) / scale, (origin.y - pixel.y) / scale};
}

View View::ZoomedAt(const Point& pixel, double factor) const {
    return {scale * factor,
            {pixel.x + (origin.x - pixel.x) * factor, pixel.y + (origin.y - pixel.y) * factor}};
}

std::wstring AreaText(double squareMetres) {
    std::string digits = FixedText(std::round(squareMetres * 100) / 100, 2);
    const std::size_t point = digits.find('.');
    const std::size_t decimals = point == std::string::npos ? 0 : digits.size() - point - 1;
    if (point == std::string::npos)
        digits += '.';
    digits.append(2 - decimals, '0');
    std::replace(digits.begin(), digits.end(), '.', ',');
    for (std::size_t place = digits.size() - 3; place > 3; place -= 3)
        digits.insert(place - 3, 1, '.');
    return std::wstring(digits.begin(), digits.end()) + L" m²";
}

SceneLabel FitLabel(const Outline& outline, const std::wstring& name, double area,
                    const LabelRules& rules) {
    const std::vector<Spot> spots = FreeSpots(outline);
    const std::vector<std::wstring> words = Words(name);
    const std::size_t whole = Longest(Wrap(words, std::numeric_limits<std::size_t>::max() / 2));
    Wraps wraps;
    for (std::size_t pieces = 1; pieces <= 3; ++pieces)
        wraps.push_back(
            Wrap(words, std::max(whole / pieces + (pieces > 1 ? 1 : 0), std::size_t{4})));
    SceneLabel label = LargestLabel(spots, WithArea(wraps, area), rules.largest);
    // The name alone is better than nothing.
    if (label.fontSize < rules.smallest && !words.empty())
        label = LargestLabel(spots, wraps, rules.largest);
    if (label.fontSize < rules.smallest)
        label = {label.centre, 0.0, {}};
    return label;
}

View FitView(const Drawing& drawing, const Frame& frame, const std::vector<Outline>& toCome) {
    Box box;
    for (const Element& element : drawing.elements)
        box.Take(element.outline);
    box.TakeBeside(toCome);
    return Fit(box, frame);
}

Scene MakeScene(const Drawing& drawing, const View& view, const LabelRules& labels) {
    Scene scene;
    scene.view = view;
    std::map<std::wstring, std::size_t> storeys;
    for (const Element& element : drawing.elements) {
        const auto [found, isNew] = storeys.try_emplace(element.storey, scene.storeys.size());
        if (isNew) {
            const std::int32_t tint = Tints[scene.storeys.size() % Tints.size()];
            scene.storeys.push_back(
                {element.storey.empty() ? L"ohne Geschoss" : element.storey, tint, 0, 0.0});
        }
        const double area = Area(element.outline);
        SceneStorey& storey = scene.storeys[found->second];
        ++storey.rooms;
        storey.area += area;

        SceneRoom room;
        room.storey = found->second;
        room.colour = element.colour & 0xFFFFFF;
        for (const Point& point : element.outline)
            room.outline.push_back(scene.view.ToPicture(point));
        room.label = FitLabel(room.outline, element.name, area, labels);
        scene.rooms.push_back(std::move(room));
    }
    return scene;
}

} // namespace kalvrooms::practice
