#pragma once
// A file as it is named on the command line, with what --format says about its kind.

#include <string>
#include <vector>

#include "console/Speech.h"

namespace kalvrooms {

struct FileArgument {
    std::string name;   // "-" is standard input or output
    std::string format; // empty: told by the contents, or by the name of what is written

    bool IsStandardStream() const { return name == "-"; }
};

// What a command does with one of its files.
struct FilePlace {
    enum class Takes { List, Drawing, Either };
    std::string key; // LIST, DRAWING, OUT or FILE
    FileArgument* file = nullptr;
    Takes takes = Takes::List;
    bool isWritten = false;
};

// Kinds that --format knows.
const std::vector<std::string>& FileFormats();

// Gives the files the kinds of "--format KIND" and "--format PLACE=KIND". A kind without a place
// goes to a standard stream, else to what is written, else to what is read, as far as the kind
// fits. Error: FileError, also where two files are to come from standard input.
void ApplyFormats(const std::vector<std::string>& formats, const std::vector<FilePlace>& places,
                  const Speech& say);

} // namespace kalvrooms
