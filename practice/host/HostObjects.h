#pragma once
// The automation objects that a client can create. docs/host-automation.md has the members of the
// host's and of what they hand out, docs/practice-host.md those of the control.

#include "practice/host/HostProcess.h"

namespace kalvrooms::practice {

IDispatch* NewApplication(HostProcess& process);
IDispatch* NewRoomFilter(HostProcess& process);
IDispatch* NewAttributeCatalogue(HostProcess& process);
// Tests steer the practice host by it; its own calls are not counted.
IDispatch* NewControl(HostProcess& process);

} // namespace kalvrooms::practice
