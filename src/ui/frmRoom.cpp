#include "ui/frmRoom.h"

#include "app/Messages.h"
#include "app/TextNumbers.h"

#include <utility>

#include "model/NumberText.h"
#include "model/RuntimeError.h"
#include "model/basValidation.h"
#include "ui/frmGeometry.h"

namespace kalvrooms {
namespace {

constexpr std::uint32_t helpContext = 7;

// Stricter than what the host accepts.
constexpr std::size_t longestStoryCode = 8;
// The main useful areas of DIN 277.
constexpr int hnfGroups = 6;
// More rooms at once are a slip of the keys, and the window would stand still for a long time.
constexpr std::int32_t mostRoomsAtOnce = 99'999;

// A whole number has as many digits as somebody likes to paste.
bool isTooMany(const std::wstring& quantity) {
    const std::size_t first = quantity.find_first_not_of(L'0');
    if (first == std::wstring::npos)
        return false;
    if (quantity.find_first_not_of(L"0123456789") == std::wstring::npos)
        return quantity.size() - first > std::to_wstring(mostRoomsAtOnce).size();
    return IsNumeric(quantity) && ToDouble(quantity) >= mostRoomsAtOnce + 0.5;
}

} // namespace

frmRoom::frmRoom(const DialogServices& services, RoomEditing& editing)
    : Dialog(services, L"frmRoom", helpContext), editing_(editing) {
    for (Gui::TextField* field : {&txtStoryCode, &txtName, &txtFunction})
        prepare(*field);
    prepare(txtArea, IsNumberKey, NormalizeThreeDecimals);
    prepare(txtQuantity, IsDigitKey);
    cmdGeometry.Click = [this] { frmGeometry(services_, room_->Geometry).ShowModal(); };
    cancelWith(cmdCancel);
}

void frmRoom::load() {
    setCaptions({{form_->Named<Gui::Frame>(L"frmAttrib"), 27},
                 {label(L"lblGeschoss"), 28},
                 {label(L"lblBez"), 31},
                 {label(L"lblFkt"), 32},
                 {label(L"lblFlaeche"), 33},
                 {label(L"lblGFlaeche"), 34},
                 {cmdGeometry, 35},
                 {label(L"lblUm"), 36},
                 {label(L"lblNutz"), 37},
                 {label(L"lblFlArt"), 87},
                 {label(L"lblAnz"), 39},
                 {cmdOk, 2},
                 {cmdCancel, 3}});
    fillLists();
    fillFields();
}

void frmRoom::fillLists() {
    const auto addText = [this](Gui::DropDown& list, std::int32_t number) {
        list.AddItem(text(number));
    };
    for (const std::int32_t number : {TextNumber::NoEntry, 88, 89, 90})
        addText(cboAreaType, number);
    addText(cboEnclosureType, TextNumber::NoEntry);
    for (const wchar_t* category : {L"a", L"b", L"c", L"bc"})
        cboEnclosureType.AddItem(category);
    for (const std::int32_t number : {TextNumber::NoEntry, 86, 81, 82})
        addText(cboOccupancy, number);
    for (int group = 1; group <= hnfGroups; ++group)
        cboOccupancy.AddItem(text(TextNumber::Hnf) + L" " + std::to_wstring(group));
    for (const std::int32_t number : {84, 85})
        addText(cboOccupancy, number);
}

void frmRoom::fillFields() {
    room_ = editing_.GetCurrentRoom();
    if (!room_ || !room_->Geometry)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    form_->Text(text(room_->IsNew() ? TextNumber::AddRoom : TextNumber::ModifyRoom));
    txtQuantity.Text(L"1");
    txtStoryCode.Text(room_->StoryCode());
    txtFunction.Text(room_->FunctionName());
    txtName.Text(room_->Name());
    txtArea.Text(FormatThreeDecimals(room_->Geometry->Area()));
    showEntry(cboAreaType, room_->AreaType());
    showEntry(cboEnclosureType, room_->Enclosure());
    showEntry(cboOccupancy, room_->Occupancy());
    // An existing room can neither change its storey nor be multiplied.
    txtQuantity.Enabled(room_->IsNew());
    txtStoryCode.Enabled(room_->IsNew());
    // The area of a polygon comes from its point file.
    if (room_->Geometry->Info() == L"polygonal")
        txtArea.Enabled(false);
}

void frmRoom::showEntry(Gui::DropDown& list, const std::wstring& value) const {
    list.Text(Trim(value).empty() ? text(TextNumber::NoEntry) : value);
}

std::wstring frmRoom::chosenEntry(const Gui::DropDown& list) const {
    const std::wstring chosen = list.Text();
    return chosen == text(TextNumber::NoEntry) ? std::wstring() : chosen;
}

void frmRoom::cmdOk_Click() {
    txtStoryCode.Text(Trim(txtStoryCode.Text()));
    txtQuantity.Text(Trim(txtQuantity.Text()));
    if (txtQuantity.Text() == L"0")
        txtQuantity.Text(L"1");
    const std::wstring storyCode = txtStoryCode.Text();
    if (storyCode.empty() || storyCode.size() > longestStoryCode) {
        desktop_.ShowMessage({text(TextNumber::StoryCodeMissing), text(TextNumber::Title)});
        return;
    }
    if (room_->IsNew() && isTooMany(txtQuantity.Text())) {
        desktop_.ShowMessage(
            {MessageText(services_.texts, TextNumber::TooManyAtOnce), text(TextNumber::Title)});
        return;
    }
    // A pasted text may bring what no key does. What is no number at all fails below.
    if (txtArea.Enabled() && NumberOrZero(Trim(txtArea.Text())) < 0.0) {
        desktop_.ShowMessage(
            {MessageText(services_.texts, TextNumber::NegativeArea), text(TextNumber::Title)});
        return;
    }
    room_->StoryCode(storyCode);
    room_->FunctionName(Trim(txtFunction.Text()));
    room_->Name(Trim(txtName.Text()));
    room_->Geometry->Area(ToDouble(Trim(txtArea.Text())));
    room_->AreaType(chosenEntry(cboAreaType));
    room_->Enclosure(chosenEntry(cboEnclosureType));
    room_->Occupancy(chosenEntry(cboOccupancy));
    if (room_->IsNew())
        editing_.AddCurrentRoomsToListOfFloors(ToLong(txtQuantity.Text()));
    else
        editing_.UpdateTable(false);
    form_->Unload();
}

} // namespace kalvrooms
