#pragma once
// Carries out the fault of a call, alike in both practice servers.

#include "practice/server/CallLog.h"
#include "practice/server/Com.h"

namespace kalvrooms::practice {

// Ends a stall.
inline constexpr const wchar_t* WakeEvent = L"KalveroPracticeWake";

// True: the call goes on. False: its result stays empty. Error: the server's own error, made from
// the fault's description, or a ComError when the call is rejected. The last act runs before the
// process is terminated.
template <class Error, class LastAct>
bool Suffer(const Fault& fault, LastAct lastAct) {
    switch (fault.mode) {
    case FaultMode::Fail:
        throw Error(fault.description);
    case FaultMode::Empty:
        return false;
    case FaultMode::Reject:
        throw ComError(RPC_E_CALL_REJECTED);
    case FaultMode::Later:
        throw ComError(RPC_E_SERVERCALL_RETRYLATER);
    case FaultMode::Edited:
        throw ComError(static_cast<HRESULT>(0x800AC472UL));
    case FaultMode::Stall:
        // A server that hangs does not answer anybody else either; who wants it back sets the
        // event.
        WaitForSingleObject(CreateEventW(nullptr, FALSE, FALSE, WakeEvent),
                            fault.milliseconds == Fault::ForEver
                                ? INFINITE
                                : static_cast<DWORD>(fault.milliseconds));
        return true;
    case FaultMode::Exit:
        lastAct();
        TerminateProcess(GetCurrentProcess(), 3);
        return false;
    }
    return true;
}

} // namespace kalvrooms::practice
