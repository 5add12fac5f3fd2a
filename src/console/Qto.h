#pragma once
// qto: lists, drawings and the bridge between them on the command line.

#include <chrono>
#include <iosfwd>
#include <string>
#include <vector>

#include "model/NumberText.h"

namespace kalvrooms {

// The console as its system gives it. Streams carry bytes as they are; texts are UTF-8.
struct Console {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    bool german = true;  // the user's language
    NumberLocale locale; // how the user writes numbers
    // Whether a person sees the error stream, and how long that person waits without a word.
    bool isWatched = false;
    std::chrono::milliseconds patience{1000};
};

namespace ExitCode {
inline constexpr int Done = 0;
inline constexpr int Findings = 1;
inline constexpr int Cannot = 2;
} // namespace ExitCode

// The arguments without the program's own name.
int RunQto(const std::vector<std::string>& arguments, const Console& console);

} // namespace kalvrooms
