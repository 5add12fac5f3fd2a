#include "practice/workbook/Settings.h"

#include "drawing/HostError.h"

#include <sstream>

namespace kalvrooms::practice::spreadsheet {

namespace {

bool isNumber(const std::wstring& word) {
    return word.size() <= 9 && word.find_first_not_of(L"0123456789") == std::wstring::npos;
}

} // namespace

void Arm(CallLog& calls, const std::wstring& faults) {
    std::wstringstream instructions(faults);
    for (std::wstring instruction; std::getline(instructions, instruction, L';');) {
        std::wstringstream words(instruction);
        std::wstring which;
        std::wstring mode;
        std::wstring argument;
        if (!(words >> which))
            continue;
        words >> mode >> std::ws;
        std::getline(words, argument);
        const Fault fault = Fault::From(mode, argument);
        if (isNumber(which))
            calls.FailAt(static_cast<std::int32_t>(std::stol(which)), fault);
        else
            calls.FailMember(which, fault);
    }
}

} // namespace kalvrooms::practice::spreadsheet
