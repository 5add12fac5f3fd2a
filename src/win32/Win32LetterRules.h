#pragma once
// Letter case and alphabetical order as Windows has them.

#include "model/LetterRules.h"

namespace kalvrooms {

// The user's alphabetical order is asked anew for every text: the user may change it meanwhile.
LetterRules Win32LetterRules();

} // namespace kalvrooms
