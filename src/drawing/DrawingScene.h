#pragma once
// What a picture of the drawing shows, for the window and the SVG file alike: rooms in picture
// coordinates (pixels, y down), told apart by storey, with a label that fits inside.

#include "drawing/Drawing.h"

#include <string>
#include <vector>

namespace kalvrooms {

// A rectangle of the picture, in pixels.
struct Frame {
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;
};

// Metres to pixels: the scale is the same both ways, and y goes up in the drawing.
struct View {
    double scale = 1.0;
    Point origin; // the pixel of the drawing's (0, 0)

    Point ToPicture(const Point& metres) const;
    Point ToMetres(const Point& pixel) const;
    // Larger by the factor, with the pixel staying over the same place of the drawing.
    View ZoomedAt(const Point& pixel, double factor) const;
};

struct SceneStorey {
    std::wstring name; // as the legend says it
    std::int32_t tint = 0;
    std::int32_t rooms = 0;
    double area = 0.0;

    std::wstring Figures() const; // "2 Räume, 12,50 m²"
};

// The distance of lines, in font sizes.
inline constexpr double LineHeight = 1.22;

struct SceneLabel {
    Point centre;
    double fontSize = 0.0; // pixels, 0 when there is no room for a legible label
    std::vector<std::wstring> lines;
};

struct SceneRoom {
    std::size_t storey = 0; // index into Scene::storeys
    std::int32_t colour = 0;
    Outline outline;
    SceneLabel label;
};

struct Scene {
    View view;
    // In the order in which the drawing names them; letter case tells none apart.
    std::vector<SceneStorey> storeys;
    std::vector<SceneRoom> rooms;
};

struct LabelRules {
    double smallest = 0.0; // a label below this size is left out
    double largest = 0.0;
    bool german = true; // else English
};

// Zoomed to fit the frame, with room for the outlines (metres) that are yet to come.
View FitView(const Drawing& drawing, const Frame& frame, const std::vector<Outline>& toCome = {});

Scene MakeScene(const Drawing& drawing, const View& view, const LabelRules& labels);

// "12,50 m²", or in English "12.50 m²".
std::wstring AreaText(double squareMetres, bool german = true);

// A label for an outline in picture coordinates: inside of it, off every wall, the name wrapped at
// blanks so that the letters become as large as they can; without lines where none fits.
SceneLabel FitLabel(const Outline& outline, const std::wstring& name, double area,
                    const LabelRules& rules);

} // namespace kalvrooms
