#include "ifc/SpaceShape.h"

#include <algorithm>

#include "ifc/Names.h"
#include "ifc/Placements.h"

namespace kalvrooms::ifc {
namespace {

constexpr int bodyRank = 1;

// Less is better. A footprint says what we want to know; a box says it only roughly.
int rankOf(const Instance& representation) {
    const std::wstring name =
        representation[1].IsText() ? PlainName(representation[1].Text()) : std::wstring();
    if (name == L"footprint")
        return 0;
    if (name == L"body")
        return bodyRank;
    if (name == L"box")
        return 4;
    return name == L"axis" || name == L"cog" || name == L"annotation" ? 3 : 2;
}

std::vector<Instance> representationsOf(const Instance& space) {
    std::vector<Instance> representations;
    if (space[6].IsNull())
        return representations;
    for (const Value member : space.Follow(6)[2])
        representations.push_back(space.Arguments().File().Get(member));
    std::stable_sort(representations.begin(), representations.end(),
                     [](const Instance& a, const Instance& b) { return rankOf(a) < rankOf(b); });
    return representations;
}

std::optional<Ground> groundOf(Geometry& geometry, const Instance& representation,
                               const Transform& place, std::vector<std::string>& troubles) {
    geometry.StartShape();
    return GroundOutline(
        ReadShape(geometry, representation, place, troubles),
        [&](std::size_t steps) { geometry.Spend(representation.Arguments(), steps); });
}

} // namespace

std::optional<Ground> ReadSpaceShape(Geometry& geometry, const Instance& space,
                                     std::vector<std::string>& troubles) {
    // What could be read of a shape that is not whole counts only where no other one is.
    std::optional<Ground> part;
    try {
        const Transform place = ReadPlacement(geometry, space[5]);
        for (const Instance& representation : representationsOf(space)) {
            const std::size_t before = troubles.size();
            try {
                auto ground = groundOf(geometry, representation, place, troubles);
                if (ground && troubles.size() == before)
                    return ground;
                if (!part)
                    part = std::move(ground);
            } catch (const StepError& error) {
                troubles.push_back(error.what());
            }
        }
    } catch (const StepError& error) {
        troubles.push_back(error.what());
    }
    return part;
}

std::optional<Ground> ReadSpaceBody(Geometry& geometry, const Instance& space) {
    try {
        std::vector<std::string> troubles;
        for (const Instance& representation : representationsOf(space)) {
            if (rankOf(representation) != bodyRank)
                continue;
            auto ground =
                groundOf(geometry, representation, ReadPlacement(geometry, space[5]), troubles);
            return troubles.empty() ? std::move(ground) : std::nullopt;
        }
    } catch (const StepError&) {
        // A body that cannot be read says nothing about its height.
    }
    return std::nullopt;
}

} // namespace kalvrooms::ifc
