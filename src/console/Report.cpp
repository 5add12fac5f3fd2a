#include "console/Report.h"

#include <algorithm>

#include "console/Sums.h"
#include "drawing/DrawingSvg.h"
#include "model/LetterRules.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

constexpr const char* style = R"(
:root { color-scheme: light; }
body { font: 11pt/1.45 "Segoe UI", "Liberation Sans", Arial, sans-serif; color: #1d232b;
       max-width: 60rem; margin: 2rem auto; padding: 0 1.5rem; }
h1 { font-size: 1.7rem; font-weight: 600; margin: 0; }
h2 { font-size: 1.2rem; font-weight: 600; margin: 2.2rem 0 .6rem; break-after: avoid; }
p.files { color: #5a6572; margin: .2rem 0 0; overflow-wrap: anywhere; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; }
thead { display: table-header-group; }
th { text-align: left; font-weight: 600; border-bottom: 1.5px solid #1d232b; }
th, td { padding: .22rem .6rem .22rem 0; vertical-align: top; }
td { border-bottom: 1px solid #dde2e8; overflow-wrap: anywhere; }
tr { break-inside: avoid; }
tbody tr:nth-child(-n+3) { break-after: avoid; }
.number { text-align: right; white-space: nowrap; }
tr.miss td { background: #fdecea; }
tr.miss td:last-child { font-weight: 600; color: #a3210f; }
dl { display: flex; flex-wrap: wrap; gap: 1rem 2.5rem; margin: 1.2rem 0 0; }
dt { color: #5a6572; font-size: .85em; }
dd { margin: 0; font-size: 1.25rem; font-weight: 600; }
figure { margin: 0 0 1.2rem; break-inside: avoid; }
figcaption { font-weight: 600; margin-bottom: .3rem; }
figcaption small { font-weight: 400; color: #5a6572; }
svg { width: 100%; height: auto; max-height: 20cm; }
@page { size: A4; margin: 16mm 14mm; }
@media print { body { max-width: none; margin: 0; padding: 0; font-size: 9.5pt; }
               svg { max-height: 10.5cm; }
               * { print-color-adjust: exact; -webkit-print-color-adjust: exact; } }
)";

std::string escaped(const std::string& text) {
    return EscapeMarkup(FromUtf8(text));
}

std::string cellOf(const nlohmann::ordered_json& cell, int decimals, const Speech& say) {
    if (cell.is_number_float())
        return "<td class=\"number\">" + NumberFor(say, cell.get<double>(), decimals) + "</td>";
    if (cell.is_number())
        return "<td class=\"number\">" + cell.dump() + "</td>";
    return "<td>" + (cell.is_string() ? escaped(cell.get<std::string>()) : std::string()) + "</td>";
}

// The class of a row is asked by its place.
template <class ClassOf>
std::string tableOf(const Table& table, const Speech& say, ClassOf classOf) {
    std::string html = "<table><thead><tr>";
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const bool number = std::any_of(table.rows.begin(), table.rows.end(),
                                        [&](const Table::Row& row) { return row[i].is_number(); });
        html += number ? "<th class=\"number\">" : "<th>";
        html += escaped(table.columns[i].title) + "</th>";
    }
    html += "</tr></thead><tbody>\n";
    for (std::size_t r = 0; r < table.rows.size(); ++r) {
        const std::string name = classOf(r);
        html += name.empty() ? "<tr>" : "<tr class=\"" + name + "\">";
        for (std::size_t i = 0; i < table.columns.size(); ++i)
            html += cellOf(table.rows[r][i], table.columns[i].decimals, say);
        html += "</tr>\n";
    }
    return html + "</tbody></table>\n";
}

// The sums of one kind, without the column that says so.
std::string sumSection(const Table& sums, const std::string& by, const std::string& title,
                       const Speech& say) {
    Table part;
    part.columns.assign(sums.columns.begin() + 1, sums.columns.end());
    for (const Table::Row& row : sums.rows)
        if (row.front() == by)
            part.rows.emplace_back(row.begin() + 1, row.end());
    part.columns.front().title = by;
    return "<h2>" + escaped(title) + "</h2>\n" +
           tableOf(part, say, [](std::size_t) { return std::string(); });
}

std::string key(const char* name, const std::string& value) {
    return std::string("<div><dt>") + name + "</dt><dd>" + escaped(value) + "</dd></div>\n";
}

std::string overview(const ReportInput& input, const std::vector<Pair>& pairs, const Speech& say) {
    const auto areaOf = [](const ConsoleRooms& rooms) {
        double area = 0.0;
        for (const ConsoleRoom& room : rooms.rooms)
            area += room.area;
        return area;
    };
    const auto count = [&](Pair::State state) {
        return std::to_string(std::count_if(pairs.begin(), pairs.end(),
                                            [&](const Pair& pair) { return pair.state == state; }));
    };
    return "<dl>\n" + key(say("Soll", "target"), NumberFor(say, areaOf(input.list), 2) + " m²") +
           key(say("Ist", "actual"), NumberFor(say, areaOf(input.built), 2) + " m²") +
           key(say("passen", "kept"), count(Pair::State::Kept)) +
           key(say("weichen ab", "missed"), count(Pair::State::Missed)) +
           key(say("fehlen", "missing"), count(Pair::State::Missing)) +
           key(say("zusätzlich", "surplus"), count(Pair::State::Surplus)) + "</dl>\n";
}

std::string plans(const Drawing& drawing, const Speech& say) {
    const auto isOf = [](const std::wstring& storey) {
        return [key = FoldedCase(storey)](const std::wstring& other) {
            return FoldedCase(other) == key;
        };
    };
    std::vector<std::wstring> storeys;
    for (const Element& element : drawing.elements)
        if (!element.outline.empty() &&
            std::none_of(storeys.begin(), storeys.end(), isOf(element.storey)))
            storeys.push_back(element.storey);
    std::string html;
    for (const std::wstring& storey : storeys) {
        std::int32_t rooms = 0;
        double area = 0.0;
        for (const Element& element : drawing.elements) {
            if (!isOf(storey)(element.storey))
                continue;
            ++rooms;
            area += drawing.FloorArea(element);
        }
        const std::string name =
            storey.empty() ? say("(ohne Geschoss)", "(no storey)") : ToUtf8(storey);
        html += "<figure><figcaption>" + escaped(name) + " <small>" + std::to_string(rooms) +
                (rooms == 1 ? say(" Raum, ", " room, ") : say(" Räume, ", " rooms, ")) +
                NumberFor(say, area, 2) + " m²</small></figcaption>\n" +
                PlanSvg(drawing, storey, say.german) + "</figure>\n";
    }
    return html;
}

} // namespace

std::string ReportPage(const ReportInput& input, const Speech& say) {
    const std::vector<Pair> pairs = ComparePairs(input.list, input.built, input.tolerance);
    const Table comparison = ComparisonOf(pairs, say);
    const Table sums = SumsOf(input.list, say);
    const std::string title =
        say("Raumprogramm: Soll und Ist", "Room programme: target and actual");
    std::string html = std::string("<!DOCTYPE html>\n<html lang=\"") + say("de", "en") +
                       "\">\n<head>\n<meta charset=\"utf-8\">\n"
                       "<meta name=\"viewport\" content=\"width=device-width\">\n<title>" +
                       escaped(title) + "</title>\n<style>" + style + "</style>\n</head>\n<body>\n";
    html += "<h1>" + escaped(title) + "</h1>\n<p class=\"files\">" + escaped(input.list.file) +
            " · " + escaped(input.built.file) + "</p>\n" + overview(input, pairs, say);
    html += sumSection(sums, say("Geschoss", "storey"),
                       say("Soll nach Geschoss", "Target by storey"), say);
    html +=
        sumSection(sums, say("Nutzung", "use"), say("Soll nach DIN 277", "Target by DIN 277"), say);
    html += sumSection(sums, say("Funktion", "function"),
                       say("Soll nach Funktion", "Target by function"), say);
    html += "<h2>" + std::string(say("Soll und Ist", "Target and actual")) + "</h2>\n" +
            tableOf(comparison, say, [&](std::size_t row) {
                return pairs[row].state == Pair::State::Kept ? std::string() : std::string("miss");
            });
    html +=
        "<h2>" + std::string(say("Grundrisse", "Plans")) + "</h2>\n" + plans(input.drawing, say);
    return html + "</body>\n</html>\n";
}

} // namespace kalvrooms
