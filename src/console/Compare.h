#pragma once
// Target areas of a list beside the actual ones of a drawing.

#include <optional>
#include <string>
#include <vector>

#include "console/ConsoleRoom.h"
#include "console/Table.h"

namespace kalvrooms {

// How far an actual area may be off: per cent of the target, or square metres.
struct Tolerance {
    double value = 0.0;
    bool isPercent = true;

    // "5%", "2.5 %", "0,5"; nothing for a text that is neither, or negative.
    static std::optional<Tolerance> From(const std::string& text);
    bool Allows(double target, double actual) const;
};

struct Pair {
    enum class State { Kept, Missed, Missing, Surplus };
    const ConsoleRoom* wanted = nullptr;
    const ConsoleRoom* built = nullptr;
    State state = State::Kept;
};

// The list's rooms in their order, then the drawing's that the list does not know. Rooms are the
// same by identity, else by designation and storey (letter case of the storey aside), first come.
std::vector<Pair> ComparePairs(const ConsoleRooms& list, const ConsoleRooms& drawing,
                               const Tolerance& tolerance);
Table ComparisonOf(const std::vector<Pair>& pairs, const Speech& say);

} // namespace kalvrooms
