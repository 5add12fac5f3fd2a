#pragma once
// The object by which tests steer the practice host; its own calls are not counted.

#include "practice/host/HostProcess.h"

#include <vector>

namespace kalvrooms::practice {

class ControlObject : public Automation<ControlObject> {
  public:
    explicit ControlObject(HostProcess& process)
        : Automation(process.ControlGate()), process_(process) {}
    static constexpr const wchar_t* KindName = L"PracticeControl";
    static const std::vector<Member<ControlObject>>& Members();

  private:
    Variant LoadDrawing(const Arguments& arguments);
    Variant SaveDrawing(const Arguments& arguments);
    Variant DrawingText();
    Variant ExportSvg(const Arguments& arguments);
    Variant SetState(const Arguments& arguments);
    Variant SetCreationError(const Arguments& arguments);
    Variant PlaceAt(const Arguments& arguments);
    Variant PlaceByClick(const Arguments&);
    Variant FailAt(const Arguments& arguments);
    Variant FailMember(const Arguments& arguments);
    Variant ClearFaults(const Arguments&);
    Variant CallCount();
    Variant ResetCallCount(const Arguments&);
    Variant CallReport();
    Variant LiveObjects();
    Variant ProcessId();
    Variant Quit(const Arguments&);

    HostProcess& process_;
};

} // namespace kalvrooms::practice
