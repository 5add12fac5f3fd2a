#include "drawing/DrawingScene.h"
#include "drawing/DrawingSvg.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

Element Room(const std::wstring& name, const std::wstring& storey, Outline outline) {
    Element element;
    element.identity.ComponentID = 1;
    element.identity.FileNumber = 1;
    element.name = name;
    element.storey = storey;
    element.outline = std::move(outline);
    return element;
}

Outline Square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
}

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

const Frame Window{10, 20, 400, 200};
const LabelRules AnySize{0.0, 20.0};

TEST(DrawingScene, TheDrawingFillsTheFrameAndYGoesUp) {
    Drawing drawing;
    drawing.elements = {Room(L"unten", L"EG", Square(1000, 1000, 10)),
                        Room(L"oben", L"EG", Square(1000, 1010, 10))};
    const Scene scene = MakeScene(drawing, FitView(drawing, Window), AnySize);
    EXPECT_DOUBLE_EQ(scene.view.scale, 10.0);
    EXPECT_NEAR(scene.rooms[0].outline[0].y, 220.0, 1e-9);
    EXPECT_NEAR(scene.rooms[1].outline[2].y, 20.0, 1e-9);
    EXPECT_NEAR(scene.rooms[0].outline[0].x, 160.0, 1e-9);
    const Point back = scene.view.ToMetres(scene.view.ToPicture({1003, 1004}));
    EXPECT_NEAR(back.x, 1003, 1e-9);
    EXPECT_NEAR(back.y, 1004, 1e-9);
}

TEST(DrawingScene, ZoomingKeepsThePlaceUnderThePointer) {
    const View view{10, {100, 200}};
    const View zoomed = view.ZoomedAt({130, 150}, 2);
    EXPECT_DOUBLE_EQ(zoomed.scale, 20);
    const Point before = view.ToMetres({130, 150});
    const Point after = zoomed.ToMetres({130, 150});
    EXPECT_NEAR(before.x, after.x, 1e-9);
    EXPECT_NEAR(before.y, after.y, 1e-9);
}

TEST(DrawingScene, ThereIsRoomForWhatIsYetToCome) {
    Drawing drawing;
    drawing.elements = {Room(L"a", L"EG", Square(0, 0, 10))};
    const View view = FitView(drawing, Window, {Square(0, 0, 20)});
    const Point corner = view.ToPicture({31, 20});
    EXPECT_LE(corner.x, Window.left + Window.width + 1e-9);
    EXPECT_GE(corner.y, Window.top - 1e-9);
    EXPECT_GT(FitView(Drawing(), Window, {Square(0, 0, 20)}).scale, 9.9);
}

TEST(DrawingScene, EveryStoreyHasATintOfItsOwn) {
    Drawing drawing;
    drawing.elements = {Room(L"a", L"EG", Square(0, 0, 2)), Room(L"b", L"OG", Square(3, 0, 3)),
                        Room(L"c", L"EG", Square(7, 0, 2)), Room(L"d", L"", Square(9, 0, 1))};
    const Scene scene = MakeScene(drawing, FitView(drawing, Window), AnySize);
    ASSERT_EQ(scene.storeys.size(), 3u);
    EXPECT_EQ(scene.storeys[0].name, L"EG");
    EXPECT_EQ(scene.storeys[0].rooms, 2);
    EXPECT_DOUBLE_EQ(scene.storeys[0].area, 8.0);
    EXPECT_EQ(scene.storeys[2].name, L"ohne Geschoss");
    EXPECT_NE(scene.storeys[0].tint, scene.storeys[1].tint);
    EXPECT_NE(scene.storeys[1].tint, scene.storeys[2].tint);
    EXPECT_EQ(scene.rooms[2].storey, 0u);
}

TEST(DrawingScene, NothingAndPointsAndTheFarthestCornersCanBeShown) {
    Drawing drawing;
    MakeScene(drawing, FitView(drawing, Window), AnySize);
    drawing.elements = {Room(L"leer", L"EG", {}), Room(L"Punkt", L"EG", {{5, 5}}),
                        Room(L"Strich", L"EG", {{5, 5}, {6, 6}})};
    MakeScene(drawing, FitView(drawing, Window), AnySize);
    drawing.elements.push_back(Room(L"weit", L"EG", {{-1e308, -1e308}, {1e308, 0}, {0, 1e308}}));
    const Scene scene = MakeScene(drawing, FitView(drawing, Window), AnySize);
    for (const SceneRoom& room : scene.rooms) {
        for (const Point& point : room.outline) {
            EXPECT_TRUE(std::isfinite(point.x));
            EXPECT_TRUE(std::isfinite(point.y));
        }
    }
    DrawingSvg(drawing);
}

