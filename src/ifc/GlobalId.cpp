#include "ifc/GlobalId.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <string_view>
#include <unordered_set>

namespace kalvrooms::ifc {
namespace {

constexpr std::string_view letters =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
constexpr std::int32_t highest = 0x7FFFFFFF;

std::int32_t hash(std::string_view text) {
    std::uint64_t value = 14695981039346656037u;
    for (const char c : text)
        value = (value ^ static_cast<unsigned char>(c)) * 1099511628211u;
    return static_cast<std::int32_t>((value ^ value >> 33) & highest);
}

} // namespace

std::string NewGlobalId() {
    std::random_device device;
    std::uniform_int_distribution<int> letter(0, 63);
    std::string id(22, '0');
    for (char& c : id)
        c = letters[static_cast<std::size_t>(letter(device))];
    // 22 letters hold 132 bits, an identifier has 128.
    id[0] = letters[static_cast<std::size_t>(letter(device) % 4)];
    return id;
}

std::vector<std::int32_t> ComponentIds(const std::vector<std::string>& globalIds) {
    std::vector<std::size_t> order(globalIds.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return globalIds[a] < globalIds[b]; });
    std::vector<std::int32_t> ids(globalIds.size());
    std::unordered_set<std::int32_t> taken;
    for (const std::size_t i : order) {
        ids[i] = hash(globalIds[i]);
        while (!taken.insert(ids[i]).second)
            ids[i] = ids[i] == highest ? 0 : ids[i] + 1;
    }
    return ids;
}

} // namespace kalvrooms::ifc
