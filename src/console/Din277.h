#pragma once
// The words of DIN 277 for the use of a room's area: those of 2005 and before (NF with HNF 1 to 6
// and NNF, FF, TF, VF; all of them the net floor area NGF) and those of 2016 on (NUF 1 to 7, TF,
// VF; all of them the net room area NRF).

#include <string>
#include <string_view>
#include <vector>

namespace kalvrooms::Din277 {

// The use that a text begins with, as lists write it: "HNF 3" of "hnf3"; empty where there is none.
std::string UseOf(std::string_view text);

// Uses in the order of the norm: NF, HNF, NNF, FF, NUF, TF, VF, each with its numbers behind it.
const std::vector<std::string>& Uses();
bool IsUse(std::string_view word);
// HNF, NNF and NF add up to the useful area of old, NUF 1 to 7 and NUF to that of today.
bool IsOldUsefulArea(std::string_view word);
bool IsUsefulArea(std::string_view word);

// a, b, c and bc.
bool IsEnclosure(std::string_view word);
// N, M, L, the uses, and the sums that the norm has names for.
bool IsAreaType(std::string_view word);

} // namespace kalvrooms::Din277
