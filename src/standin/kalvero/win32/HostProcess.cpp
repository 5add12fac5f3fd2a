#include "standin/kalvero/win32/HostProcess.h"

namespace kalvrooms::practice {

HostProcess::HostProcess() : hostGate_(*this, true), controlGate_(*this, false) {}

void HostProcess::AddUse() {
    ++uses_;
    CoAddRefServerProcess();
}

void HostProcess::RemoveUse() {
    --uses_;
    // At 0 the system already keeps new clients away from this process.
    if (CoReleaseServerProcess() == 0 && unused)
        unused();
}

void HostProcess::Quit() {
    if (quitAsked)
        quitAsked();
}

void HostProcess::Touch() {
    if (touched)
        touched();
}

void HostProcess::ChangeDrawing() {
    if (drawingChanged)
        drawingChanged();
}

void HostProcess::Gate::Created() {
    process_.AddUse();
    if (counted_)
        ++process_.liveObjects_;
}

void HostProcess::Gate::Gone() {
    if (counted_)
        --process_.liveObjects_;
    process_.RemoveUse();
}

bool HostProcess::Gate::Enter(std::wstring_view object, std::wstring_view member) {
    if (!counted_)
        return true;
    const auto fault = process_.calls.Enter(object, member);
    process_.Touch();
    if (!fault)
        return true;
    switch (fault->mode) {
    case FaultMode::Fail:
        throw HostError(fault->description);
    case FaultMode::Empty:
        return false;
    case FaultMode::Reject:
        throw ComError(RPC_E_CALL_REJECTED);
    case FaultMode::Later:
        throw ComError(RPC_E_SERVERCALL_RETRYLATER);
    case FaultMode::Stall:
        // A host that hangs answers nobody else either.
        Sleep(static_cast<DWORD>(fault->milliseconds));
        return true;
    case FaultMode::Exit:
        if (process_.goingAway)
            process_.goingAway();
        TerminateProcess(GetCurrentProcess(), 3);
        return false;
    }
    return true;
}

} // namespace kalvrooms::practice
