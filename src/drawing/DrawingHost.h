#pragma once
// A drawing given as the host that keeps it, within this process.

#include "drawing/DrawingService.h"
#include "host/HostApplication.h"

#include <functional>
#include <memory>
#include <vector>

namespace kalvrooms {

// Has to outlive the objects that it hands out.
class DrawingHost : public HostServer {
  public:
    DrawingSession session;
    // Called with the member's name before a member does anything; what it throws ends the call.
    std::function<void(const char* member)> entering;
    // Called with what the attributes of an element say; may take away what is not to be told.
    std::function<void(std::vector<HostAttributeValue>& values)> telling;

    std::unique_ptr<HostApplication> CreateHostApplication() override;
    std::unique_ptr<HostRoomSelection> CreateRoomFilter() override;
    std::unique_ptr<HostAttributeCatalogue> CreateAttributeCatalogue() override;

    // How many of the objects that were handed out are still held.
    long LiveObjects() const { return held_.use_count() - 1; }

  private:
    template <class Interface>
    friend class HostPart;

    void Enter(const char* member) const;

    std::shared_ptr<char> held_ = std::make_shared<char>();
};

} // namespace kalvrooms
