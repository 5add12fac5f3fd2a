#pragma once
// The names of keys, as menus show them.

#include <string>
#include <vector>

#include "app/Texts.h"
#include "platform/Gui.h"

namespace kalvrooms {

// "Strg+Umschalt+S"; several that do the same stand one after the other.
std::wstring ShortcutText(const std::vector<Gui::KeyStroke>& keys, const Texts& texts);

} // namespace kalvrooms
