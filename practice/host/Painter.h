#pragma once
// Draws the window's content: the rooms, the legend of storeys beside them, the status bar below.

#include "drawing/DrawingScene.h"

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace kalvrooms::practice {

struct WindowContent {
    std::wstring project;
    std::wstring status;
    bool attention = false; // the status bar asks the user for something
    const Scene* scene = nullptr;
    std::optional<std::size_t> storey; // the only one that is shown
    // What follows the pointer, in pixels.
    std::vector<Outline> ghosts;
};

class Painter {
  public:
    explicit Painter(UINT dpi) : dpi_(dpi) {}

    // Where the rooms go in a window of that size.
    Frame DrawingFrame(const RECT& client) const;
    LabelRules Labels() const;
    void Paint(HDC dc, const RECT& client, const WindowContent& content);
    // The storey whose line of the legend is there; nothing beside them.
    std::optional<std::size_t> StoreyAt(const RECT& client, const Scene& scene, POINT point) const;
    // The status bar alone: it changes with every call.
    RECT StatusArea(const RECT& client) const;
    void PaintStatus(HDC dc, const RECT& area, const WindowContent& content);

  private:
    int Scaled(int pixels) const { return MulDiv(pixels, static_cast<int>(dpi_), 96); }
    void Text(HDC dc, const std::wstring& text, RECT area, int size, bool bold, COLORREF colour,
              UINT format);
    RECT DrawingArea(const RECT& client) const;
    RECT LegendArea(const RECT& client) const;
    // The line of a storey in the legend.
    RECT LegendLine(const RECT& legend, std::size_t storey) const;
    void PaintRooms(HDC dc, const RECT& area, const WindowContent& content);
    void PaintLabel(HDC dc, const SceneRoom& room);
    void PaintScale(HDC dc, const RECT& area, const Scene& scene);
    void PaintLegend(HDC dc, const RECT& area, const WindowContent& content);
    void PaintLegendLine(HDC dc, const RECT& line, const SceneStorey& storey, bool shown);

    UINT dpi_;
};

} // namespace kalvrooms::practice
