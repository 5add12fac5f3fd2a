#pragma once
// The words of DIN 277 for the use of an area: of today (NUF 1 to 7, TF, VF) and of before (NF, HNF
// 1 to 6, NNF, FF).

#include <optional>
#include <string>
#include <string_view>

namespace kalvrooms {

struct Din277Use {
    // In capitals.
    std::wstring word;
    // 0 where the word stands alone.
    int number = 0;

    // As lists write it: "HNF 5".
    std::wstring Text() const;
    bool operator==(const Din277Use&) const = default;
};

// Small letters and a missing blank are let pass, and so is what follows behind the number ("NUF
// 2.1", "TF - Technik"). Nothing for a text that does not begin with such a word.
std::optional<Din277Use> ParseDin277Use(std::wstring_view text);

// The classes of DIN 277 by their number: 1 to 7 are useful areas, 8 is technical, 9 circulation.
std::optional<Din277Use> Din277UseByNumber(std::wstring_view text);

} // namespace kalvrooms
