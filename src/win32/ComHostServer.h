#pragma once
// The host's automation server behind the abstract host interface.

#include <memory>

#include "host/HostApplication.h"
#include "win32/ComObject.h"
#include "win32/HostMembers.h"

namespace kalvrooms {

// The session counts the calls and says how long a rejected call is tried again.
std::unique_ptr<HostServer> MakeComHostServer(std::shared_ptr<ComSession> session,
                                              const HostBulkMembers& bulk = {});
std::unique_ptr<HostServer> MakeComHostServer();

} // namespace kalvrooms
