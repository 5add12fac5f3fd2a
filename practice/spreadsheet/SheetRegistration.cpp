#include "practice/spreadsheet/SheetRegistration.h"

#include "drawing/HostError.h"
#include "practice/server/Files.h"
#include "practice/spreadsheet/SheetClass.h"

#include <objbase.h>

#include <array>
#include <string>

namespace kalvrooms::practice::spreadsheet {

namespace {

const std::wstring classes = L"Software\\Classes\\";

std::wstring classKey() {
    std::array<wchar_t, 40> text{};
    StringFromGUID2(ApplicationClassId, text.data(), static_cast<int>(text.size()));
    return std::wstring(L"CLSID\\") + text.data();
}

void setDefault(HKEY root, const std::wstring& key, const std::wstring& text) {
    const LSTATUS status =
        RegSetKeyValueW(root, (classes + key).c_str(), nullptr, REG_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (status != ERROR_SUCCESS)
        throw HostError(L"The registry refuses the key " + key + L".");
}

void writeEntries(HKEY root) {
    const std::wstring description = L"Practice spreadsheet application";
    const std::wstring key = classKey();
    setDefault(root, ProgramId, description);
    setDefault(root, std::wstring(ProgramId) + L"\\CLSID", key.substr(key.find(L'{')));
    setDefault(root, key, description);
    setDefault(root, key + L"\\ProgID", ProgramId);
    setDefault(root, key + L"\\LocalServer32", L"\"" + ExecutablePath() + L"\"");
}

void deleteEntries(HKEY root) {
    for (const std::wstring& key : {std::wstring(ProgramId), classKey()}) {
        const LSTATUS status = RegDeleteTreeW(root, (classes + key).c_str());
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
            throw HostError(L"The registry does not let go of the key " + key + L".");
    }
}

enum class Registered { Nobody, Ours, Another };

Registered registered() {
    CLSID id{};
    if (FAILED(CLSIDFromProgID(ProgramId, &id)))
        return Registered::Nobody;
    return IsEqualCLSID(id, ApplicationClassId) ? Registered::Ours : Registered::Another;
}

} // namespace

void RegisterApplication() {
    if (registered() == Registered::Another)
        throw HostError(L"There is a spreadsheet application on this machine already.");
    writeEntries(HKEY_CURRENT_USER);
    // Wine's COM looks at the machine's classes alone.
    if (registered() != Registered::Ours)
        writeEntries(HKEY_LOCAL_MACHINE);
}

void UnregisterApplication() {
    if (registered() == Registered::Another)
        return;
    deleteEntries(HKEY_CURRENT_USER);
    if (registered() == Registered::Ours)
        deleteEntries(HKEY_LOCAL_MACHINE);
}

} // namespace kalvrooms::practice::spreadsheet
