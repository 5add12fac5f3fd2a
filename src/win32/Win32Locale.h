#pragma once
// How the user writes numbers.

#include "model/NumberText.h"

namespace kalvrooms {

// Asked anew on every call: the user may change it while the program runs.
NumberLocale Win32UserLocale();

} // namespace kalvrooms
