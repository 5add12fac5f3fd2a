#include "win32/SystemDialogs.h"

#include "win32/Handles.h"
#include "win32/Win32AnsiCodec.h"

#include <cderr.h>

#include <algorithm>
#include <vector>

namespace kalvrooms::Gui {
namespace {

constexpr std::size_t fileNameBuffer = 32768;
constexpr UINT helpContext = 0x000F;

void htmlHelp(HWND owner, const char* file, UINT command, DWORD_PTR data) {
    using Call = HWND(WINAPI*)(HWND, LPCSTR, UINT, DWORD_PTR);
    // Loaded when first needed and kept: help windows live in it.
    static const HMODULE control =
        LoadLibraryExW(L"hhctrl.ocx", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    static const auto call = FunctionIn<Call>(control, "HtmlHelpA");
    if (call)
        call(owner, file, command, data);
}

// "description|pattern|..." with NUL for each bar and one more at the end.
std::wstring systemFilter(const std::wstring& filter) {
    std::wstring result = filter;
    std::replace(result.begin(), result.end(), L'|', L'\0');
    result.push_back(L'\0');
    result.push_back(L'\0');
    return result;
}

struct Proposal {
    std::wstring folder;
    std::wstring name;
};

// A pattern cannot be proposed with its folder: the folder opens and the pattern stands as name.
Proposal proposalOf(const std::wstring& fileName) {
    if (fileName.find_first_of(L"*?") == std::wstring::npos)
        return {L"", fileName};
    const std::size_t separator = fileName.find_last_of(L"\\/");
    if (separator == std::wstring::npos)
        return {L"", fileName};
    // A drive's root keeps its separator.
    const std::size_t length =
        separator > 0 && fileName[separator - 1] == L':' ? separator + 1 : separator;
    return {fileName.substr(0, length), fileName.substr(separator + 1)};
}

std::wstring folderOf(const std::wstring& fileName) {
    const std::size_t separator = fileName.find_last_of(L"\\/");
    return separator == std::wstring::npos ? std::wstring() : fileName.substr(0, separator + 1);
}

bool isFile(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// Where programs tell the folder of their help file.
std::wstring registeredFolderOf(const std::wstring& helpFile) {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        wchar_t folder[MAX_PATH] = L"";
        DWORD size = sizeof folder;
        if (RegGetValueW(root, L"Software\\Microsoft\\Windows\\HTML Help", helpFile.c_str(),
                         RRF_RT_REG_SZ, nullptr, folder, &size) == ERROR_SUCCESS)
            return folder;
    }
    return {};
}

std::wstring programFolder() {
    std::vector<wchar_t> path(fileNameBuffer);
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    return folderOf({path.data(), length});
}

bool isFullPath(const std::wstring& path) {
    return path.starts_with(L"\\\\") ||
           (path.size() > 2 && path[1] == L':' && (path[2] == L'\\' || path[2] == L'/'));
}

// The file that a path means. One without a full path lies in the program's folder, or, named
// barely, where the system looks for help files; never in the folder that the program happens to be
// started in. Empty when there is none: the help control would complain about it.
std::wstring helpFileOf(const std::wstring& file) {
    if (file.empty() || file.size() >= fileNameBuffer)
        return L"";
    if (isFullPath(file))
        return isFile(file) ? file : L"";
    const std::wstring beside = programFolder() + file.substr(file.find(L':') + 1);
    if (isFile(beside))
        return beside;
    if (file.find_first_of(L"\\/:") != std::wstring::npos)
        return L"";
    std::wstring folder = registeredFolderOf(file);
    if (!folder.empty() && !folder.ends_with(L'\\'))
        folder += L'\\';
    if (!folder.empty() && isFile(folder + file))
        return folder + file;
    wchar_t windows[MAX_PATH] = L"";
    GetWindowsDirectoryW(windows, MAX_PATH);
    const std::wstring shared = std::wstring(windows) + L"\\Help\\" + file;
    return isFile(shared) ? shared : L"";
}

} // namespace

SystemDialogs::SystemDialogs()
    : MessageBoxCall(MessageBoxW),
      OpenFileCall([](OPENFILENAMEW& data) { return GetOpenFileNameW(&data) != FALSE; }),
      SaveFileCall([](OPENFILENAMEW& data) { return GetSaveFileNameW(&data) != FALSE; }),
      ErrorCall([] { return CommDlgExtendedError(); }),
      ColourCall([](CHOOSECOLORW& data) { return ChooseColorW(&data) != FALSE; }),
      HelpCall(htmlHelp), HoldSessionCall([](HWND window, const wchar_t* reason) {
          if (reason)
              ShutdownBlockReasonCreate(window, reason);
          else
              ShutdownBlockReasonDestroy(window);
      }) {}

void RunFileDialog(FileDialog& dialog, HWND owner, const std::function<bool(OPENFILENAMEW&)>& call,
                   const std::function<DWORD()>& error) {
    const std::wstring filter = systemFilter(dialog.Filter);
    Proposal proposal = proposalOf(dialog.FileName);
    std::vector<wchar_t> name(fileNameBuffer, L'\0');

    const auto run = [&](OPENFILENAMEW& data) {
        data.lStructSize = sizeof data;
        data.hwndOwner = owner;
        data.lpstrFilter = dialog.Filter.empty() ? nullptr : filter.c_str();
        data.nFilterIndex = static_cast<DWORD>(std::max(dialog.FilterIndex, 1));
        const std::size_t length = std::min(proposal.name.size(), name.size() - 1);
        std::copy_n(proposal.name.begin(), length, name.begin());
        name[length] = L'\0';
        data.lpstrFile = name.data();
        data.nMaxFile = static_cast<DWORD>(name.size());
        data.lpstrInitialDir = proposal.folder.empty() ? nullptr : proposal.folder.c_str();
        data.lpstrDefExt =
            dialog.DefaultExtension.empty() ? nullptr : dialog.DefaultExtension.c_str();
        data.Flags = dialog.Flags | OFN_EXPLORER | OFN_NOCHANGEDIR;
        return call(data);
    };

    OPENFILENAMEW data{};
    bool chosen = run(data);
    if (!chosen && error() == FNERR_INVALIDFILENAME) {
        // The proposal cannot be shown as a name; its folder still can.
        proposal = {folderOf(dialog.FileName), L""};
        data = {};
        chosen = run(data);
    }
    if (!chosen)
        throw RuntimeError(RuntimeError::DialogCancelled);
    dialog.FileName = name.data();
    dialog.FileTitle =
        dialog.FileName.substr(std::min<std::size_t>(data.nFileOffset, dialog.FileName.size()));
    dialog.FilterIndex = static_cast<int>(data.nFilterIndex);
}

void RunColourDialog(Colour& colour, HWND owner, const std::function<bool(CHOOSECOLORW&)>& call) {
    // The user's own colours stay for the run.
    static COLORREF custom[16] = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                  0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                  0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
    CHOOSECOLORW data{};
    data.lStructSize = sizeof data;
    data.hwndOwner = owner;
    data.lpCustColors = custom;
    if (call(data))
        colour = static_cast<Colour>(data.rgbResult);
}

void OpenHelpFile(
    HWND owner, const std::wstring& file, std::uint32_t context,
    const std::function<void(HWND owner, const char* file, UINT command, DWORD_PTR data)>& call) {
    const std::wstring found = helpFileOf(file);
    if (found.empty())
        return;
    call(owner, Win32AnsiCodec().Encode(found).c_str(), helpContext, context);
}

} // namespace kalvrooms::Gui
