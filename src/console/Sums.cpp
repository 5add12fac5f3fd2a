#include "console/Sums.h"

#include <algorithm>
#include <functional>
#include <unordered_map>

#include "console/Din277.h"

namespace kalvrooms {
namespace {

struct Sum {
    std::string group;
    std::int32_t count = 0;
    double area = 0.0;

    void add(const ConsoleRoom& room) {
        ++count;
        area += room.area;
    }
};

// Groups in the order in which they first appear.
class Groups {
  public:
    void add(const std::string& group, const ConsoleRoom& room) {
        const auto [found, isNew] = index_.try_emplace(group, sums_.size());
        if (isNew)
            sums_.push_back({group});
        sums_[found->second].add(room);
    }
    const std::vector<Sum>& sums() const { return sums_; }

  private:
    std::vector<Sum> sums_;
    std::unordered_map<std::string, std::size_t> index_;
};

class SumTable {
  public:
    SumTable(const ConsoleRooms& rooms, const Speech& say) : rooms_(rooms), say_(say) {
        for (const ConsoleRoom& room : rooms.rooms)
            all_.add(room);
        table.columns = {
            {"by", say("nach", "by")},
            {"group", say("Gruppe", "group")},
            {"count", say("Anzahl", "count"), 0},
            {"area", rooms.isList ? say("Soll m²", "target m²") : say("Ist m²", "actual m²")},
            {"share", say("Anteil %", "share %"), 1}};
    }

    void storeys() {
        Groups groups;
        for (const ConsoleRoom& room : rooms_.rooms)
            groups.add(room.storey, room);
        for (const Sum& sum : groups.sums())
            row(say_("Geschoss", "storey"), sum);
    }

    void functions() {
        Groups groups;
        for (const ConsoleRoom& room : rooms_.rooms)
            groups.add(room.function, room);
        for (const Sum& sum : groups.sums())
            row(say_("Funktion", "function"), sum);
    }

    // Each use that occurs, in the order of the norm; then the norm's sums; then what is no use.
    void uses() {
        std::unordered_map<std::string, Sum> known;
        Groups unknown;
        for (const ConsoleRoom& room : rooms_.rooms) {
            const std::string use = Din277::UseOf(room.occupancy);
            if (!use.empty())
                known[use].add(room);
            else
                unknown.add(room.occupancy, room);
        }
        const char* by = say_("Nutzung", "use");
        for (const std::string& use : Din277::Uses()) {
            const auto found = known.find(use);
            if (found == known.end())
                continue;
            found->second.group = use;
            row(by, found->second);
        }
        const auto total = [&](const char* name,
                               const std::function<bool(const std::string&)>& belongs) {
            Sum sum{name};
            for (const ConsoleRoom& room : rooms_.rooms)
                if (belongs(room.occupancy))
                    sum.add(room);
            if (sum.count > 0)
                row(by, sum);
        };
        total(say_("NF gesamt (NF, HNF, NNF)", "NF total (NF, HNF, NNF)"), Din277::IsOldUsefulArea);
        total(say_("NUF gesamt (NUF 1 bis 7)", "NUF total (NUF 1 to 7)"), Din277::IsUsefulArea);
        for (const Sum& sum : unknown.sums())
            row(by, sum);
        total(say_("Netto-Grundfläche", "net floor area"), [](const std::string&) { return true; });
    }

    Table table;

  private:
    void row(const char* by, const Sum& sum) {
        const bool isNothing = sum.group.find_first_not_of(' ') == std::string::npos;
        const double share = all_.area == 0.0 ? 0.0 : 100.0 * sum.area / all_.area;
        table.rows.push_back({by,
                              isNothing ? say_("(kein Eintrag)", "(no entry)") : sum.group.c_str(),
                              sum.count, sum.area, share});
    }

    const ConsoleRooms& rooms_;
    const Speech& say_;
    Sum all_;
};

} // namespace

Table SumsOf(const ConsoleRooms& rooms, const Speech& say) {
    SumTable sums(rooms, say);
    sums.storeys();
    sums.uses();
    sums.functions();
    return std::move(sums.table);
}

} // namespace kalvrooms
