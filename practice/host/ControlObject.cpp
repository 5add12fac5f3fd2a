#include "practice/host/ControlObject.h"

#include "drawing/DrawingFile.h"
#include "drawing/DrawingSvg.h"

namespace kalvrooms::practice {

const std::vector<Member<ControlObject>>& ControlObject::Members() {
    using Object = ControlObject;
    static const std::vector<Member<Object>> members = {
        {L"LoadDrawing", 1, &Object::LoadDrawing},
        {L"SaveDrawing", 1, &Object::SaveDrawing},
        {L"DrawingText", 0, nullptr, &Object::DrawingText},
        {L"ExportSvg", 1, &Object::ExportSvg},
        {L"SetState", 1, &Object::SetState},
        {L"SetCreationError", 1, &Object::SetCreationError},
        {L"PlaceAt", 2, &Object::PlaceAt},
        {L"PlaceByClick", 0, &Object::PlaceByClick},
        {L"FailAt", 3, &Object::FailAt},
        {L"FailMember", 3, &Object::FailMember},
        {L"ClearFaults", 0, &Object::ClearFaults},
        {L"CallCount", 0, nullptr, &Object::CallCount},
        {L"ResetCallCount", 0, &Object::ResetCallCount},
        {L"CallReport", 0, nullptr, &Object::CallReport},
        {L"LiveObjects", 0, nullptr, &Object::LiveObjects},
        {L"ProcessId", 0, nullptr, &Object::ProcessId},
        {L"Quit", 0, &Object::Quit},
    };
    return members;
}

Variant ControlObject::LoadDrawing(const Arguments& arguments) {
    process_.session.drawing = practice::LoadDrawing(arguments.Text(0));
    process_.ChangeDrawing();
    return {};
}

Variant ControlObject::SaveDrawing(const Arguments& arguments) {
    practice::SaveDrawing(process_.session.drawing, arguments.Text(0));
    return {};
}

Variant ControlObject::DrawingText() {
    return Variant(FromUtf8(WriteDrawing(process_.session.drawing)));
}

Variant ControlObject::ExportSvg(const Arguments& arguments) {
    WriteWhole(arguments.Text(0), DrawingSvg(process_.session.drawing));
    return {};
}

Variant ControlObject::SetState(const Arguments& arguments) {
    process_.state.Set(arguments.Text(0));
    process_.Touch();
    return {};
}

Variant ControlObject::SetCreationError(const Arguments& arguments) {
    process_.state.CreationError(arguments.Text(0));
    return {};
}

Variant ControlObject::PlaceAt(const Arguments& arguments) {
    process_.session.placing.At({arguments.Number(0), arguments.Number(1)});
    return {};
}

Variant ControlObject::PlaceByClick(const Arguments&) {
    process_.session.placing.ByClick();
    return {};
}

Variant ControlObject::FailAt(const Arguments& arguments) {
    process_.calls.FailAt(arguments.Long(0), Fault::From(arguments.Text(1), arguments.Text(2)));
    return {};
}

Variant ControlObject::FailMember(const Arguments& arguments) {
    process_.calls.FailMember(arguments.Text(0), Fault::From(arguments.Text(1), arguments.Text(2)));
    return {};
}

Variant ControlObject::ClearFaults(const Arguments&) {
    process_.calls.ClearFaults();
    return {};
}

Variant ControlObject::CallCount() {
    return Variant(process_.calls.Count());
}

Variant ControlObject::ResetCallCount(const Arguments&) {
    process_.calls.ResetCount();
    process_.Touch();
    return {};
}

Variant ControlObject::CallReport() {
    return Variant(process_.calls.Report());
}

Variant ControlObject::LiveObjects() {
    return Variant(process_.LiveObjects());
}

Variant ControlObject::ProcessId() {
    return Variant(static_cast<std::int32_t>(GetCurrentProcessId()));
}

Variant ControlObject::Quit(const Arguments&) {
    process_.Quit();
    return {};
}

} // namespace kalvrooms::practice
