#include "practice/host/ClientProgram.h"

#include "drawing/DrawingFile.h"
#include "drawing/HostError.h"
#include "win32/Win32AnsiCodec.h"

#include <filesystem>
#include <system_error>

namespace kalvrooms::practice {

ClientProgram::~ClientProgram() {
    Forget();
}

void ClientProgram::Start(const std::wstring& program, HandOver handOver) {
    const std::filesystem::path path = std::filesystem::absolute(program);
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored))
        throw HostError(L"The program is missing: " + path.wstring());
    if (handOver.helpFile.empty()) {
        std::filesystem::path help = path;
        help.replace_filename(path.stem().wstring() + L"_" + handOver.language + L".chm");
        if (!std::filesystem::exists(help, ignored))
            help = std::filesystem::path(path).replace_extension(L".chm");
        handOver.helpFile = help.wstring();
    }
    SaveText(path.parent_path() / HandOverFileName,
             Win32AnsiCodec().Encode(HandOverText(handOver)));

    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    std::wstring command = L"\"" + path.wstring() + L"\"";
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        path.parent_path().c_str(), &startup, &started))
        throw HostError(L"The program cannot be started: " + path.wstring());
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
