#include "ui/frmRoom.h"

#include <utility>

#include "model/NumberText.h"
#include "model/RuntimeError.h"
#include "model/basValidation.h"
#include "ui/FieldHandlers.h"
#include "ui/frmGeometry.h"

namespace kalvrooms {
namespace {

constexpr std::int32_t textTitle = 1;
constexpr std::int32_t textStoryCodeMissing = 69;
constexpr std::int32_t textHnf = 83;
constexpr std::int32_t textNoEntry = 91;
constexpr std::int32_t textAddRoom = 97;
constexpr std::int32_t textModifyRoom = 98;
constexpr std::uint32_t helpContext = 7;

// Stricter than what the host accepts.
constexpr std::size_t longestStoryCode = 8;
// The main useful areas of DIN 277.
constexpr int hnfGroups = 6;

} // namespace

frmRoom::frmRoom(const DialogServices& services, RoomEditing& editing)
    : services_(services), desktop_(services.desktop), editing_(editing),
      form_(desktop_.CreateForm(L"frmRoom")), frmAttrib(form_->FrameNamed(L"frmAttrib")),
      lblGeschoss(form_->LabelNamed(L"lblGeschoss")), lblBez(form_->LabelNamed(L"lblBez")),
      lblFkt(form_->LabelNamed(L"lblFkt")), lblFlaeche(form_->LabelNamed(L"lblFlaeche")),
      lblGFlaeche(form_->LabelNamed(L"lblGFlaeche")),
      cmdGeometry(form_->ButtonNamed(L"cmdGeometry")), lblUm(form_->LabelNamed(L"lblUm")),
      lblNutz(form_->LabelNamed(L"lblNutz")), lblFlArt(form_->LabelNamed(L"lblFlArt")),
      lblAnz(form_->LabelNamed(L"lblAnz")), cmdOk(form_->ButtonNamed(L"cmdOk")),
      cmdCancel(form_->ButtonNamed(L"cmdCancel")), txtStoryCode(form_->FieldNamed(L"txtStoryCode")),
      txtName(form_->FieldNamed(L"txtName")), txtFunction(form_->FieldNamed(L"txtFunction")),
      txtArea(form_->FieldNamed(L"txtArea")), txtQuantity(form_->FieldNamed(L"txtQuantity")),
      cboAreaType(form_->DropDownNamed(L"cboAreaType")),
      cboEnclosureType(form_->DropDownNamed(L"cboEnclosureType")),
      cboOccupancy(form_->DropDownNamed(L"cboOccupancy")) {
    for (Gui::TextField* field : {&txtStoryCode, &txtName, &txtFunction, &txtArea, &txtQuantity})
        SelectAllOnEntry(*field);
    FilterKeys(txtArea, IsNumberKey);
    FilterKeys(txtQuantity, IsDigitKey);
    NormalizeOnLeaving(txtArea, NormalizeThreeDecimals);
    form_->KeyUp = [this](int key) { onKeyUp(key); };
    cmdGeometry.Click = [this] { cmdGeometry_Click(); };
    cmdOk.Click = [this] { cmdOk_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
}

void frmRoom::ShowModal() {
    setCaptions();
    fillLists();
    fillFields();
    form_->ShowModal();
}

void frmRoom::setCaptions() {
    const std::pair<Gui::Control&, std::int32_t> captions[] = {
        {frmAttrib, 27},   {lblGeschoss, 28}, {lblBez, 31},  {lblFkt, 32},  {lblFlaeche, 33},
        {lblGFlaeche, 34}, {cmdGeometry, 35}, {lblUm, 36},   {lblNutz, 37}, {lblFlArt, 87},
        {lblAnz, 39},      {cmdOk, 2},        {cmdCancel, 3}};
    for (const auto& [control, number] : captions)
        control.Text(services_.texts.GetText(number));
}

void frmRoom::fillLists() {
    const auto addText = [this](Gui::DropDown& list, std::int32_t number) {
        list.AddItem(services_.texts.GetText(number));
    };
    for (const std::int32_t number : {textNoEntry, 88, 89, 90})
        addText(cboAreaType, number);
    addText(cboEnclosureType, textNoEntry);
    for (const wchar_t* category : {L"a", L"b", L"c", L"bc"})
        cboEnclosureType.AddItem(category);
    for (const std::int32_t number : {textNoEntry, 86, 81, 82})
        addText(cboOccupancy, number);
    for (int group = 1; group <= hnfGroups; ++group)
        cboOccupancy.AddItem(services_.texts.GetText(textHnf) + L" " + std::to_wstring(group));
    for (const std::int32_t number : {84, 85})
        addText(cboOccupancy, number);
}

void frmRoom::fillFields() {
    room_ = editing_.GetCurrentRoom();
    if (!room_ || !room_->Geometry)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    form_->Text(services_.texts.GetText(room_->IsNew() ? textAddRoom : textModifyRoom));
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
    list.Text(Trim(value).empty() ? services_.texts.GetText(textNoEntry) : value);
}

std::wstring frmRoom::chosenEntry(const Gui::DropDown& list) const {
    const std::wstring text = list.Text();
    return text == services_.texts.GetText(textNoEntry) ? std::wstring() : text;
}

void frmRoom::onKeyUp(int key) {
    switch (key) {
    case Gui::KeyF1:
        desktop_.OpenHelp(*form_, services_.helpFile, helpContext);
        break;
    case Gui::KeyEnter:
        NormalizeField(txtArea, NormalizeThreeDecimals);
        cmdOk_Click();
        break;
    case Gui::KeyEscape:
        cmdCancel_Click();
        break;
    default:
        break;
    }
}

void frmRoom::cmdGeometry_Click() {
    frmGeometry(services_, room_->Geometry).ShowModal();
}

void frmRoom::cmdOk_Click() {
    txtStoryCode.Text(Trim(txtStoryCode.Text()));
    txtQuantity.Text(Trim(txtQuantity.Text()));
    if (txtQuantity.Text() == L"0")
        txtQuantity.Text(L"1");
    const std::wstring storyCode = txtStoryCode.Text();
    if (storyCode.empty() || storyCode.size() > longestStoryCode) {
        desktop_.ShowMessage(
            {services_.texts.GetText(textStoryCodeMissing), services_.texts.GetText(textTitle)});
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

void frmRoom::cmdCancel_Click() {
    form_->Unload();
}

} // namespace kalvrooms
