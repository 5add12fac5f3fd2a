#pragma once
// The manual page and the shell's completion, made from the same table of options as the help.

#include <string>

#include "console/Speech.h"

namespace CLI {
class App;
}

namespace kalvrooms {

// The group of the options that all commands have.
const char* EveryCommand(const Speech& say);

std::string ManualPage(const CLI::App& app, const Speech& say); // troff
std::string Completion(const CLI::App& app);                    // bash

} // namespace kalvrooms
