// The entry of qto where arguments and streams are bytes.

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "console/Qto.h"

namespace {

// As the system looks it up: the first that is set says it.
std::string localeName(const char* category) {
    for (const char* name : {"LC_ALL", category, "LANG"})
        if (const char* value = std::getenv(name); value && *value)
            return value;
    return {};
}

} // namespace

int main(int count, char** values) {
    using namespace kalvrooms;
    std::ios::sync_with_stdio(false);
    // The decimal comma is what most of Europe writes; German is the one that lists come with.
    const bool comma = localeName("LC_NUMERIC").starts_with("de");
    const Console console{std::cin,
                          std::cout,
                          std::cerr,
                          localeName("LC_MESSAGES").starts_with("de"),
                          comma ? NumberLocale::German() : NumberLocale::Point(),
                          isatty(STDERR_FILENO) != 0};
    return RunQto(std::vector<std::string>(values + 1, values + count), console);
}
