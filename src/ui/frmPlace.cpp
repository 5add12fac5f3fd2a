#include "ui/frmPlace.h"

#include <cstdint>
#include <utility>

#include "model/NumberText.h"
#include "model/basValidation.h"
#include "ui/FieldHandlers.h"

namespace kalvrooms {
namespace {

constexpr std::int32_t textOptions = 19;
constexpr std::int32_t textArrangement = 47;
constexpr std::int32_t textDisplay = 53;
constexpr std::int32_t textDistancesTooSmall = 74;
// This one message bears the application's name and not the text of the table.
constexpr const wchar_t* applicationTitle = L"Quartino";
constexpr std::uint32_t helpContext = 11;

constexpr int arrangementTab = 0;
constexpr int displayTab = 1;

} // namespace

frmPlace::frmPlace(const DialogServices& services, Options& options)
    : services_(services), desktop_(services.desktop), options_(options),
      form_(desktop_.CreateForm(L"frmPlace")), SSTab1(form_->TabsNamed(L"SSTab1")),
      fraAnordnung(form_->FrameNamed(L"fraAnordnung")), optSingle(form_->OptionNamed(L"optSingle")),
      optBlock(form_->OptionNamed(L"optBlock")), lblDisX(form_->LabelNamed(L"lblDisX")),
      txtDx(form_->FieldNamed(L"txtDx")), lblDisY(form_->LabelNamed(L"lblDisY")),
      txtDy(form_->FieldNamed(L"txtDy")), fraColor(form_->FrameNamed(L"fraColor")),
      lblcolold(form_->LabelNamed(L"lblcolold")),
      cmdWithCoordinates(form_->ButtonNamed(L"cmdWithCoordinates")),
      lblcolnew(form_->LabelNamed(L"lblcolnew")),
      cmdWithoutCoordinates(form_->ButtonNamed(L"cmdWithoutCoordinates")),
      chkUpdate(form_->CheckNamed(L"chkUpdate")), cmdOk(form_->ButtonNamed(L"cmdOk")),
      cmdCancel(form_->ButtonNamed(L"cmdCancel")) {
    for (Gui::TextField* field : {&txtDx, &txtDy}) {
        SelectAllOnEntry(*field);
        FilterKeys(*field, IsNumberKey);
        NormalizeOnLeaving(*field, NormalizeThreeDecimals);
    }
    form_->KeyUp = [this](int key) { onKeyUp(key); };
    cmdWithCoordinates.Click = [this] { chooseColour(cmdWithCoordinates); };
    cmdWithoutCoordinates.Click = [this] { chooseColour(cmdWithoutCoordinates); };
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmPlace::ShowModal() {
    setCaptions();
    fillFields();
    form_->ShowModal();
}

void frmPlace::setCaptions() {
    form_->Text(services_.texts.GetTextWithoutDot(textOptions));
    const std::pair<Gui::Control&, std::int32_t> captions[] = {
        {fraAnordnung, 48},      {optSingle, 49}, {optBlock, 50},  {lblDisX, 51},   {lblDisY, 52},
        {fraColor, textDisplay}, {lblcolold, 54}, {lblcolnew, 55}, {chkUpdate, 56}, {cmdOk, 2},
        {cmdCancel, 3}};
    for (const auto& [control, number] : captions)
        control.Text(services_.texts.GetText(number));
    // The tab selected last is the one that the dialog opens on.
    SSTab1.Tab(displayTab);
    SSTab1.TabCaption(displayTab, services_.texts.GetText(textDisplay));
    SSTab1.Tab(arrangementTab);
    SSTab1.TabCaption(arrangementTab, services_.texts.GetText(textArrangement));
}

void frmPlace::fillFields() {
    const Placement placement = options_.GetPlace();
    cmdWithCoordinates.BackColour(placement.colorOld);
    cmdWithoutCoordinates.BackColour(placement.colorNew);
    if (placement.block) {
        optBlock.Value(true);
        txtDx.Text(FormatThreeDecimals(placement.distanceX));
        txtDy.Text(FormatThreeDecimals(placement.distanceY));
    } else {
        optSingle.Value(true);
    }
    chkUpdate.Value(!options_.NoReport());
}

double frmPlace::distance(const Gui::TextField& field) {
    const std::wstring text = field.Text();
    const std::wstring trimmed = Trim(text);
    return trimmed.empty() || trimmed == L"0" ? 0.0 : TextToNumber(text);
}

void frmPlace::chooseColour(Gui::Button& button) {
    desktop_.ShowColour(cdColor);
    button.BackColour(cdColor);
}

void frmPlace::onKeyUp(int key) {
    switch (key) {
    case Gui::KeyF1:
        desktop_.OpenHelp(*form_, services_.helpFile, helpContext);
        break;
    case Gui::KeyEnter:
        NormalizeField(txtDx, NormalizeThreeDecimals);
        NormalizeField(txtDy, NormalizeThreeDecimals);
        cmdOk_Click();
        break;
    case Gui::KeyEscape:
        cmdCancel_Click();
        break;
    default:
        break;
    }
}

void frmPlace::cmdOk_Click() {
    const bool block = optBlock.Value();
    double distanceX = 0.0;
    double distanceY = 0.0;
    if (block) {
        distanceX = distance(txtDx);
        distanceY = distance(txtDy);
    }
    // Only zero is refused; a minus sign gets past the key filter by pasting alone.
    const bool refused = block && (distanceX == 0.0 || distanceY == 0.0);
    // The report switch holds at once, even if the distances are refused.
    if (chkUpdate.Value())
        options_.SetWithReport();
    else
        options_.SetWithoutReport();
    if (refused) {
        desktop_.ShowMessage({services_.texts.GetText(textDistancesTooSmall), applicationTitle});
        return;
    }
    options_.SetPlace({distanceX, distanceY, block, cmdWithCoordinates.BackColour(),
                       cmdWithoutCoordinates.BackColour()});
    form_->Unload();
}

void frmPlace::cmdCancel_Click() {
    form_->Unload();
}

} // namespace kalvrooms
