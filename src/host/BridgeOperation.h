#pragma once
// What reading and writing the drawing have in common.

#include <cstdint>
#include <functional>
#include <set>
#include <string>

#include "app/clsWait.h"
#include "files/PointArray.h"
#include "host/clsKalvero.h"

namespace kalvrooms {

// Runs a step whose failure leaves its result as it was; tells whether it went well.
bool Attempt(const std::function<void()>& step);

// Identity of a room as it is compared with an element's; empty for a room that has none.
std::wstring IdentityKey(std::int32_t componentID, const std::wstring& fileID);

PointArray PointsOf(const Outline& outline);

// The operation's busy indicator, known to the bridge as long as the operation runs.
class clsKalvero::Busy {
  public:
    Busy(clsWait*& slot, Gui::Desktop& desktop) : wait_(desktop), slot_(slot) { slot_ = &wait_; }
    ~Busy() { slot_ = nullptr; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    clsWait* operator->() { return &wait_; }

  private:
    clsWait wait_;
    clsWait*& slot_;
};

// Shows how far an operation is, and asks between two rooms whether the user ends it.
class clsKalvero::Progress {
  public:
    Progress(ExportWindow& window, const FileServices& files, std::int32_t words,
             std::int32_t total);
    ~Progress() { window_.ShowProgress(L""); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Before every room. False when the user has ended the operation.
    bool next(std::int32_t room);
    bool ended() const { return ended_; }

  private:
    ExportWindow& window_;
    const FileServices& files_;
    const std::int32_t words_;
    const std::int32_t total_;
    std::set<std::int32_t> begun_;
    bool ended_ = false;
};

} // namespace kalvrooms
