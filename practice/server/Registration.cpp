#include "practice/server/Registration.h"

#include "drawing/HostError.h"

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

void WriteEntries(HKEY root, std::span<const ServerClass* const> classes) {
    const std::wstring program = OwnProgram().wstring();
    for (const ServerClass* serverClass : classes) {
        const std::wstring id = GuidText(serverClass->id);
        const std::wstring classKey = L"CLSID\\" + id;
        SetDefault(root, serverClass->programId, serverClass->description);
        SetDefault(root, std::wstring(serverClass->programId) + L"\\CLSID", id);
        SetDefault(root, classKey, serverClass->description);
        SetDefault(root, classKey + L"\\ProgID", serverClass->programId);
        SetDefault(root, classKey + L"\\LocalServer32", L"\"" + program + L"\"");
    }
}

// Whether the class's name stands for another class there.
bool IsAnothers(HKEY root, const ServerClass& serverClass) {
    std::array<wchar_t, 64> text{};
    DWORD size = sizeof text;
    const std::wstring key = Classes + serverClass.programId + L"\\CLSID";
    const LSTATUS status =
        RegGetValueW(root, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text.data(), &size);
    CLSID id{};
    return status != ERROR_FILE_NOT_FOUND &&
           (status != ERROR_SUCCESS || FAILED(CLSIDFromString(text.data(), &id)) ||
            !IsEqualCLSID(id, serverClass.id));
}

void DeleteEntries(HKEY root, const ServerClass& serverClass) {
    const auto remove = [&](const std::wstring& key) {
        const LSTATUS status = RegDeleteTreeW(root, (Classes + key).c_str());
        if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
            throw HostError(L"The registry does not let go of the key " + key + L".");
    };
    if (!IsAnothers(root, serverClass))
        remove(serverClass.programId);
    remove(L"CLSID\\" + GuidText(serverClass.id));
}

bool Effective(const ServerClass& serverClass) {
    CLSID id{};
    return SUCCEEDED(CLSIDFromProgID(serverClass.programId, &id)) &&
           IsEqualCLSID(id, serverClass.id);
}

HANDLE HoldName(const ServerClass& serverClass) {
    return CreateMutexW(nullptr, FALSE, serverClass.programId);
}

} // namespace

std::filesystem::path OwnProgram() {
    constexpr DWORD longest = 32768;
    std::wstring path(longest, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), longest));
    return path;
}

bool Say(const std::string& words) {
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    const std::string line = OwnProgram().stem().string() + ": " + words + "\n";
    DWORD written = 0;
    return console && console != INVALID_HANDLE_VALUE &&
           WriteFile(console, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

void RegisterClasses(std::span<const ServerClass* const> classes) {
    for (const ServerClass* serverClass : classes)
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
            if (IsAnothers(root, *serverClass))
                throw HostError(L"Auf diesem Rechner ist " + std::wstring(serverClass->programId) +
                                L" schon eingerichtet. Die Übung tritt nicht an diese Stelle.");
    // What a run that was cut off has left may name another program file.
    UnregisterClasses(classes);
    WriteEntries(HKEY_CURRENT_USER, classes);
    // Wine's COM looks at the machine's classes alone.
    if (!Effective(*classes.back()))
        WriteEntries(HKEY_LOCAL_MACHINE, classes);
}

void UnregisterClasses(std::span<const ServerClass* const> classes) {
    for (const ServerClass* serverClass : classes) {
        DeleteEntries(HKEY_CURRENT_USER, *serverClass);
        if (Effective(*serverClass))
            DeleteEntries(HKEY_LOCAL_MACHINE, *serverClass);
    }
}

KnownWhileRunning::KnownWhileRunning(std::span<const ServerClass* const> classes)
    : classes_(classes), running_(HoldName(*classes.front())) {
    RegisterClasses(classes);
}

KnownWhileRunning::~KnownWhileRunning() {
    CloseHandle(running_);
    const HANDLE name = HoldName(*classes_.front());
    if (GetLastError() != ERROR_ALREADY_EXISTS) {
        try {
            UnregisterClasses(classes_);
        } catch (const HostError&) {
            // Entries that the registry keeps name a program that can be started again.
        }
    }
    CloseHandle(name);
}

} // namespace kalvrooms::practice