TEST(DrawingScene, AreasAreWrittenWithACommaAndTwoDecimals) {
    EXPECT_EQ(AreaText(12.5), L"12,50 m²");
    EXPECT_EQ(AreaText(0), L"0,00 m²");
    EXPECT_EQ(AreaText(63.999), L"64,00 m²");
    EXPECT_EQ(AreaText(7.04), L"7,04 m²");
    EXPECT_EQ(AreaText(999.5), L"999,50 m²");
    EXPECT_EQ(AreaText(1000), L"1.000,00 m²");
    EXPECT_EQ(AreaText(1234567.891), L"1.234.567,89 m²");
}

TEST(DrawingScene, ALabelSaysNameAndAreaAndFitsInside) {
    const SceneLabel label = FitLabel(Square(0, 0, 100), L"Raum", 12.5, AnySize);
    EXPECT_THAT(label.lines, ElementsAre(L"Raum", L"12,50 m²"));
    EXPECT_NEAR(label.centre.x, 50, 1);
    EXPECT_NEAR(label.centre.y, 50, 1);
    EXPECT_GT(label.fontSize, 10);
    EXPECT_LE(label.fontSize, 20);
}

TEST(DrawingScene, ALongNameIsWrappedAtItsBlanks) {
    const SceneLabel label =
        FitLabel(Square(0, 0, 100), L"Lehrerzimmer mit Teeküche", 12.5, AnySize);
    EXPECT_GT(label.lines.size(), 2u);
    for (const std::wstring& line : label.lines)
        EXPECT_NE(line.front(), L' ');
}

TEST(DrawingScene, TheLabelOfAnAngledRoomStandsInItsWideWing) {
    const Outline angle = {{0, 0}, {100, 0}, {100, 30}, {10, 30}, {10, 100}, {0, 100}};
    const SceneLabel label = FitLabel(angle, L"Flur", 12.5, AnySize);
    EXPECT_LT(label.centre.y, 30);
    EXPECT_GT(label.centre.y, 0);
    EXPECT_GT(label.centre.x, 30);
}

TEST(DrawingScene, ALabelKeepsClearOfTheCorners) {
    // The middle of the box lies just beside the inner corner.
    const Outline angle = {{0, 0}, {220, 0}, {220, 200}, {80, 200}, {80, 120}, {0, 120}};
    const SceneLabel label = FitLabel(angle, L"Aula", 344, {0.0, 60.0});
    const double height = label.fontSize * 1.22 * static_cast<double>(label.lines.size());
    const double width = label.fontSize * 0.56 * 9;
    const bool besideTheCorner = label.centre.x - width / 2 > 80;
    const bool belowTheCorner = label.centre.y + height / 2 < 120;
    EXPECT_TRUE(besideTheCorner || belowTheCorner);
    EXPECT_GT(label.fontSize, 20);
}

TEST(DrawingScene, ALabelKeepsOutOfANotch) {
    // The notch comes from above, down to a height of 20.
    const Outline notched = {{0, 0},   {100, 0}, {100, 100}, {60, 100},
                             {60, 20}, {40, 20}, {40, 100},  {0, 100}};
    const SceneLabel label = FitLabel(notched, L"Saal", 84, {0.0, 60.0});
    const double half = label.fontSize * 0.56 * 8 / 2;
    EXPECT_TRUE(label.centre.x + half <= 40 || label.centre.x - half >= 60 ||
                label.centre.y + label.fontSize * 1.22 <= 20)
        << label.centre.x << " " << label.centre.y;
    EXPECT_GT(label.fontSize, 5);
}

TEST(DrawingScene, NoWallRunsThroughALabel) {
    for (int seed = 1; seed <= 200; ++seed) {
        // Stars of all sorts, from slim to round.
        Outline star;
        const int corners = 3 + seed % 9;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2 * 3.14159265358979 * i / corners + seed;
            const double reach = 20 + (seed * 37 + i * i * 53) % 80;
            star.push_back({100 + reach * std::cos(angle), 100 + reach * std::sin(angle)});
        }
        const SceneLabel label = FitLabel(star, L"Raum", 12.5, AnySize);
        ASSERT_FALSE(label.lines.empty());
        const double halfWidth = label.fontSize * 0.56 * 8 / 2;
        const double halfHeight = label.fontSize * LineHeight;
        for (int i = 0; i < corners; ++i) {
            const Point& a = star[static_cast<std::size_t>(i)];
            const Point& b = star[static_cast<std::size_t>((i + 1) % corners)];
            for (double part = 0; part <= 1; part += 0.01) {
                const double x = a.x + part * (b.x - a.x) - label.centre.x;
                const double y = a.y + part * (b.y - a.y) - label.centre.y;
                ASSERT_FALSE(std::abs(x) < halfWidth && std::abs(y) < halfHeight) << seed;
            }
        }
    }
}

