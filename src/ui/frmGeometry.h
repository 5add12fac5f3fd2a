#pragma once
// The geometry dialog: how the ground plan of the current room comes about. OK writes into the
// room's geometry at once, so the change stands even if the room dialog is cancelled afterwards.

#include <memory>
#include <string>

#include "model/clsGeometry.h"
#include "platform/Gui.h"
#include "ui/DialogServices.h"

namespace kalvrooms {

class frmGeometry {
  public:
    frmGeometry(const DialogServices& services, std::shared_ptr<clsGeometry> geometry);
    frmGeometry(const frmGeometry&) = delete;
    frmGeometry& operator=(const frmGeometry&) = delete;

    // Returns when the dialog is closed. Error: ObjectVariableNotSet without a geometry.
    void ShowModal();

  private:
    void setCaptions();
    void fillFields();
    void showFilePath(const std::wstring& path);
    // Stores the field's text as it stands; a side or ratio must be a number above 0.
    void storeNumber(const std::wstring& type, const Gui::TextField& field);

    void onKeyUp(int key);
    void optExcelFile_Click();
    void cmdExcelFile_Click();
    void cmdOk_Click();
    void cmdCancel_Click();

    const DialogServices services_;
    Gui::Desktop& desktop_;
    std::shared_ptr<clsGeometry> geometry_;
    std::unique_ptr<Gui::Form> form_;

    Gui::Frame& fraGeo;
    Gui::OptionButton& optXDirection;
    Gui::Label& lblDx;
    Gui::TextField& txtDx;
    Gui::OptionButton& optYDirection;
    Gui::Label& lblDy;
    Gui::TextField& txtDy;
    Gui::OptionButton& optRatio;
    Gui::Label& lblRatio;
    Gui::TextField& txtRatio;
    Gui::OptionButton& optExcelFile;
    Gui::Button& cmdExcelFile;
    Gui::Button& cmdOk;
    Gui::Button& cmdCancel;

    // The chosen point file; the button may show only its end.
    std::wstring filePath_;
};

} // namespace kalvrooms
