// PracticeSpreadsheet --register | --unregister
// PracticeSpreadsheet --running [--changed] [WORKBOOK...]   as if a user had started it
// Everything else is the system starting an instance for a client.

#include "practice/server/ClassFactory.h"
#include "practice/server/Registration.h"
#include "practice/server/ServerApartment.h"
#include "practice/spreadsheet/ControlWindow.h"
#include "practice/spreadsheet/SheetClass.h"
#include "practice/spreadsheet/SheetObjects.h"
#include "practice/spreadsheet/SheetRegistration.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace kalvrooms;
using namespace kalvrooms::practice;
using namespace kalvrooms::practice::spreadsheet;

constexpr int troubleCode = 2;

std::vector<std::wstring> ownArguments() {
    // The runtime's own words: the shell's library would be loaded for them alone.
    return {__wargv + 1, __wargv + __argc};
}

bool has(const std::vector<std::wstring>& arguments, const wchar_t* wanted) {
    return std::find(arguments.begin(), arguments.end(), wanted) != arguments.end();
}

std::wstring setting(const wchar_t* name, const std::wstring& otherwise) {
    std::array<wchar_t, 4096> text{};
    DWORD size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(HKEY_CURRENT_USER, SettingsKey, name, RRF_RT_REG_SZ, nullptr, text.data(),
                     &size) != ERROR_SUCCESS)
        return otherwise;
    return text.data();
}

Settings readSettings() {
    Settings settings;
    settings.faults = setting(L"Faults", settings.faults);
    settings.dialog = setting(L"Dialog", settings.dialog);
    settings.report = setting(L"Report", settings.report);
    settings.version = setting(L"Version", settings.version);
    return settings;
}

void openForUser(Application& application, const std::vector<std::wstring>& arguments) {
    for (const std::wstring& argument : arguments) {
        if (argument.starts_with(L"--"))
            continue;
        const WorkbookPointer workbook = application.Open(argument);
        workbook->saved = !has(arguments, L"--changed");
    }
}

// In the list of running objects, until it is taken out.
void offerRunning(SheetProcess& process) {
    const auto application = TakeOver(NewApplicationObject(process));
    DWORD entry = 0;
    Check(RegisterActiveObject(application.Get(), ApplicationClassId, ACTIVEOBJECT_STRONG, &entry));
    process.withdraw = [entry] { RevokeActiveObject(entry, nullptr); };
}

// To the client for whom the system started the process, and to that one only: the next client gets
// a process of its own. Gives the entry in the system's list.
DWORD offerOnce(SheetProcess& process) {
    const auto factory =
        Make<ClassFactory>([&process] { return NewApplicationObject(process); },
                           [&process](bool stay) { stay ? process.Created() : process.Gone(); });
    DWORD entry = 0;
    Check(CoRegisterClassObject(ApplicationClassId, factory.Get(), CLSCTX_LOCAL_SERVER,
                                REGCLS_SINGLEUSE, &entry));
    return entry;
}

int runInstance(const std::vector<std::wstring>& arguments) {
    const bool byHand = has(arguments, L"--running");
    // Lives longest: clients' objects are there until the process ends.
    SheetProcess process(readSettings(), byHand);
    const ServerApartment apartment;
    ControlWindow window(process);
    DWORD entry = 0;
    if (byHand) {
        openForUser(process.application, arguments);
        offerRunning(process);
    } else {
        entry = offerOnce(process);
    }
    window.Run();
    if (entry != 0)
        CoRevokeClassObject(entry);
    process.WriteReport();
    return 0;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    try {
        const std::vector<std::wstring> arguments = ownArguments();
        if (has(arguments, L"--register") || has(arguments, L"--unregister")) {
            const ComApartment apartment;
            has(arguments, L"--register") ? RegisterApplication() : UnregisterApplication();
            return 0;
        }
        return runInstance(arguments);
    } catch (const std::exception& error) {
        Say(error.what());
    }
    return troubleCode;
}