TEST(DrawingScene, ARoomOfManyCornersIsLabelledAtOnce) {
    Outline round;
    constexpr int corners = 33000;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * 3.14159265358979 * i / corners;
        round.push_back({50 + 40 * std::cos(angle), 50 + 40 * std::sin(angle)});
    }
    const SceneLabel label = FitLabel(round, L"Rotunde", 5026.55, AnySize);
    EXPECT_EQ(label.lines.size(), 2u);
    EXPECT_NEAR(label.centre.x, 50, 0.1);
    EXPECT_NEAR(label.centre.y, 50, 0.1);
    // A corner of the label's box is nowhere farther out than the wall.
    const double halfWidth = label.fontSize * 0.56 * 11 / 2;
    EXPECT_LT(std::hypot(halfWidth, label.fontSize * 1.22), 40);

    // A comb: thousands of stretches on every line.
    Outline comb;
    for (int tooth = 0; tooth < corners / 4; ++tooth)
        for (const auto& [x, y] : {std::pair(0.0, 0.0), {0.0, 90.0}, {0.5, 90.0}, {0.5, 0.0}})
            comb.push_back({tooth + x, y});
    comb.push_back({corners / 4.0, 0});
    comb.push_back({corners / 4.0, -20});
    comb.push_back({0, -20});
    EXPECT_LT(FitLabel(comb, L"Kamm", 1, AnySize).centre.y, 0);
}

TEST(DrawingScene, ASmallRoomShowsItsNameAlone) {
    const SceneLabel label = FitLabel(Square(0, 0, 20), L"E01", 64, {7.0, 20.0});
    EXPECT_THAT(label.lines, ElementsAre(L"E01"));
}

TEST(DrawingScene, AnIllegibleLabelIsLeftOut) {
    EXPECT_TRUE(FitLabel(Square(0, 0, 5), L"Raum", 1, {6.0, 20.0}).lines.empty());
    EXPECT_TRUE(FitLabel({}, L"Raum", 1, AnySize).lines.empty());
}

TEST(DrawingSvg, RoomsStandInTheGroupOfTheirStorey) {
    Drawing drawing;
    drawing.project.name = L"Schule";
    drawing.elements = {Room(L"Klasse", L"EG", Square(0, 0, 2)),
                        Room(L"Büro", L"OG", Square(3, 0, 2)),
                        Room(L"Flur", L"EG", Square(6, 0, 2))};
    drawing.elements[1].colour = 255;
    const std::string svg = DrawingSvg(drawing);
    EXPECT_EQ(CountOf(svg, "<g id=\"storey-"), 2u);
    EXPECT_EQ(CountOf(svg, "<polygon"), 3u);
    EXPECT_EQ(CountOf(svg, "<g"), CountOf(svg, "</g>"));
    EXPECT_THAT(svg, HasSubstr("stroke=\"#ff0000\""));
    EXPECT_THAT(svg, HasSubstr("stroke=\"#000000\""));
    EXPECT_THAT(svg, HasSubstr(">Büro</text>"));
    EXPECT_THAT(svg, HasSubstr(">4,00 m²</text>"));
    EXPECT_THAT(svg, HasSubstr(">EG: 2 Räume, 8,00 m²</text>"));
    EXPECT_THAT(svg, HasSubstr("<title>Schule</title>"));
    const std::size_t second = svg.find("storey-2");
    EXPECT_LT(svg.find(">Flur<"), second);
    EXPECT_GT(svg.find(">Büro<"), second);
}

TEST(DrawingSvg, StoreysThatStandAboveEachOtherCanStandSideBySide) {
    Drawing drawing;
    drawing.elements = {Room(L"a", L"EG", Square(0, 0, 2)), Room(L"b", L"OG", Square(0, 0, 2))};
    const auto places = [&](Storeys storeys) {
        const std::string svg = DrawingSvg(drawing, storeys);
        const std::size_t first = svg.find("points=");
        const std::size_t second = svg.find("points=", first + 1);
        return std::pair(svg.substr(first, svg.find(' ', first) - first),
                         svg.substr(second, svg.find(' ', second) - second));
    };
    const auto apart = places(Storeys::Apart);
    EXPECT_NE(apart.first, apart.second);
    const auto stacked = places(Storeys::AsTheyStand);
    EXPECT_EQ(stacked.first, stacked.second);
}

TEST(DrawingSvg, TextsAreEscapedAndWhatXmlLacksIsReplaced) {
    Drawing drawing;
    drawing.elements = {Room(L"<a>&\"b\"\x01", L"E\"G<", Square(0, 0, 2))};
    const std::string svg = DrawingSvg(drawing);
    EXPECT_THAT(svg, HasSubstr("&lt;a&gt;&amp;&quot;b&quot;\xEF\xBF\xBD"));
    EXPECT_THAT(svg, HasSubstr("data-storey=\"E&quot;G&lt;\""));
    EXPECT_THAT(svg, Not(HasSubstr("\x01")));
}

} // namespace
} // namespace kalvrooms::testing
