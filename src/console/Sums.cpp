#include "console/Sums.h"

#include <string_view>
#include <unordered_map>

#include "console/Din277.h"
#include "model/LetterRules.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

struct Sum {
    std::string group;
    std::int32_t count = 0;
    double area = 0.0;

    void add(std::int32_t rooms, double squareMetres) {
        count += rooms;
        area += squareMetres;
    }
};

// Groups in the order in which they first appear.
class Groups {
  public:
    void add(const std::string& group, double area) {
        const auto [found, isNew] = index_.try_emplace(group, sums_.size());
        if (isNew)
            found->second = placeOf(group);
        sums_[found->second].add(1, area);
    }
    const std::vector<Sum>& sums() const { return sums_; }

  private:
    // Letter case tells no groups apart.
    std::size_t placeOf(const std::string& group) {
        const auto [found, isNew] = folded_.try_emplace(FoldedCase(FromUtf8(group)), sums_.size());
        if (isNew)
            sums_.push_back({group});
        return found->second;
    }

    std::vector<Sum> sums_;
    // By how they are written, and without letter case.
    std::unordered_map<std::string, std::size_t> index_;
    std::unordered_map<std::wstring, std::size_t> folded_;
};

class SumTable {
  public:
    SumTable(bool isList, const Speech& say) : isList_(isList), say_(say) {}

    void add(const std::string& storey, const std::string& occupancy, const std::string& function,
             double area) {
        all_.add(1, area);
        storeys_.add(storey, area);
        occupancies_.add(occupancy, area);
        functions_.add(function, area);
    }

    Table table() {
        table_.columns = {
            {"by", say_("nach", "by")},
            {"group", say_("Gruppe", "group")},
            {"count", say_("Anzahl", "count"), 0},
            {"area", isList_ ? say_("Soll m²", "target m²") : say_("Ist m²", "actual m²")},
            {"share", say_("Anteil %", "share %"), 1}};
        for (const Sum& sum : storeys_.sums())
            row(say_("Geschoss", "storey"), sum);
        uses();
        for (const Sum& sum : functions_.sums())
            row(say_("Funktion", "function"), sum);
        return std::move(table_);
    }

  private:
    // Each use that occurs, in the order of the norm; then the norm's sums; then what is no use.
    void uses() {
        std::unordered_map<std::string, Sum> known;
        std::vector<const Sum*> unknown;
        for (const Sum& sum : occupancies_.sums()) {
            const std::string use = Din277::UseOf(sum.group);
            if (!use.empty())
                known[use].add(sum.count, sum.area);
            else
                unknown.push_back(&sum);
        }
        const char* by = say_("Nutzung", "use");
        for (const std::string& use : Din277::Uses()) {
            const auto found = known.find(use);
            if (found == known.end())
                continue;
            found->second.group = use;
            row(by, found->second);
        }
        total(say_("NF gesamt (NF, HNF, NNF)", "NF total (NF, HNF, NNF)"), Din277::IsOldUsefulArea);
        total(say_("NUF gesamt (NUF 1 bis 7)", "NUF total (NUF 1 to 7)"), Din277::IsUsefulArea);
        for (const Sum* sum : unknown)
            row(by, *sum);
        total(say_("Netto-Grundfläche", "net floor area"), [](std::string_view) { return true; });
    }

    void total(const char* name, bool (*belongs)(std::string_view)) {
        Sum total{name};
        for (const Sum& sum : occupancies_.sums())
            if (belongs(sum.group))
                total.add(sum.count, sum.area);
        if (total.count > 0)
            row(say_("Nutzung", "use"), total);
    }

    void row(const char* by, const Sum& sum) {
        const bool isNothing = sum.group.find_first_not_of(' ') == std::string::npos;
        const double share = all_.area == 0.0 ? 0.0 : 100.0 * sum.area / all_.area;
        table_.rows.push_back({by,
                               isNothing ? say_("(kein Eintrag)", "(no entry)") : sum.group.c_str(),
                               sum.count, sum.area, share});
    }

    const bool isList_;
    const Speech& say_;
    Sum all_;
    Groups storeys_, occupancies_, functions_;
    Table table_;
};

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

} // namespace

Table SumsOf(const ConsoleRooms& rooms, const Speech& say) {
    SumTable sums(rooms.isList, say);
    for (const ConsoleRoom& room : rooms.rooms)
        sums.add(room.storey, room.occupancy, room.function, room.area);
    return sums.table();
}

Table SumsOf(const RoomRows& rows, const NumberLocale& locale, const Speech& say) {
    SumTable sums(true, say);
    for (const RoomRows::Row& row : rows.rows)
        sums.add(trimmed(row.fields[StoryColumn]), trimmed(row.fields[OccupancyColumn]),
                 trimmed(row.fields[FunctionColumn]),
                 NumberOrZero(Trim(FromUtf8(row.fields[AreaColumn])), locale));
    return sums.table();
}

} // namespace kalvrooms
