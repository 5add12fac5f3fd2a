#include "ifc/Units.h"

#include <cmath>
#include <map>
#include <string_view>

namespace kalvrooms::ifc {
namespace {

// Units made of units, as a foot of 12 inches; no file goes deeper.
constexpr int mostNested = 16;
// And none of more than a few others.
constexpr int mostElements = 16;

double prefixFactor(const Value& prefix) {
    static const std::map<std::string_view, double> factors{
        {"EXA", 1e18},  {"PETA", 1e15},  {"TERA", 1e12},   {"GIGA", 1e9},
        {"MEGA", 1e6},  {"KILO", 1e3},   {"HECTO", 1e2},   {"DECA", 1e1},
        {"DECI", 1e-1}, {"CENTI", 1e-2}, {"MILLI", 1e-3},  {"MICRO", 1e-6},
        {"NANO", 1e-9}, {"PICO", 1e-12}, {"FEMTO", 1e-15}, {"ATTO", 1e-18}};
    if (prefix.IsNull())
        return 1.0;
    const auto found = factors.find(prefix.Word());
    if (found == factors.end())
        prefix.Refuse("a prefix of a unit is expected");
    return found->second;
}

double factorOf(const Instance& unit, int depth) {
    if (depth > mostNested)
        unit.Refuse("the unit is made of itself");
    if (unit.Is("IFCSIUNIT")) {
        const std::string_view name = unit[3].Word();
        const double prefix = prefixFactor(unit[2]);
        // The prefix belongs to the metre that is squared: a square millimetre is 1e-6.
        return name.starts_with("SQUARE_")  ? prefix * prefix
               : name.starts_with("CUBIC_") ? prefix * prefix * prefix
                                            : prefix;
    }
    if (unit.Is("IFCCONVERSIONBASEDUNIT") || unit.Is("IFCCONVERSIONBASEDUNITWITHOFFSET")) {
        const Instance factor = unit.Follow(3);
        return factor[0].Untyped().Number() * factorOf(factor.Follow(1), depth + 1);
    }
    if (unit.Is("IFCDERIVEDUNIT")) {
        double product = 1.0;
        int elements = 0;
        for (const Value element : unit[0]) {
            if (++elements > mostElements)
                unit.Refuse("the unit is made of too many others");
            const Instance part = unit.Arguments().File().Get(element);
            product *=
                std::pow(factorOf(part.Follow(0), depth + mostNested / 2 + 1), part[1].Number());
        }
        return product;
    }
    unit.Refuse("a unit with a known size is expected");
}

} // namespace

double UnitFactor(const Instance& unit) {
    const double factor = factorOf(unit, 0);
    if (!(factor > 0.0) || !std::isfinite(factor))
        unit.Refuse("a unit is greater than 0");
    return factor;
}

namespace {

void readUnit(const Instance& unit, Units& units, bool& hasArea) {
    if (unit.Is("IFCMONETARYUNIT"))
        return;
    const Value type = unit[1];
    if (type.IsNull())
        return;
    const std::string_view word = type.Word();
    if (word == "LENGTHUNIT") {
        units.length = UnitFactor(unit);
    } else if (word == "AREAUNIT") {
        units.area = UnitFactor(unit);
        hasArea = true;
    } else if (word == "PLANEANGLEUNIT") {
        units.angle = UnitFactor(unit);
    }
}

} // namespace

Units ReadUnits(const StepFile& file) {
    Units units;
    bool hasArea = false;
    for (const InstanceId project : file.OfType("IFCPROJECT")) {
        const Value assignment = file.Get(project)[8];
        if (assignment.IsNull())
            continue;
        for (const Value unit : file.Get(assignment)[0])
            readUnit(file.Get(unit), units, hasArea);
    }
    if (!hasArea)
        units.area = units.length * units.length;
    return units;
}

} // namespace kalvrooms::ifc
