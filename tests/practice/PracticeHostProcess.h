#pragma once
// The practice host in a process of its own, with the control object that tests steer it by.

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "model/RuntimeError.h"
#include "practice/driver/UiDriver.h"
#include "win32/ComObject.h"

namespace kalvrooms::testing {

inline std::filesystem::path binFolder() {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
}

class PracticeHostProcess {
  public:
    // The drawing as JSON text; more arguments as the host's command line takes them.
    explicit PracticeHostProcess(const std::string& drawing = "{}",
                                 const std::wstring& arguments = L"--hidden --place 0,0")
        : session_(std::make_shared<ComSession>()) {
        const std::filesystem::path host = binFolder() / L"KalveroPractice.exe";
        static const bool registered = [&] {
            driver::Process registering(L"\"" + host.wstring() + L"\" --register");
            if (registering.waitForEnd() != 0)
                return false;
            doNotStartBySystem();
            return true;
        }();
        if (!registered)
            throw driver::WaitFailed("the practice host could not be registered");
        const auto file = std::filesystem::temp_directory_path() / L"practice-drawing.json";
        std::ofstream(file, std::ios::binary) << drawing;
        process_ = std::make_unique<driver::Process>(L"\"" + host.wstring() + L"\" --drawing \"" +
                                                     file.wstring() + L"\" " + arguments);
        // Asked before it serves its messages, the system would start a second host.
        if (WaitForInputIdle(process_->handle(), driver::usualLimit) != 0)
            throw driver::WaitFailed("the practice host does not come up");
        control_ = ComObject::Create(session_, L"control", control, CLSCTX_LOCAL_SERVER);
        if (static_cast<DWORD>(LongOf(control_.Get(L"ProcessId"))) != process_->id())
            throw driver::WaitFailed("another practice host answers");
    }
    ~PracticeHostProcess() {
        try {
            if (process_->running())
                control_.Call(L"Quit");
            control_ = ComObject();
            process_->waitForEnd(10000);
        } catch (const std::exception&) {
            // The process is ended by force.
        }
    }

    DWORD id() const { return process_->id(); }
    bool running() const { return process_->running(); }
    void waitForEnd() { process_->waitForEnd(); }

    void failAt(int n, const std::wstring& mode, const std::wstring& argument) {
        control_.Call(L"FailAt", {n, mode, argument});
    }
    void failMember(const std::wstring& member, const std::wstring& mode,
                    const std::wstring& argument) {
        control_.Call(L"FailMember", {member, mode, argument});
    }
    void clearFaults() { control_.Call(L"ClearFaults"); }
    void state(const std::wstring& state) { control_.Call(L"SetState", {state}); }
    void load(const std::string& drawing) {
        const auto file = std::filesystem::temp_directory_path() / L"practice-load.json";
        std::ofstream(file, std::ios::binary) << drawing;
        control_.Call(L"LoadDrawing", {file.wstring()});
    }
    int calls() { return LongOf(control_.Get(L"CallCount")); }
    void resetCalls() { control_.Call(L"ResetCallCount"); }
    std::wstring callReport() { return TextOf(control_.Get(L"CallReport")); }
    int liveObjects() { return LongOf(control_.Get(L"LiveObjects")); }
    std::wstring drawing() { return TextOf(control_.Get(L"DrawingText")); }

  private:
    static constexpr const wchar_t* control = L"KALVCOMSERVERLib.PracticeControl";

    // A host that has gone has gone: the system must not start one by itself when a client asks, or
    // a test would talk to a host that it did not start.
    static void doNotStartBySystem() {
        for (const wchar_t* name :
             {L"KALVCOMSERVERLib.KalvApplication", L"KALVCOMSERVERLib.KalvRoomFilter",
              L"KALVCOMSERVERLib.KalvAttributeCatalogue", control}) {
            CLSID id{};
            wchar_t text[64] = L"";
            if (FAILED(CLSIDFromProgID(name, &id)) || !StringFromGUID2(id, text, 64))
                continue;
            const std::wstring key =
                std::wstring(L"Software\\Classes\\CLSID\\") + text + L"\\LocalServer32";
            for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
                RegDeleteKeyW(root, key.c_str());
        }
    }

    std::shared_ptr<ComSession> session_;
    std::unique_ptr<driver::Process> process_;
    ComObject control_;
};

} // namespace kalvrooms::testing
