#include "practice/host/HostProcess.h"

#include "practice/server/FaultEffect.h"

namespace kalvrooms::practice {

HostProcess::HostProcess() : hostGate_(*this, true), controlGate_(*this, false) {}

void HostProcess::AddUse() {
    ++uses_;
    CoAddRefServerProcess();
}

void HostProcess::RemoveUse() {
    --uses_;
    // At 0 the system already keeps new clients away from this process.
    if (CoReleaseServerProcess() == 0)
        reactions.unused();
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
    process_.reactions.touched();
    return !fault || Suffer<HostError>(*fault, process_.goingAway);
}

} // namespace kalvrooms::practice
