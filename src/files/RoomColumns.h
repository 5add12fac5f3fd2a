#pragma once
// The eleven columns that text files and sheets have in common: their titles by text number, in
// order.

#include <array>
#include <cstddef>
#include <cstdint>

namespace kalvrooms {

inline constexpr std::array<std::int32_t, 11> RoomColumnTitles = {20, 21, 22, 23, 24, 25,
                                                                  26, 30, 94, 95, 96};
inline constexpr std::size_t RoomColumnCount = RoomColumnTitles.size();

} // namespace kalvrooms
