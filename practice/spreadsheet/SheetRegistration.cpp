#include "practice/spreadsheet/SheetRegistration.h"

#include "drawing/HostError.h"
#include "practice/server/Registration.h"
#include "practice/spreadsheet/SheetClass.h"

#include <array>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr ServerClass Class = {ProgramId, L"Practice spreadsheet application", ApplicationClassId};
constexpr std::array<const ServerClass*, 1> Classes = {&Class};

} // namespace

void RegisterApplication() {
    if (WhoIs(Class) == Registered::Another)
        throw HostError(L"There is a spreadsheet application on this machine already.");
    RegisterClasses(Classes);
}

void UnregisterApplication() {
    if (WhoIs(Class) != Registered::Another)
        UnregisterClasses(Classes);
}

} // namespace kalvrooms::practice::spreadsheet
