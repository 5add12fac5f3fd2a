#include "practice/host/HostObjects.h"

#include "drawing/DrawingFile.h"
#include "drawing/Text.h"

namespace kalvrooms::practice {

namespace {

class ControlObject : public Automation<ControlObject> {
  public:
    explicit ControlObject(HostProcess& host)
        : Automation(host.ControlGate()), process(host), session(host.session), calls(host.calls) {}

    static constexpr const wchar_t* KindName = L"PracticeControl";
    static const MemberTable<ControlObject>& Members() {
        static const MemberTable<ControlObject> members = {
            Method(L"LoadDrawing", 1,
                   [](auto& self, auto& given) { self.process.Open(given.Text(0)); }),
            Method(L"SaveDrawing", 1,
                   [](auto& self, auto& given) { self.process.Save(given.Text(0)); }),
            Method(L"ExportSvg", 1,
                   [](auto& self, auto& given) { self.process.SaveSvg(given.Text(0)); }),
            Property(L"DrawingText",
                     [](auto& self) { return FromUtf8(WriteDrawing(self.session.drawing)); }),
            Method(L"SetState", 1,
                   [](auto& self, auto& given) {
                       self.session.state.Set(given.Text(0));
                       self.process.reactions.touched();
                   }),
            Method(
                L"SetCreationError", 1,
                [](auto& self, auto& given) { self.session.state.CreationError(given.Text(0)); }),
            Method(L"Plain", 1,
                   [](auto& self, auto& given) { self.process.plain = given.Long(0) != 0; }),
            Method(L"PlaceAt", 2,
                   [](auto& self, auto& given) {
                       self.session.placing.At({given.Number(0), given.Number(1)});
                   }),
            Method(L"PlaceByClick", 0, [](auto& self, auto&) { self.session.placing.ByClick(); }),
            Method(L"FailAt", 3,
                   [](auto& self, auto& given) {
                       self.calls.FailAt(given.Long(0), FaultFrom(given));
                   }),
            Method(L"FailMember", 3,
                   [](auto& self, auto& given) {
                       self.calls.FailMember(given.Text(0), FaultFrom(given));
                   }),
            Method(L"ClearFaults", 0, [](auto& self, auto&) { self.calls.ClearFaults(); }),
            Property(L"CallCount", [](auto& self) { return self.calls.Count(); }),
            Property(L"CallReport", [](auto& self) { return self.calls.Report(); }),
            Method(L"ResetCallCount", 0,
                   [](auto& self, auto&) {
                       self.calls.ResetCount();
                       self.process.reactions.touched();
                   }),
            Property(L"LiveObjects", [](auto& self) { return self.process.LiveObjects(); }),
            Property(L"ProcessId",
                     [](auto&) { return static_cast<std::int32_t>(GetCurrentProcessId()); }),
            Method(L"Quit", 0, [](auto& self, auto&) { self.process.reactions.quitAsked(); }),
        };
        return members;
    }

    HostProcess& process;
    DrawingSession& session;
    CallLog& calls;

  private:
    static Fault FaultFrom(const Arguments& given) {
        return Fault::From(given.Text(1), given.Text(2));
    }
};

} // namespace

IDispatch* NewControl(HostProcess& process) {
    return new ControlObject(process);
}

} // namespace kalvrooms::practice
