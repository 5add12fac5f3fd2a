#include "practice/host/Painter.h"

#include "drawing/Text.h"
#include "win32/Handles.h"

#include <algorithm>
#include <cmath>

namespace kalvrooms::practice {

namespace {

constexpr COLORREF Paper = RGB(255, 255, 255);
constexpr COLORREF Panel = RGB(244, 246, 248);
constexpr COLORREF Rule = RGB(208, 213, 219);
constexpr COLORREF Ink = RGB(32, 36, 42);
constexpr COLORREF PaleInk = RGB(104, 112, 122);
constexpr COLORREF Chosen = RGB(226, 232, 240);
constexpr COLORREF Attention = RGB(255, 236, 179);
constexpr COLORREF Ghost = RGB(200, 30, 30);

LONG Pixel(double value) {
    return static_cast<LONG>(std::lround(std::clamp(value, -3e4, 3e4)));
}

std::vector<POINT> Pixels(const Outline& outline) {
    std::vector<POINT> points;
    points.reserve(outline.size());
    for (const Point& point : outline)
        points.push_back({Pixel(point.x), Pixel(point.y)});
    return points;
}

int CALLBACK NoteFont(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM found) {
    *reinterpret_cast<bool*>(found) = true;
    return 0;
}

// The system's own font, where it is installed.
const wchar_t* FaceName() {
    static const bool segoe = [] {
        LOGFONTW wanted{};
        wanted.lfCharSet = DEFAULT_CHARSET;
        lstrcpyW(wanted.lfFaceName, L"Segoe UI");
        bool found = false;
        EnumFontFamiliesExW(WindowContext(nullptr), &wanted, &NoteFont,
                            reinterpret_cast<LPARAM>(&found), 0);
        return found;
    }();
    return segoe ? L"Segoe UI" : L"Arial";
}

// A line's colour and width while it lives.
class Pen {
  public:
    Pen(HDC dc, int width, COLORREF colour)
        : pen_(CreatePen(PS_SOLID, width, colour)), selected_(dc, pen_.get()) {}

