#include "drawing/DrawingScene.h"

#include "model/LetterRules.h"

#include "drawing/Text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

namespace kalvrooms {

namespace {

// Light enough for black and red letters, far enough apart to be told at a glance.
constexpr std::array<std::int32_t, 8> Tints = {0xBFE3FD, 0xF9E1C9, 0xC9EED1, 0xDDCBF7,
                                               0xF5D6E4, 0xE8EEC4, 0xB9D3EA, 0xE2E2E2};
// The mean width of a letter, in font sizes.
constexpr double LetterWidth = 0.56;
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
    // Makes room for the outlines to the right, where the user will probably place them.
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
    // Halves: the extent of a drawing at the limits of a double would overflow.
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

// Middles of the widest stretches inside of the outline, at half its height and towards both ends.
std::vector<Point> Middles(const Outline& outline) {
    const Box box = BoxOf(outline);
    std::vector<Point> middles;
    for (const double part : {0.5, 1.0 / 6, 5.0 / 6}) {
        const double y = box.bottom + (box.top - box.bottom) * part;
        std::pair<double, double> widest;
        for (const auto& stretch : InsideAt(outline, y))
            if (stretch.second - stretch.first > widest.second - widest.first)
                widest = stretch;
        if (widest.second > widest.first)
            middles.push_back({widest.first + (widest.second - widest.first) / 2, y});
    }
    return middles;
}

// The factor by which the square from (-1,-1) to (1,1) has to grow until it touches the wall from
// a to b.
double Reach(const Point& a, const Point& b) {
    const Point along{b.x - a.x, b.y - a.y};
    double reach = std::numeric_limits<double>::infinity();
    // The nearest point is an end, or lies on an axis or on a diagonal.
    const auto meet = [&](double above, double below) {
        const double t = below == 0.0 ? 0.0 : std::clamp(above / below, 0.0, 1.0);
        const double x = std::abs(a.x + t * along.x);
        const double y = std::abs(a.y + t * along.y);
        reach = std::min(reach, std::max(x, y));
    };
    meet(0.0, 1.0);
    meet(1.0, 1.0);
    meet(-a.x, along.x);
    meet(-a.y, along.y);
    meet(a.y - a.x, along.x - along.y);
    meet(-a.y - a.x, along.x + along.y);
    return reach;
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
    for (const std::wstring& word : words)
        if (!lines.empty() && lines.back().size() + 1 + word.size() <= width)
            lines.back() += L" " + word;
        else
            lines.push_back(word);
    return lines;
}

std::size_t Longest(const std::vector<std::wstring>& lines) {
    std::size_t longest = 1;
    for (const std::wstring& line : lines)
        longest = std::max(longest, line.size());
    return longest;
}

// The largest letters with which the lines, around the centre, touch no wall.
double LargestSize(const Outline& outline, const Point& centre,
                   const std::vector<std::wstring>& lines) {
    const double halfWidth = LetterWidth * static_cast<double>(Longest(lines)) / 2 / LabelMargin;
    const double halfHeight = LineHeight * static_cast<double>(lines.size()) / 2 / LabelMargin;
    const auto seen = [&](const Point& point) {
        return Point{(point.x - centre.x) / halfWidth, (point.y - centre.y) / halfHeight};
    };
    double size = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < outline.size(); ++i)
        size = std::min(size, Reach(seen(outline[i]), seen(outline[(i + 1) % outline.size()])));
    return size;
}

SceneLabel LargestLabel(const Outline& outline, const std::vector<std::vector<std::wstring>>& wraps,
                        double largest) {
    SceneLabel best;
    for (const Point& centre : Middles(outline)) {
        for (const std::vector<std::wstring>& lines : wraps) {
            const double size = std::min(LargestSize(outline, centre, lines), largest);
            // A slightly larger size is not worth leaving the middle.
            if (size > best.fontSize * 1.05)
                best = {centre, size, lines};
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

std::wstring SceneStorey::Figures() const {
    return std::to_wstring(rooms) + (rooms == 1 ? L" Raum, " : L" Räume, ") + AreaText(area);
}

std::wstring AreaText(double squareMetres, bool german) {
    std::string digits = FixedText(std::round(squareMetres * 100) / 100, 2);
    const std::size_t point = digits.find('.');
    const std::size_t decimals = point == std::string::npos ? 0 : digits.size() - point - 1;
    if (point == std::string::npos)
        digits += '.';
    digits.append(2 - decimals, '0');
    if (german)
        std::replace(digits.begin(), digits.end(), '.', ',');
    for (std::size_t place = digits.size() - 3; place > 3; place -= 3)
        digits.insert(place - 3, 1, german ? '.' : ',');
    return std::wstring(digits.begin(), digits.end()) + L" m²";
}

SceneLabel FitLabel(const Outline& outline, const std::wstring& name, double area,
                    const LabelRules& rules) {
    const std::vector<std::wstring> words = Words(name);
    const std::size_t whole = Longest(Wrap(words, std::numeric_limits<std::size_t>::max() / 2));
    std::vector<std::vector<std::wstring>> names;
    for (std::size_t pieces = 1; pieces <= 3; ++pieces)
        names.push_back(
            Wrap(words, std::max(whole / pieces + (pieces > 1 ? 1 : 0), std::size_t{4})));
    auto namesWithArea = names;
    for (std::vector<std::wstring>& lines : namesWithArea)
        lines.push_back(AreaText(area, rules.german));
    SceneLabel label = LargestLabel(outline, namesWithArea, rules.largest);
    // The name alone is better than nothing.
    if (label.fontSize < rules.smallest && !words.empty())
        label = LargestLabel(outline, names, rules.largest);
    return label.fontSize < rules.smallest ? SceneLabel() : label;
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
        const auto [found, isNew] =
            storeys.try_emplace(FoldedCase(element.storey), scene.storeys.size());
        if (isNew) {
            const std::int32_t tint = Tints[scene.storeys.size() % Tints.size()];
            scene.storeys.push_back({!element.storey.empty() ? element.storey
                                     : labels.german         ? L"ohne Geschoss"
                                                             : L"no storey",
                                     tint, 0, 0.0});
        }
        const double area = drawing.FloorArea(element);
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

} // namespace kalvrooms
