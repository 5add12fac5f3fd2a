#pragma once
// The options dialog: how new rooms are placed, the two room colours and whether the report is
// shown. It keeps nothing itself; everything lives in the main window.

#include "app/Options.h"
#include "ui/Dialog.h"

namespace kalvrooms {

class frmPlace final : public Dialog {
  public:
    frmPlace(const DialogServices& services, Options& options);

  private:
    void load() override;
    void fillFields();
    // Metres; 0 for a distance that is missing.
    static double distance(const Gui::TextField& field);
    void chooseColour(Gui::Button& button);
    void cmdOk_Click() override;

    Options& options_;

    Gui::TabStrip& SSTab1 = named(L"SSTab1");
    Gui::OptionButton& optSingle = named(L"optSingle");
    Gui::OptionButton& optBlock = named(L"optBlock");
    Gui::TextField& txtDx = named(L"txtDx");
    Gui::TextField& txtDy = named(L"txtDy");
    Gui::Button& cmdWithCoordinates = named(L"cmdWithCoordinates");
    Gui::Button& cmdWithoutCoordinates = named(L"cmdWithoutCoordinates");
    Gui::CheckBox& chkUpdate = named(L"chkUpdate");
    Gui::Button& cmdCancel = named(L"cmdCancel");
};

} // namespace kalvrooms
