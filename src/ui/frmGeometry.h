#pragma once
// The geometry dialog: how the ground plan of the current room comes about. OK writes into the
// room's geometry at once, so the change stands even if the room dialog is cancelled afterwards.

#include <memory>
#include <string>

#include "model/clsGeometry.h"
#include "ui/Dialog.h"

namespace kalvrooms {

class frmGeometry final : public Dialog {
  public:
    // Showing it without a geometry is an error: ObjectVariableNotSet.
    frmGeometry(const DialogServices& services, std::shared_ptr<clsGeometry> geometry);

  private:
    void load() override;
    void showFilePath(const std::wstring& path);
    // Stores the field's text as it stands; a side or ratio must be a number above 0.
    void storeNumber(const std::wstring& type, const Gui::TextField& field);
    void optExcelFile_Click();
    void cmdExcelFile_Click();
    void cmdOk_Click() override;

    std::shared_ptr<clsGeometry> geometry_;
    // The chosen point file; the button may show only its end.
    std::wstring filePath_;

    Gui::OptionButton& optXDirection = named(L"optXDirection");
    Gui::TextField& txtDx = named(L"txtDx");
    Gui::OptionButton& optYDirection = named(L"optYDirection");
    Gui::TextField& txtDy = named(L"txtDy");
    Gui::OptionButton& optRatio = named(L"optRatio");
    Gui::TextField& txtRatio = named(L"txtRatio");
    Gui::OptionButton& optExcelFile = named(L"optExcelFile");
    Gui::Button& cmdExcelFile = named(L"cmdExcelFile");
    Gui::Button& cmdCancel = named(L"cmdCancel");
};

} // namespace kalvrooms
