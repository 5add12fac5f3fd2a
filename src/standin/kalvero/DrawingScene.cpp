#include "standin/kalvero/DrawingScene.h"

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
constexpr double LabelMargin = 0.92;

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

// The stretches of the line `across = at` that lie inside of the outline.
std::vector<std::pair<double, double>> InsideAt(const Outline& outline, double at,
                                                double Point::*across, double Point::*along) {
    std::vector<double> crossings;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Point& a = outline[i];
        const Point& b = outline[(i + 1) % outline.size()];
        if ((a.*across > at) != (b.*across > at))
            crossings.push_back(a.*along +
                                (at - a.*across) / (b.*across - a.*across) * (b.*along - a.*along));
    }
    std::sort(crossings.begin(), crossings.end());
    std::vector<std::pair<double, double>> stretches;
    for (std::size_t i = 0; i + 1 < crossings.size(); i += 2)
        stretches.emplace_back(crossings[i], crossings[i + 1]);
    return stretches;
}

struct Spot {
    Point centre;
    double width = 0.0;
    double height = 0.0;
};

// The place inside of the outline with the most room for a label that is wider than high.
std::optional<Spot> BestSpot(const Outline& outline) {
    constexpr int Lines = 15;
    const Box box = BoxOf(outline);
    std::optional<Spot> best;
    double bestScore = 0.0;
    for (int line = 0; line < Lines; ++line) {
        // From the middle outwards, so that the middle wins among equals.
        const int step = (line + 1) / 2 * (line % 2 == 0 ? 1 : -1);
        const double y =
            box.bottom + (box.top - box.bottom) * (0.5 + static_cast<double>(step) / (Lines + 1));
        for (const auto& [left, right] : InsideAt(outline, y, &Point::y, &Point::x)) {
            const double x = left + (right - left) / 2;
            for (const auto& [low, high] : InsideAt(outline, x, &Point::x, &Point::y)) {
                if (y < low || y > high)
                    continue;
                const double height = 2 * std::min(y - low, high - y);
                const double score = std::min(right - left, 2.2 * height);
                if (score > bestScore * 1.001) {
                    bestScore = score;
                    best = Spot{{x, y}, right - left, height};
                }
            }
        }
    }
    return best;
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

} // namespace

Point View::ToPicture(const Point& metres) const {
    return {origin.x + metres.x * scale, origin.y - metres.y * scale};
}

Point View::ToMetres(const Point& pixel) const {
    return {(pixel.x - origin.x) / scale, (origin.y - pixel.y) / scale};
}

std::wstring AreaText(double squareMetres) {
    std::string digits = FixedText(std::round(squareMetres * 100) / 100, 2);
    const std::size_t point = digits.find('.');
    const std::size_t decimals = point == std::string::npos ? 0 : digits.size() - point - 1;
    if (point == std::string::npos)
        digits += '.';
    digits.append(2 - decimals, '0');
    std::replace(digits.begin(), digits.end(), '.', ',');
    return std::wstring(digits.begin(), digits.end()) + L" m²";
}

SceneLabel FitLabel(const Outline& outline, const std::wstring& name, double area,
                    const LabelRules& rules) {
    SceneLabel best;
    const std::optional<Spot> spot = BestSpot(outline);
    if (!spot)
        return best;
    best.centre = spot->centre;
    const std::vector<std::wstring> words = Words(name);
    const std::size_t whole = Longest(Wrap(words, std::numeric_limits<std::size_t>::max() / 2));
    for (std::size_t pieces = 1; pieces <= 3; ++pieces) {
        std::vector<std::wstring> lines =
            Wrap(words, std::max(whole / pieces + (pieces > 1 ? 1 : 0), std::size_t{4}));
        lines.push_back(AreaText(area));
        const double byWidth =
            spot->width * LabelMargin / (LetterWidth * static_cast<double>(Longest(lines)));
        const double byHeight =
            spot->height * LabelMargin / (LineHeight * static_cast<double>(lines.size()));
        const double size = std::min({byWidth, byHeight, rules.largest});
        if (size > best.fontSize * 1.05) {
            best.fontSize = size;
            best.lines = std::move(lines);
        }
    }
    if (best.fontSize < rules.smallest)
        best = {best.centre, 0.0, {}};
    return best;
}

Scene MakeScene(const Drawing& drawing, const Frame& frame, const LabelRules& labels,
                const std::vector<Outline>& toCome) {
    Scene scene;
    Box box;
    for (const Element& element : drawing.elements)
        box.Take(element.outline);
    box.TakeBeside(toCome);
    scene.view = Fit(box, frame);

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
