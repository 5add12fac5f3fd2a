#include "practice/host/HostProcess.h"

#include "drawing/DrawingFile.h"
#include "drawing/DrawingSvg.h"
#include "drawing/Text.h"
#include "ifc/IfcDrawing.h"
#include "ifc/TroubleText.h"
#include "practice/server/FaultEffect.h"

#include <algorithm>
#include <array>
#include <fstream>

namespace kalvrooms::practice {

namespace {

bool HoldsModel(const std::filesystem::path& file) {
    std::array<char, 256> begin{};
    std::ifstream stream(file, std::ios::binary);
    stream.read(begin.data(), begin.size());
    return ifc::IsModel({begin.data(), static_cast<std::size_t>(stream.gcount())});
}

bool EndsWith(const std::filesystem::path& file, std::wstring_view ending) {
    return EqualsIgnoringCase(file.extension().wstring(), ending);
}

} // namespace

HostProcess::HostProcess() : hostGate_(*this, true), controlGate_(*this, false) {}

void HostProcess::Open(const std::filesystem::path& file) {
    std::shared_ptr<const ifc::IfcDrawing> model;
    if (HoldsModel(file))
        model = std::make_shared<const ifc::IfcDrawing>(file);
    session.drawing = model ? model->Read() : LoadDrawing(file);
    model_ = std::move(model);
    file_ = file;
    reactions.opened();
}

void HostProcess::Save(const std::filesystem::path& file) const {
    if (model_ && !EndsWith(file, L".json"))
        return SaveText(file, model_->Write(session.drawing));
    if (!model_ && EndsWith(file, L".ifc"))
        throw HostError(L"Eine Übungszeichnung lässt sich nicht als Modell speichern: " +
                        file.wstring());
    SaveDrawing(session.drawing, file);
}

void HostProcess::SaveSvg(const std::filesystem::path& file) const {
    SaveText(file, DrawingSvg(session.drawing, model_ ? Storeys::Apart : Storeys::AsTheyStand));
}

std::wstring HostProcess::PassedOver() const {
    if (!model_ || model_->Troubles().empty())
        return {};
    constexpr std::size_t mostShown = 10;
    const std::vector<std::string>& troubles = model_->Troubles();
    std::wstring text = L"Im Modell ist nicht alles lesbar (" + std::to_wstring(troubles.size()) +
                        (troubles.size() == 1 ? L" Meldung):" : L" Meldungen):");
    for (std::size_t i = 0; i < std::min(troubles.size(), mostShown); ++i)
        text += L"\n" + FromUtf8(ifc::InGerman(troubles[i]));
    return troubles.size() > mostShown ? text + L"\n…" : text;
}

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

bool HostProcess::Gate::Knows(std::wstring_view member) const {
    return !process_.plain || (member != L"CheckAccess" && member != L"IdentityTable" &&
                               member != L"RoomRecord" && member != L"AttributeTable");
}

bool HostProcess::Gate::Enter(std::wstring_view object, std::wstring_view member) {
    if (!counted_)
        return true;
    const auto fault = process_.calls.Enter(object, member);
    process_.reactions.touched();
    return !fault || Suffer<HostError>(*fault, process_.goingAway);
}

} // namespace kalvrooms::practice
