#pragma once
// The hand-over file that the host writes beside the executable before it starts the program: an
// own line of the host, the help file, the settings key path, the language code. 8-bit text, one
// entry a line.

#include <string>

#include "platform/Platform.h"

namespace kalvrooms {

// Where the values of the file go.
class StartValues {
  public:
    virtual ~StartValues() = default;
    // The help file that F1 opens.
    virtual void HelpFile(const std::wstring& path) = 0;
    // Settings key path below the current user's hive.
    virtual void SetRegKey(const std::wstring& path) = 0;
    // A new text table: the German defaults, overlaid by the language's library if there is one.
    virtual void SetLang(const std::wstring& code) = 0;
};

// Applies each line as it is read; stops without a word where the file ends, is missing or a line
// cannot be used, keeping what was applied before.
void ReadHandOverFile(const Environment& environment, const AnsiCodec& ansi, StartValues& values);

} // namespace kalvrooms
