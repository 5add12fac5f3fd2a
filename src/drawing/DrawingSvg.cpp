#include "drawing/DrawingSvg.h"

#include "drawing/DrawingScene.h"
#include "drawing/Text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kalvrooms {

namespace {

constexpr double PictureWidth = 1600;
constexpr double PictureHeight = 1000;
constexpr double Margin = 30;
constexpr double TitleHeight = 50;
constexpr double LegendWidth = 260;
constexpr double LegendLine = 30;
constexpr LabelRules Labels{1.0, 26.0};

std::string Colour(std::int32_t rgb) {
    constexpr std::array<char, 17> hex = {"0123456789abcdef"};
    std::string text = "#";
    // Red stands in the low byte, and in front in the text.
    for (const int shift : {0, 8, 16}) {
        const auto part = static_cast<std::size_t>((rgb >> shift) & 0xFF);
        text += hex[part >> 4];
        text += hex[part & 0xF];
    }
    return text;
}

std::string Number(double value) {
    return FixedText(value, 2);
}

std::string TextAt(double x, double y, double size, const std::string& attributes,
                   const std::wstring& text) {
    return "<text x=\"" + Number(x) + "\" y=\"" + Number(y) + "\" font-size=\"" + Number(size) +
           "\"" + attributes + ">" + EscapeMarkup(text) + "</text>\n";
}

std::string RoomSvg(const SceneRoom& room, const Element& element) {
    const std::string colour = Colour(room.colour);
    std::string svg = "<g class=\"room\" data-component=\"" +
                      std::to_string(element.identity.ComponentID) + "\" data-file=\"" +
                      std::to_string(element.identity.FileNumber) + "\">\n<polygon points=\"";
    for (const Point& point : room.outline) {
        svg += Number(point.x);
        svg += ',';
        svg += Number(point.y);
        svg += ' ';
    }
    svg += "\" stroke=\"" + colour + "\"/>\n";
    const double lineHeight = room.label.fontSize * LineHeight;
    double y = room.label.centre.y - lineHeight * static_cast<double>(room.label.lines.size()) / 2 +
               lineHeight * 0.78;
    for (const std::wstring& line : room.label.lines) {
        svg += TextAt(room.label.centre.x, y, room.label.fontSize,
                      " text-anchor=\"middle\" stroke=\"none\" fill-opacity=\"1\" fill=\"" +
                          colour + "\"",
                      line);
        y += lineHeight;
    }
    return svg + "</g>\n";
}

std::string StoreySvg(const Scene& scene, const Drawing& drawing, std::size_t storey) {
    std::string svg = "<g id=\"storey-" + std::to_string(storey + 1) + "\" data-storey=\"" +
                      EscapeMarkup(scene.storeys[storey].name) + "\" fill=\"" +
                      Colour(scene.storeys[storey].tint) +
                      "\" fill-opacity=\"0.85\" stroke-width=\"1.5\" stroke-linejoin=\"round\">\n";
    for (std::size_t room = 0; room < scene.rooms.size(); ++room)
        if (scene.rooms[room].storey == storey)
            svg += RoomSvg(scene.rooms[room], drawing.elements[room]);
    return svg + "</g>\n";
}

// A cell of the frame for each storey, all of them at one scale.
Scene ScenesApart(const Drawing& drawing, const Frame& frame) {
    const std::size_t storeys = MakeScene(drawing, {}, Labels).storeys.size();
    const auto columns = std::max(1.0, std::ceil(std::sqrt(static_cast<double>(storeys))));
    const double rows = std::max(1.0, std::ceil(static_cast<double>(storeys) / columns));
    const Point cell{frame.width / columns, frame.height / rows};
    const Frame first{frame.left, frame.top, cell.x - Margin, cell.y - Margin};
    Scene scene = MakeScene(drawing, FitView(drawing, first), Labels);
    for (SceneRoom& room : scene.rooms) {
        const auto storey = static_cast<double>(room.storey);
        const double row = std::floor(storey / columns);
        const Point offset{(storey - row * columns) * cell.x, row * cell.y};
        for (Point& point : room.outline)
            point = {point.x + offset.x, point.y + offset.y};
        room.label.centre = {room.label.centre.x + offset.x, room.label.centre.y + offset.y};
    }
    return scene;
}

std::string LegendSvg(const Scene& scene) {
    const double left = PictureWidth - LegendWidth;
    double y = TitleHeight + Margin;
    std::string svg = "<g id=\"legend\">\n";
    svg += TextAt(left, y, 18, " font-weight=\"bold\"", L"Geschosse");
    for (const SceneStorey& storey : scene.storeys) {
        y += LegendLine;
        svg += "<rect x=\"" + Number(left) + "\" y=\"" + Number(y - 16) +
               "\" width=\"26\" height=\"18\" stroke=\"#666666\" fill=\"" + Colour(storey.tint) +
               "\"/>\n";
        svg += TextAt(left + 36, y - 1, 16, "", storey.name + L": " + storey.Figures());
    }
    return svg + "</g>\n";
}

} // namespace

