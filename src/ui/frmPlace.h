#pragma once
// The options dialog: how new rooms are set down, the two room colours and whether the report is
// shown. It keeps nothing itself; everything lives in the main window.

#include <memory>
#include <string>

#include "app/Options.h"
#include "platform/Gui.h"
#include "ui/DialogServices.h"

namespace kalvrooms {

class frmPlace {
  public:
    frmPlace(const DialogServices& services, Options& options);
    frmPlace(const frmPlace&) = delete;
    frmPlace& operator=(const frmPlace&) = delete;

    // Returns when the dialog is closed.
    void ShowModal();

  private:
    void setCaptions();
    void fillFields();
    // Metres; 0 for a distance that is missing.
    static double distance(const Gui::TextField& field);
    void chooseColour(Gui::Button& button);

    void onKeyUp(int key);
    void cmdOk_Click();
    void cmdCancel_Click();

    const DialogServices services_;
    Gui::Desktop& desktop_;
    Options& options_;
    std::unique_ptr<Gui::Form> form_;

    Gui::TabStrip& SSTab1;
    Gui::Frame& fraAnordnung;
    Gui::OptionButton& optSingle;
    Gui::OptionButton& optBlock;
    Gui::Label& lblDisX;
    Gui::TextField& txtDx;
    Gui::Label& lblDisY;
    Gui::TextField& txtDy;
    Gui::Frame& fraColor;
    Gui::Label& lblcolold;
    Gui::Button& cmdWithCoordinates;
    Gui::Label& lblcolnew;
    Gui::Button& cmdWithoutCoordinates;
    Gui::CheckBox& chkUpdate;
    Gui::Button& cmdOk;
    Gui::Button& cmdCancel;

    // What the colour dialog reported last; a cancelled one reports the same again.
    Gui::Colour cdColor = 0;
};

} // namespace kalvrooms
