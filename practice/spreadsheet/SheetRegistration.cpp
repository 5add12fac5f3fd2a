#include "practice/spreadsheet/SheetRegistration.h"

#include "practice/server/Registration.h"
#include "practice/spreadsheet/SheetClass.h"

#include <array>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr ServerClass Class = {ProgramId, L"Practice spreadsheet application", ApplicationClassId};
constexpr std::array<const ServerClass*, 1> Classes = {&Class};

} // namespace

void RegisterApplication() {
    RegisterClasses(Classes);
}

void UnregisterApplication() {
    UnregisterClasses(Classes);
}

} // namespace kalvrooms::practice::spreadsheet
