#include "practice/host/ClientProgram.h"

#include "drawing/DrawingFile.h"
#include "drawing/HostError.h"
#include "practice/server/Files.h"

namespace kalvrooms::practice {

ClientProgram::~ClientProgram() {
    Forget();
}

void ClientProgram::Start(const std::wstring& program, HandOver handOver) {
    const std::wstring path = AbsolutePath(program);
    const std::wstring folder = FolderOf(path);
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        throw HostError(L"The program is missing: " + path);
    if (handOver.helpFile.empty())
        handOver.helpFile = path.substr(0, path.find_last_of(L'.')) + L".chm";
    WriteWhole(folder + HandOverFileName, AnsiText(HandOverText(handOver)));

    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    std::wstring command = L"\"" + path + L"\"";
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        folder.c_str(), &startup, &started))
        throw HostError(L"The program cannot be started: " + path);
    CloseHandle(started.hThread);
    Forget();
    process_ = started.hProcess;
}

void ClientProgram::TellWhenEnded(HWND window, UINT message) {
    window_ = window;
    message_ = message;
    if (!RegisterWaitForSingleObject(&wait_, process_, &ClientProgram::Ended, this, INFINITE,
                                     WT_EXECUTEONLYONCE))
        throw HostError(L"The program cannot be waited for.");
}

void CALLBACK ClientProgram::Ended(void* self, BOOLEAN) {
    const auto& program = *static_cast<ClientProgram*>(self);
    DWORD exitCode = 0;
    GetExitCodeProcess(program.process_, &exitCode);
    PostMessageW(program.window_, program.message_, exitCode, 0);
}

void ClientProgram::Forget() {
    if (wait_)
        UnregisterWaitEx(wait_, INVALID_HANDLE_VALUE);
    if (process_)
        CloseHandle(process_);
    wait_ = nullptr;
    process_ = nullptr;
}

} // namespace kalvrooms::practice
