#pragma once
// The practice host in a process of its own, with the control object that tests steer it by.

#include <filesystem>
#include <memory>
#include <string>

#include "drawing/DrawingFile.h"
#include "drawing/Text.h"
#include "practice/driver/LateBound.h"
#include "practice/driver/UiDriver.h"

namespace kalvrooms::testing {

inline constexpr const wchar_t* practiceHostProgram = L"KalveroPractice.exe";

class PracticeHostProcess {
  public:
    // More arguments as the host's command line takes them.
    explicit PracticeHostProcess(const Drawing& drawing = {},
                                 const std::wstring& arguments = L"--hidden --place 0,0") {
        static const bool registered = [] {
            if (driver::runToItsEnd(practiceHostProgram, L"--register") != 0)
                return false;
            doNotStartBySystem();
            return true;
        }();
        if (!registered)
            throw driver::WaitFailed("the practice host could not be registered");
        process_ = std::make_unique<driver::Process>(
            L"\"" + (driver::binFolder() / practiceHostProgram).wstring() + L"\" --drawing \"" +
            saved(drawing) + L"\" " + arguments);
        // Asked before it serves its messages, the system would start a second host.
        if (WaitForInputIdle(process_->handle(), driver::usualLimit) != 0)
            throw driver::WaitFailed("the practice host does not come up");
        control_ = driver::LateBound::create(controlClass);
        if (static_cast<DWORD>(control_.number(L"ProcessId")) != process_->id())
            throw driver::WaitFailed("another practice host answers");
    }
    // Never by force where it answers: Wine would keep handing out the classes of a killed process.
    ~PracticeHostProcess() {
        try {
            if (process_->running())
                control_.call(L"Quit");
            control_ = {};
            process_->waitForEnd(10000);
        } catch (const std::exception&) {
            // The process is ended by force.
        }
    }

    const driver::Process& process() const { return *process_; }
    bool running() const { return process_->running(); }
    const driver::LateBound& control() const { return control_; }

    void failAt(int n, const std::wstring& mode, const std::wstring& argument) {
        control_.call(L"FailAt", n, mode, argument);
    }
    void failMember(const std::wstring& member, const std::wstring& mode,
                    const std::wstring& argument) {
        control_.call(L"FailMember", member, mode, argument);
    }
    void clearFaults() { control_.call(L"ClearFaults"); }
    void state(const std::wstring& state) { control_.call(L"SetState", state); }
    void load(const Drawing& drawing) { control_.call(L"LoadDrawing", saved(drawing)); }
    int calls() const { return control_.number(L"CallCount"); }
    void resetCalls() { control_.call(L"ResetCallCount"); }
    int liveObjects() const { return control_.number(L"LiveObjects"); }
    Drawing drawing() const { return ReadDrawing(ToUtf8(control_.text(L"DrawingText"))); }

    // A host that has gone has gone: the system must not start one by itself when a client asks, or
    // a test would talk to a host that it did not start.
    static void doNotStartBySystem() {
        for (const wchar_t* name :
             {L"KALVCOMSERVERLib.KalvApplication", L"KALVCOMSERVERLib.KalvRoomFilter",
              L"KALVCOMSERVERLib.KalvAttributeCatalogue", controlClass}) {
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

  private:
    static constexpr const wchar_t* controlClass = L"KALVCOMSERVERLib.PracticeControl";

    static std::wstring saved(const Drawing& drawing) {
        const auto file = std::filesystem::temp_directory_path() / L"practice-drawing.json";
        SaveDrawing(drawing, file);
        return file.wstring();
    }

    std::unique_ptr<driver::Process> process_;
    driver::LateBound control_;
};

} // namespace kalvrooms::testing
