#include "console/Compare.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <deque>
#include <unordered_map>
#include <unordered_set>

#include "model/LetterRules.h"
#include "model/Utf8.h"

namespace kalvrooms {
namespace {

// Half of the last decimal that areas are shown with: nobody sees a smaller difference.
constexpr double unseen = 0.005;

std::string identity(const ConsoleRoom& room) {
    return std::to_string(room.componentId) + '-' + room.fileId;
}

std::string place(const ConsoleRoom& room) {
    return room.name + '\n' + ToUtf8(FoldedCase(FromUtf8(room.storey)));
}

using Taken = std::unordered_set<const ConsoleRoom*>;

// Rooms of the drawing under a key, each handed out once.
class Supply {
  public:
    void put(const std::string& key, const ConsoleRoom& room) { rooms_[key].push_back(&room); }
    // The first that nobody has taken yet, or null.
    const ConsoleRoom* take(const std::string& key, Taken& taken) {
        std::deque<const ConsoleRoom*>& rooms = rooms_[key];
        while (!rooms.empty() && taken.contains(rooms.front()))
            rooms.pop_front();
        if (rooms.empty())
            return nullptr;
        taken.insert(rooms.front());
        return rooms.front();
    }

  private:
    std::unordered_map<std::string, std::deque<const ConsoleRoom*>> rooms_;
};

} // namespace

std::optional<Tolerance> Tolerance::From(const std::string& text) {
    std::string number = text;
    std::erase(number, ' ');
    Tolerance tolerance;
    tolerance.isPercent = number.ends_with('%');
    if (tolerance.isPercent)
        number.pop_back();
    std::replace(number.begin(), number.end(), ',', '.');
    const auto [end, error] =
        std::from_chars(number.data(), number.data() + number.size(), tolerance.value);
    if (error != std::errc() || end != number.data() + number.size() || !(tolerance.value >= 0.0) ||
        !std::isfinite(tolerance.value))
        return std::nullopt;
    return tolerance;
}

bool Tolerance::Allows(double target, double actual) const {
    const double limit = isPercent ? std::abs(target) * value / 100.0 : value;
    return std::abs(actual - target) <= limit + unseen;
}

std::vector<Pair> ComparePairs(const ConsoleRooms& list, const ConsoleRooms& drawing,
                               const Tolerance& tolerance) {
    Supply byIdentity;
    Supply byPlace;
    for (const ConsoleRoom& room : drawing.rooms) {
        if (room.HasIdentity())
            byIdentity.put(identity(room), room);
        byPlace.put(place(room), room);
    }
    Taken taken;
    std::vector<Pair> pairs;
    for (const ConsoleRoom& wanted : list.rooms)
        pairs.push_back({&wanted,
                         wanted.HasIdentity() ? byIdentity.take(identity(wanted), taken) : nullptr,
                         Pair::State::Missing});
    // Identities are settled for the whole list before a designation may take a room.
    for (Pair& pair : pairs) {
        if (!pair.built)
            pair.built = byPlace.take(place(*pair.wanted), taken);
        if (pair.built)
            pair.state = tolerance.Allows(pair.wanted->area, pair.built->area)
                             ? Pair::State::Kept
                             : Pair::State::Missed;
    }
    for (const ConsoleRoom& room : drawing.rooms)
        if (!taken.contains(&room))
            pairs.push_back({nullptr, &room, Pair::State::Surplus});
    return pairs;
}

Table ComparisonOf(const std::vector<Pair>& pairs, const Speech& say) {
    Table table;
    table.columns = {{"name", say("Bezeichnung", "designation")},
                     {"storey", say("Geschoss", "storey")},
                     {"function", say("Funktion", "function")},
                     {"target", say("Soll m²", "target m²")},
                     {"actual", say("Ist m²", "actual m²")},
                     {"difference", say("Differenz m²", "difference m²")},
                     {"percent", "%", 1},
                     {"state", say("Befund", "finding")}};
    for (const Pair& pair : pairs) {
        const ConsoleRoom& room = pair.wanted ? *pair.wanted : *pair.built;
        Table::Row row = {room.name, room.storey, room.function, nullptr,
                          nullptr,   nullptr,     nullptr};
        if (pair.wanted)
            row[3] = pair.wanted->area;
        if (pair.built)
            row[4] = pair.built->area;
        if (pair.wanted && pair.built) {
            const double difference = pair.built->area - pair.wanted->area;
            row[5] = difference;
            if (pair.wanted->area != 0.0)
                row[6] = 100.0 * difference / pair.wanted->area;
        }
        switch (pair.state) {
        case Pair::State::Kept:
            row.emplace_back(say("passt", "kept"));
            break;
        case Pair::State::Missed:
            row.emplace_back(say("weicht ab", "missed"));
            break;
        case Pair::State::Missing:
            row.emplace_back(say("fehlt", "missing"));
            break;
        case Pair::State::Surplus:
            row.emplace_back(say("zusätzlich", "surplus"));
            break;
        }
        table.rows.push_back(std::move(row));
    }
    return table;
}

} // namespace kalvrooms
