#include "ui/frmPlace.h"

#include "app/TextNumbers.h"

#include <cstdint>

#include "model/NumberText.h"
#include "model/basValidation.h"

namespace kalvrooms {
namespace {

// This one message bears the application's name and not the text of the table.
constexpr const wchar_t* applicationTitle = L"Quartino";
constexpr std::uint32_t helpContext = 11;

constexpr int arrangementTab = 0;
constexpr int displayTab = 1;

} // namespace

frmPlace::frmPlace(const DialogServices& services, Options& options)
    : Dialog(services, L"frmPlace", helpContext), options_(options) {
    for (Gui::TextField* field : {&txtDx, &txtDy})
        prepare(*field, IsNumberKey, NormalizeThreeDecimals);
    for (Gui::Button* button : {&cmdWithCoordinates, &cmdWithoutCoordinates})
        button->Click = [this, button] { chooseColour(*button); };
    cancelWith(cmdCancel);
}

void frmPlace::load() {
    form_->Text(services_.texts.GetTextWithoutDot(TextNumber::Options));
    setCaptions({{form_->Named<Gui::Frame>(L"fraAnordnung"), 48},
                 {optSingle, 49},
                 {optBlock, 50},
                 {label(L"lblDisX"), 51},
                 {label(L"lblDisY"), 52},
                 {form_->Named<Gui::Frame>(L"fraColor"), TextNumber::Display},
                 {label(L"lblcolold"), 54},
                 {label(L"lblcolnew"), 55},
                 {chkUpdate, 56},
                 {cmdOk, 2},
                 {cmdCancel, 3}});
    // The tab selected last is the one that the dialog opens on.
    SSTab1.Tab(displayTab);
    SSTab1.TabCaption(displayTab, text(TextNumber::Display));
    SSTab1.Tab(arrangementTab);
    SSTab1.TabCaption(arrangementTab, text(TextNumber::Arrangement));
    fillFields();
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
    const std::wstring trimmed = Trim(field.Text());
    return trimmed.empty() || trimmed == L"0" ? 0.0 : TextToNumber(field.Text());
}

void frmPlace::chooseColour(Gui::Button& button) {
    // Cancelled, the dialog leaves the button's own colour.
    Gui::Colour colour = button.BackColour();
    desktop_.ShowColour(colour);
    button.BackColour(colour);
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
        SSTab1.Tab(arrangementTab);
        desktop_.ShowMessage({text(TextNumber::DistancesTooSmall), applicationTitle});
        Gui::TextField* const wrong = distanceX == 0.0 ? &txtDx : &txtDy;
        wrong->SetFocus();
        return;
    }
    options_.SetPlace({distanceX, distanceY, block, cmdWithCoordinates.BackColour(),
                       cmdWithoutCoordinates.BackColour()});
    form_->Unload();
}

} // namespace kalvrooms
