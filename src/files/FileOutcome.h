#pragma once
// How reading or writing a list ended. The files themselves tell the user nothing but text 73.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "model/RuntimeError.h"
#include "model/clsRoom.h"

namespace kalvrooms {

// How far an operation has come.
struct ListProgress {
    // The row that is being read or written, 1 being the header's; 0 before and after.
    std::int32_t row = 0;
    // All rooms came in, or the file holds all of them.
    bool whole = false;
    // There was a file before; it stays until the new one is complete.
    bool keepsOldFile = false;
};

struct FileOutcome {
    bool complete = true;
    // Why it is not; unset where the user knows already.
    std::optional<RuntimeError> failure;
    // The spreadsheet application is there, but does not take calls at the moment.
    bool busy = false;
    // The row that ended the reading; 0 when there was none.
    std::int32_t row = 0;
    // The room that cannot be written; null when it was something else.
    std::shared_ptr<const clsRoom> room;
    // The file that was there before, which a failed writing of a text list left as it was; empty
    // without one.
    std::wstring oldFile;
};

} // namespace kalvrooms
