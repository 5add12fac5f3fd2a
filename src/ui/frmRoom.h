#pragma once
// The room dialog: enters a new room or changes an existing one. It works on the main window's
// current room, which changes on OK only; whether that room is new decides between the two modes.

#include <cstdint>
#include <memory>
#include <string>

#include "model/clsRoom.h"
#include "platform/Gui.h"
#include "ui/DialogServices.h"
#include "ui/RoomEditing.h"

namespace kalvrooms {

class frmRoom {
  public:
    frmRoom(const DialogServices& services, RoomEditing& editing);
    frmRoom(const frmRoom&) = delete;
    frmRoom& operator=(const frmRoom&) = delete;

    // Returns when the dialog is closed. Error: ObjectVariableNotSet without a current room.
    void ShowModal();

  private:
    void setCaptions();
    void fillLists();
    void fillFields();
    void showEntry(Gui::DropDown& list, const std::wstring& value) const;
    std::wstring chosenEntry(const Gui::DropDown& list) const;

    void onKeyUp(int key);
    void cmdGeometry_Click();
    void cmdOk_Click();
    void cmdCancel_Click();

    const DialogServices services_;
    Gui::Desktop& desktop_;
    RoomEditing& editing_;
    std::unique_ptr<Gui::Form> form_;

    Gui::Frame& frmAttrib;
    Gui::Label& lblGeschoss;
    Gui::Label& lblBez;
    Gui::Label& lblFkt;
    Gui::Label& lblFlaeche;
    Gui::Label& lblGFlaeche;
    Gui::Button& cmdGeometry;
    Gui::Label& lblUm;
    Gui::Label& lblNutz;
    Gui::Label& lblFlArt;
    Gui::Label& lblAnz;
    Gui::Button& cmdOk;
    Gui::Button& cmdCancel;
    Gui::TextField& txtStoryCode;
    Gui::TextField& txtName;
    Gui::TextField& txtFunction;
    Gui::TextField& txtArea;
    Gui::TextField& txtQuantity;
    Gui::DropDown& cboAreaType;
    Gui::DropDown& cboEnclosureType;
    Gui::DropDown& cboOccupancy;

    std::shared_ptr<clsRoom> room_;
};

} // namespace kalvrooms
