#pragma once
// Words of the program that a language library may give, and German ones that stand in for them.
// The text table itself stays empty at these numbers until a library fills it.

#include <cstdint>
#include <string>
#include <vector>

#include "app/Texts.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

// The text of this number, or the program's own German where the text is empty or blank. "%1" to
// "%9" become the parts; a part's own "%" is left as it is.
std::wstring MessageText(const Texts& texts, std::int32_t number,
                         const std::vector<std::wstring>& parts = {});

// What an error says: the runtime's own descriptions have texts, a server's stays as it is.
std::wstring DescriptionText(const Texts& texts, const RuntimeError& error);

// The German that stands in for an empty text; empty where there is none.
std::wstring GermanMessage(std::int32_t number);

} // namespace kalvrooms