std::string EscapeMarkup(const std::wstring& text) {
    std::string escaped;
    for (const char letter : ToUtf8(text)) {
        switch (letter) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            // XML has no way to say most control characters.
            if (static_cast<unsigned char>(letter) < 0x20)
                escaped +=
                    letter == '\t' || letter == '\n' || letter == '\r' ? " " : "\xEF\xBF\xBD";
            else
                escaped += letter;
        }
    }
    // U+FFFE and U+FFFF are no characters to XML either.
    for (const char* bytes : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"})
        for (std::size_t at = escaped.find(bytes); at != std::string::npos;
             at = escaped.find(bytes, at))
            escaped.replace(at, 3, "\xEF\xBF\xBD");
    return escaped;
}

std::string DrawingSvg(const Drawing& drawing, Storeys storeys) {
    const Frame frame{Margin, TitleHeight + Margin, PictureWidth - LegendWidth - 3 * Margin,
                      PictureHeight - TitleHeight - 2 * Margin};
    const Scene scene = storeys == Storeys::Apart
                            ? ScenesApart(drawing, frame)
                            : MakeScene(drawing, FitView(drawing, frame), Labels);
    const std::wstring title = drawing.project.name.empty() ? L"Kalvero" : drawing.project.name;

    std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" +
                      Number(PictureWidth) + "\" height=\"" + Number(PictureHeight) +
                      "\" viewBox=\"0 0 " + Number(PictureWidth) + " " + Number(PictureHeight) +
                      "\" font-family=\"Segoe UI, DejaVu Sans, Arial, sans-serif\">\n";
    svg += "<title>" + EscapeMarkup(title) + "</title>\n";
    svg += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
    svg += TextAt(Margin, TitleHeight, 26, " font-weight=\"bold\"", title);
    for (std::size_t storey = 0; storey < scene.storeys.size(); ++storey)
        svg += StoreySvg(scene, drawing, storey);
    svg += LegendSvg(scene);
    return svg + "</svg>\n";
}

std::string PlanSvg(const Drawing& drawing, const std::wstring& storey, bool german) {
    const Frame frame{0, 0, PictureWidth, PictureHeight};
    const Scene scene =
        MakeScene(drawing, FitView(drawing, frame), {Labels.smallest, Labels.largest, german});
    // As much of the frame as the drawing takes.
    Point low{PictureWidth, PictureHeight};
    Point high{0, 0};
    for (const SceneRoom& room : scene.rooms) {
        for (const Point& point : room.outline) {
            low = {std::min(low.x, point.x), std::min(low.y, point.y)};
            high = {std::max(high.x, point.x), std::max(high.y, point.y)};
        }
    }
    const double edge = 2; // for the line around a room
    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" +
                      Number(low.x - edge) + " " + Number(low.y - edge) + " " +
                      Number(std::max(high.x - low.x, 0.0) + 2 * edge) + " " +
                      Number(std::max(high.y - low.y, 0.0) + 2 * edge) +
                      "\" font-family=\"Segoe UI, DejaVu Sans, Arial, sans-serif\">\n";
    for (std::size_t room = 0; room < scene.rooms.size(); ++room)
        if (drawing.elements[room].storey == storey)
            return svg + StoreySvg(scene, drawing, scene.rooms[room].storey) + "</svg>\n";
    return svg + "</svg>\n";
}

} // namespace kalvrooms
