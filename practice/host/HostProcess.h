#pragma once
// What all automation objects of the process share: the open drawing, the calls and their faults,
// and how long the process has to live.

#include "drawing/DrawingService.h"
#include "practice/server/CallLog.h"
#include "practice/server/DispatchObject.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace kalvrooms::ifc {
class IfcDrawing;
}

namespace kalvrooms::practice {

class HostProcess {
  public:
    HostProcess();
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;

    DrawingSession session;
    CallLog calls;
    // Knows no member that is our own invention, and forbids access at the creation itself.
    bool plain = false;

    // A practice drawing or a model, told by its contents. Raises a HostError and keeps the drawing
    // that was open.
    void Open(const std::filesystem::path& file);
    // A model goes back into its own kind of file, or becomes a practice drawing under a name that
    // ends with ".json". Raises a HostError.
    void Save(const std::filesystem::path& file) const;
    // The drawing as a picture, the storeys of a model side by side. Raises a HostError.
    void SaveSvg(const std::filesystem::path& file) const;
    bool HasModel() const { return model_ != nullptr; }
    // What could not be read of the open model, for the user; empty where all was.
    std::wstring PassedOver() const;
    // Of the open drawing; empty without one.
    const std::filesystem::path& File() const { return file_; }

    // The gates of objects whose calls count, and of those that only control the tests.
    CallGate& HostGate() { return hostGate_; }
    CallGate& ControlGate() { return controlGate_; }
    std::int32_t LiveObjects() const { return liveObjects_; }

    // Everything that keeps the process in use from outside.
    void AddUse();
    void RemoveUse();
    bool InUse() const { return uses_ > 0; }

    // What the process does about it.
    struct Reactions {
        std::function<void()> unused = [] {};
        // The process ends soon after, when the answer to the call is on its way.
        std::function<void()> quitAsked = [] {};
        // Calls were counted, or the state changed.
        std::function<void()> touched = [] {};
        std::function<void()> drawingChanged = [] {};
        // Another drawing is open.
        std::function<void()> opened = [] {};
    };
    Reactions reactions;
    // The process is about to end in the middle of a call.
    std::function<void()> goingAway = [] {};

  private:
    class Gate : public CallGate {
      public:
        Gate(HostProcess& process, bool counted) : process_(process), counted_(counted) {}
        bool Enter(std::wstring_view object, std::wstring_view member) override;
        bool Knows(std::wstring_view member) const override;
        void Created() override;
        void Gone() override;

      private:
        HostProcess& process_;
        bool counted_;
    };

    // What the drawing was made of; the drawing needs it as long as it is open.
    std::shared_ptr<const ifc::IfcDrawing> model_;
    std::filesystem::path file_;
    Gate hostGate_;
    Gate controlGate_;
    std::int32_t liveObjects_ = 0;
    std::int32_t uses_ = 0;
};

} // namespace kalvrooms::practice
