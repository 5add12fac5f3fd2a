#pragma once
// Says everything in the reader's language: both words stand side by side where they are used.

#include <string>

namespace kalvrooms {

struct Speech {
    bool german = true;

    const char* operator()(const char* deutsch, const char* english) const {
        return german ? deutsch : english;
    }
};

} // namespace kalvrooms
