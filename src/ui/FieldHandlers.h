#pragma once
// The handlers that text fields of all dialogs share: select all on entry, swallow keys that do not
// belong into a number, show the number in full on leaving.

#include <cstdint>
#include <string>

#include "platform/Gui.h"

namespace kalvrooms {

using KeyFilter = bool (*)(std::int16_t keyCode);
using Normalizer = std::wstring (*)(const std::wstring& text);

// So that typing replaces what the field holds.
void SelectAllOnEntry(Gui::TextField& field);
void FilterKeys(Gui::TextField& field, KeyFilter accepts);
void NormalizeOnLeaving(Gui::TextField& field, Normalizer normalize);
// The same at once, for keys that act without leaving the field. The normalizer's error goes to the
// caller, the text then stays.
void NormalizeField(Gui::TextField& field, Normalizer normalize);

} // namespace kalvrooms
