// Stands in for the system's help control: writes down every call, beside the program. Wherever it
// lies and whatever it is called there, it tells in its own folder that its code ran.

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

HMODULE self = nullptr;

// Into the folder of a library, or of the program itself.
void append(HMODULE beside, const wchar_t* name, const std::string& line) {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(beside, path, MAX_PATH);
    std::wstring file = path;
    file.resize(file.find_last_of(L'\\') + 1);
    if (std::FILE* out = _wfopen((file + name).c_str(), L"ab")) {
        std::fwrite(line.data(), 1, line.size(), out);
        std::fclose(out);
    }
}

} // namespace

extern "C" __declspec(dllexport) HWND WINAPI
    HtmlHelpA(HWND owner, LPCSTR file, UINT command, DWORD_PTR data) {
    char title[256] = "";
    GetWindowTextA(owner, title, sizeof title);
    append(nullptr, L"help-calls",
           std::string(file) + "|" + std::to_string(command) + "|" + std::to_string(data) + "|" +
               title + "\n");
    return nullptr;
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    self = instance;
    if (reason == DLL_PROCESS_ATTACH)
        append(self, L"code-ran", "x");
    return TRUE;
}
