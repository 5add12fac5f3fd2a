#pragma once
// A file that cannot be used; the message begins with its name.

#include <stdexcept>

namespace kalvrooms {

struct FileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace kalvrooms