  private:
    GdiObject<HPEN> pen_;
    Selected selected_;
};

void Fill(HDC dc, const RECT& area, COLORREF colour) {
    SetDCBrushColor(dc, colour);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void Shape(HDC dc, const Outline& outline) {
    const std::vector<POINT> points = Pixels(outline);
    if (points.size() > 1)
        Polygon(dc, points.data(), static_cast<int>(points.size()));
}

// 1, 2 or 5 with zeros, as long as it fits.
double RoundLength(double longest) {
    const double power = std::pow(10.0, std::floor(std::log10(longest)));
    for (const double factor : {5.0, 2.0})
        if (factor * power <= longest)
            return factor * power;
    return power;
}

} // namespace

RECT Painter::StatusArea(const RECT& client) const {
    return {client.left, client.bottom - Scaled(28), client.right, client.bottom};
}

RECT Painter::LegendArea(const RECT& client) const {
    return {client.right - Scaled(230), client.top, client.right, client.bottom - Scaled(28)};
}

RECT Painter::DrawingArea(const RECT& client) const {
    return {client.left, client.top, client.right - Scaled(230), client.bottom - Scaled(28)};
}

RECT Painter::LegendLine(const RECT& legend, std::size_t storey) const {
    const LONG top = legend.top + Scaled(71) + static_cast<LONG>(storey) * Scaled(46);
    return {legend.left + 1, top, legend.right, top + Scaled(46)};
}

std::optional<std::size_t> Painter::StoreyAt(const RECT& client, const Scene& scene,
                                             POINT point) const {
    const RECT legend = LegendArea(client);
    for (std::size_t storey = 0; storey < scene.storeys.size(); ++storey) {
        const RECT line = LegendLine(legend, storey);
        if (line.bottom <= legend.bottom && PtInRect(&line, point))
            return storey;
    }
    return std::nullopt;
}

Frame Painter::DrawingFrame(const RECT& client) const {
    const RECT area = DrawingArea(client);
    const double margin = Scaled(28);
    const double foot = Scaled(22); // for the scale
    return {area.left + margin, area.top + margin,
            std::max(1.0, static_cast<double>(area.right - area.left) - 2 * margin),
            std::max(1.0, static_cast<double>(area.bottom - area.top) - 2 * margin - foot)};
}

LabelRules Painter::Labels() const {
    return {static_cast<double>(Scaled(7)), static_cast<double>(Scaled(17))};
}

void Painter::Text(HDC dc, const std::wstring& text, RECT area, int size, bool bold,
                   COLORREF colour, UINT format) {
    const GdiObject<HFONT> font(CreateFontW(-size, 0, 0, 0, bold ? FW_SEMIBOLD : FW_NORMAL, FALSE,
                                            FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                            CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                                            DEFAULT_PITCH | FF_SWISS, FaceName()));
    const Selected selected(dc, font.get());
    SetTextColor(dc, colour);
    SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &area,
              format | DT_NOPREFIX | DT_SINGLELINE);
}

void Painter::Paint(HDC dc, const RECT& client, const WindowContent& content) {
    PaintRooms(dc, DrawingArea(client), content);
    PaintLegend(dc, LegendArea(client), content);
    PaintStatus(dc, StatusArea(client), content);
}

void Painter::PaintRooms(HDC dc, const RECT& area, const WindowContent& content) {
    Fill(dc, area, Paper);
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    SelectObject(dc, GetStockObject(DC_BRUSH));
    const auto shown = [&](const SceneRoom& room) {
        return !content.storey || room.storey == *content.storey;
    };
    for (const SceneRoom& room : content.scene->rooms) {
        if (!shown(room))
            continue;
        SetDCBrushColor(dc, static_cast<COLORREF>(content.scene->storeys[room.storey].tint));
        const Pen pen(dc, Scaled(1), static_cast<COLORREF>(room.colour));
        Shape(dc, room.outline);
    }
    // On top of all rooms, so that a room on another storey hides no name.
    for (const SceneRoom& room : content.scene->rooms)
        if (shown(room))
            PaintLabel(dc, room);

    const Pen pen(dc, Scaled(2), Ghost);
    SelectObject(dc, GetStockObject(NULL_BRUSH));
    for (const Outline& outline : content.ghosts)
        Shape(dc, outline);
    if (content.scene->rooms.empty() && content.ghosts.empty()) {
        RECT middle = area;
        Text(dc, L"Die Zeichnung enthält keine Räume.", middle, Scaled(16), false, PaleInk,
             DT_CENTER | DT_VCENTER);
    } else {
        PaintScale(dc, area, *content.scene);
    }
    SelectClipRgn(dc, nullptr);
}

void Painter::PaintLabel(HDC dc, const SceneRoom& room) {
    const SceneLabel& label = room.label;
    if (label.lines.empty())
        return;
    const double lineHeight = label.fontSize * LineHeight;
    double y = label.centre.y - lineHeight * static_cast<double>(label.lines.size()) / 2;
    for (const std::wstring& line : label.lines) {
        const LONG x = Pixel(label.centre.x);
        const RECT area{x, Pixel(y), x, Pixel(y + lineHeight)};
        Text(dc, line, area, static_cast<int>(label.fontSize), false,
             static_cast<COLORREF>(room.colour), DT_CENTER | DT_VCENTER | DT_NOCLIP);
        y += lineHeight;
    }
}

void Painter::PaintScale(HDC dc, const RECT& area, const Scene& scene) {
    const double length = RoundLength(Scaled(140) / scene.view.scale);
    if (!std::isfinite(length) || length <= 0)
        return;
    const LONG left = area.left + Scaled(16);
    const LONG right = left + Pixel(length * scene.view.scale);
    const LONG y = area.bottom - Scaled(12);
    const Pen pen(dc, Scaled(1), PaleInk);
    for (const auto& [x, top] : {std::pair{left, y - Scaled(4)}, std::pair{right, y - Scaled(4)}}) {
        MoveToEx(dc, x, top, nullptr);
        LineTo(dc, x, y + 1);
    }
    MoveToEx(dc, left, y, nullptr);
    LineTo(dc, right, y);
    const RECT beside{right + Scaled(8), y - Scaled(16), right + Scaled(200), y + Scaled(4)};
    Text(dc, FromUtf8(FixedText(length, 2)) + L" m", beside, Scaled(12), false, PaleInk,
         DT_LEFT | DT_BOTTOM);
}

void Painter::PaintLegend(HDC dc, const RECT& area, const WindowContent& content) {
    Fill(dc, area, Panel);
    Fill(dc, {area.left, area.top, area.left + 1, area.bottom}, Rule);
    const LONG left = area.left + Scaled(18);
    const LONG right = area.right - Scaled(12);
    LONG y = area.top + Scaled(16);
    Text(dc, content.project.empty() ? L"Ohne Namen" : content.project,
         {left, y, right, y + Scaled(24)}, Scaled(17), true, Ink,
         DT_LEFT | DT_VCENTER | DT_END_ELLIPSIS);
    y += Scaled(26);

    SceneStorey all;
    for (const SceneStorey& storey : content.scene->storeys) {
        all.rooms += storey.rooms;
        all.area += storey.area;
    }
    Text(dc, all.Figures(), {left, y, right, y + Scaled(20)}, Scaled(13), false, PaleInk,
         DT_LEFT | DT_VCENTER);

    for (std::size_t storey = 0; storey < content.scene->storeys.size(); ++storey) {
        const RECT line = LegendLine(area, storey);
        if (line.bottom > area.bottom)
            break;
        if (content.storey == storey)
            Fill(dc, line, Chosen);
        PaintLegendLine(dc, line, content.scene->storeys[storey],
                        !content.storey || content.storey == storey);
    }
}

void Painter::PaintLegendLine(HDC dc, const RECT& line, const SceneStorey& storey, bool shown) {
    const LONG left = line.left + Scaled(17);
    const LONG right = line.right - Scaled(12);
    const LONG y = line.top + Scaled(5);
    const RECT swatch{left, y + Scaled(4), left + Scaled(28), y + Scaled(32)};
    Fill(dc, swatch, shown ? static_cast<COLORREF>(storey.tint) : Panel);
    SetDCBrushColor(dc, shown ? PaleInk : Rule);
    FrameRect(dc, &swatch, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    const LONG text = swatch.right + Scaled(12);
    Text(dc, storey.name, {text, y, right, y + Scaled(19)}, Scaled(14), true, shown ? Ink : PaleInk,
         DT_LEFT | DT_VCENTER | DT_END_ELLIPSIS);
    Text(dc, storey.Figures(), {text, y + Scaled(18), right, y + Scaled(36)}, Scaled(12), false,
         PaleInk, DT_LEFT | DT_VCENTER);
}

void Painter::PaintStatus(HDC dc, const RECT& area, const WindowContent& content) {
    Fill(dc, area, content.attention ? Attention : Panel);
    Fill(dc, {area.left, area.top, area.right, area.top + 1}, Rule);
    RECT text = area;
    text.left += Scaled(16);
    text.right -= Scaled(8);
    Text(dc, content.status, text, Scaled(13), content.attention, Ink,
         DT_LEFT | DT_VCENTER | DT_END_ELLIPSIS);
}

} // namespace kalvrooms::practice
