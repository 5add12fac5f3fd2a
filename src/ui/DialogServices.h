#pragma once
// What every dialog works with.

#include <string>

#include "app/Texts.h"
#include "platform/Gui.h"

namespace kalvrooms {

struct DialogServices {
    Gui::Desktop& desktop;
    const Texts& texts;
    // The file that F1 opens; empty until the host named one.
    const std::wstring& helpFile;
};

} // namespace kalvrooms
