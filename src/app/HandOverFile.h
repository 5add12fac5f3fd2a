#pragma once
// The hand-over file that the host writes beside the executable before it starts the program: an
// own line of the host, the help file, the settings key path, the language code. 8-bit text, one
// entry a line.

#include "app/ProgramContext.h"

namespace kalvrooms {

// Applies each line as it is read; stops without a word where the file ends, is missing or a line
// cannot be used, keeping what was applied before.
void ReadHandOverFile(ProgramContext& context);

} // namespace kalvrooms
