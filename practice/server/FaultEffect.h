#pragma once
// What a call that has a fault does to its caller: the same in both practice servers.

#include "practice/server/CallLog.h"
#include "practice/server/Com.h"

namespace kalvrooms::practice {

// True: the call goes on. False: its result stays empty. Error: the server's own error, made from
// the fault's description, or a ComError when the call is turned away. The last act is done before
// the process ends.
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
    case FaultMode::Stall:
        // A server that hangs answers nobody else either.
        Sleep(static_cast<DWORD>(fault.milliseconds));
        return true;
    case FaultMode::Exit:
        lastAct();
        TerminateProcess(GetCurrentProcess(), 3);
        return false;
    }
    return true;
}

} // namespace kalvrooms::practice
