#pragma once
// What readers of models and practice drawings complain about, in the words of the user.

#include <string>

namespace kalvrooms::ifc {

// The readers speak English; places in the file and what stands there remain as they are.
std::string InGerman(std::string trouble);
std::wstring InGerman(const std::wstring& trouble);

} // namespace kalvrooms::ifc
