#include "practice/host/Registration.h"

#include "drawing/HostError.h"
#include "practice/host/ClassIds.h"
#include "practice/server/Files.h"

#include <objbase.h>

#include <array>
#include <string>

namespace kalvrooms::practice {

namespace {

const std::wstring Classes = L"Software\\Classes\\";

std::wstring GuidText(const GUID& id) {
    std::array<wchar_t, 40> text{};
    StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
    return text.data();
}

void SetDefault(HKEY root, const std::wstring& key, const std::wstring& text) {
    const LSTATUS status =
        RegSetKeyValueW(root, (Classes + key).c_str(), nullptr, REG_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    if (status != ERROR_SUCCESS)
        throw HostError(L"The registry refuses the key " + key + L".");
}

void WriteEntries(HKEY root) {
    const std::wstring program = ExecutablePath();
    const std::wstring library = GuidText(TypeLibraryId);
    for (const ServerClass* serverClass : ServerClasses) {
        const std::wstring id = GuidText(serverClass->id);
        const std::wstring classKey = L"CLSID\\" + id;
        SetDefault(root, serverClass->programId, serverClass->description);
        SetDefault(root, std::wstring(serverClass->programId) + L"\\CLSID", id);
        SetDefault(root, classKey, serverClass->description);
        SetDefault(root, classKey + L"\\ProgID", serverClass->programId);
        SetDefault(root, classKey + L"\\LocalServer32", L"\"" + program + L"\"");
        SetDefault(root, classKey + L"\\TypeLib", library);
        SetDefault(root, classKey + L"\\Version", TypeLibraryVersion);
    }
    const std::wstring libraryKey = L"TypeLib\\" + library + L"\\" + TypeLibraryVersion;
    SetDefault(root, libraryKey, L"Kalvero practice host");
    SetDefault(root, libraryKey + L"\\0\\win64", program);
    SetDefault(root, libraryKey + L"\\FLAGS", L"0");
    SetDefault(root, libraryKey + L"\\HELPDIR", program.substr(0, program.find_last_of(L'\\')));
}

void DeleteEntries(HKEY root) {
    const auto remove = [&](const std::wstring& key) {
        const LSTATUS status = RegDeleteTreeW(root, (Classes + key).c_str());
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
            throw HostError(L"The registry does not let go of the key " + key + L".");
    };
    for (const ServerClass* serverClass : ServerClasses) {
        remove(serverClass->programId);
        remove(L"CLSID\\" + GuidText(serverClass->id));
    }
    remove(L"TypeLib\\" + GuidText(TypeLibraryId));
}

bool Effective() {
    CLSID id{};
    return SUCCEEDED(CLSIDFromProgID(ControlClass.programId, &id)) &&
           IsEqualCLSID(id, ControlClass.id);
}

} // namespace

void RegisterServer() {
    WriteEntries(HKEY_CURRENT_USER);
    // Wine's COM looks at the machine's classes alone.
    if (!Effective())
        WriteEntries(HKEY_LOCAL_MACHINE);
}

void UnregisterServer() {
    DeleteEntries(HKEY_CURRENT_USER);
    if (Effective())
        DeleteEntries(HKEY_LOCAL_MACHINE);
}

} // namespace kalvrooms::practice
