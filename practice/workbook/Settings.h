#pragma once
// What a test tells the practice spreadsheet application before it starts. Each instance is a
// process of its own and reads it once.

#include "practice/server/CallLog.h"

#include <string>

namespace kalvrooms::practice::spreadsheet {

struct Settings {
    // Instructions "WHICH MODE [ARGUMENT]", separated by semicolons. WHICH is the number of a call,
    // counted from 1, or a member's name ("Save", "worksheet.SaveAs"); modes and arguments are
    // those of Fault.
    std::wstring faults;
    // With a text: the user has a dialog open from the start, until somebody answers it.
    std::wstring dialog;
    // Where the calls are listed when the process ends; empty: nowhere.
    std::wstring report;
    std::wstring version = L"12.0";
};

// Raises a HostError for instructions that cannot be read.
void Arm(CallLog& calls, const std::wstring& faults);

} // namespace kalvrooms::practice::spreadsheet
