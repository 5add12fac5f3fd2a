#pragma once
// Labels, frames and everything that is pressed.

#include "win32/Win32Control.h"

namespace kalvrooms::Gui {

class Win32Label : public Label, public Win32Control {
  public:
    using Win32Control::Win32Control;
};

class Win32Frame : public Frame, public Win32Control {
  public:
    using Win32Control::Win32Control;
};

// With a background colour of its own it is painted here, else by the window system.
class Win32Button : public Button, public Win32Control {
  public:
    using Win32Control::BackColour;
    using Win32Control::Win32Control;
    void BackColour(Colour colour) override;
    bool OnCommand(WORD code) override;
    bool OnDrawItem(const DRAWITEMSTRUCT& item) override;
};

// The options of a form are one group; the group is kept here, because fields may stand between
// its options.
class Win32OptionButton : public OptionButton, public Win32Control {
  public:
    using Win32Control::Win32Control;
    bool Value() const override;
    void Value(bool value) override;
    bool OnCommand(WORD code) override;
    // Chosen by the user.
    void Chosen();
    // Shows the option as on or off; the one that is on is the group's tab stop.
    void Mark(bool on);

  protected:
    LRESULT HandleMessage(UINT message, WPARAM word, LPARAM data) override;

  private:
    bool entering_ = false;
};

class Win32CheckBox : public CheckBox, public Win32Control {
  public:
    using Win32Control::Win32Control;
    bool Value() const override;
    void Value(bool value) override;
};

} // namespace kalvrooms::Gui
