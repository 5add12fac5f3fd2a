#pragma once
// The room dialog: enters a new room or changes an existing one. It works on the main window's
// current room, which changes on OK only; whether that room is new decides between the two modes.

#include <memory>
#include <string>

#include "model/clsRoom.h"
#include "ui/Dialog.h"
#include "ui/RoomEditing.h"

namespace kalvrooms {

class frmRoom final : public Dialog {
  public:
    // Showing it without a current room is an error: ObjectVariableNotSet.
    frmRoom(const DialogServices& services, RoomEditing& editing);

  private:
    void load() override;
    void fillLists();
    void fillFields();
    void showEntry(Gui::DropDown& list, const std::wstring& value) const;
    std::wstring chosenEntry(const Gui::DropDown& list) const;
    void cmdOk_Click() override;

    RoomEditing& editing_;
    std::shared_ptr<clsRoom> room_;

    Gui::TextField& txtStoryCode = named(L"txtStoryCode");
    Gui::TextField& txtName = named(L"txtName");
    Gui::TextField& txtFunction = named(L"txtFunction");
    Gui::TextField& txtArea = named(L"txtArea");
    Gui::Button& cmdGeometry = named(L"cmdGeometry");
    Gui::DropDown& cboEnclosureType = named(L"cboEnclosureType");
    Gui::DropDown& cboOccupancy = named(L"cboOccupancy");
    Gui::DropDown& cboAreaType = named(L"cboAreaType");
    Gui::TextField& txtQuantity = named(L"txtQuantity");
    Gui::Button& cmdCancel = named(L"cmdCancel");
};

} // namespace kalvrooms
