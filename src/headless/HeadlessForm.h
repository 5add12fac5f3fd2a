#pragma once
// Forms and controls as plain objects: they keep what the program sets and take what a user would
// do. Every method that stands for a user's action answers whether the user could have done it: a
// disabled or hidden control, a form under a modal one and a form that is gone take nothing.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/Gui.h"

namespace kalvrooms {

class HeadlessDesktop;
class HeadlessForm;

class HeadlessControl : public virtual Gui::Control {
  public:
    HeadlessControl(HeadlessForm& form, std::wstring name) : form_(form), name_(std::move(name)) {}
    HeadlessControl(const HeadlessControl&) = delete;
    HeadlessControl& operator=(const HeadlessControl&) = delete;

    const std::wstring& Name() const { return name_; }

    std::wstring Text() const override { return text_; }
    void Text(const std::wstring& text) override;
    bool Enabled() const override { return enabled_; }
    void Enabled(bool enabled) override;
    bool Visible() const override { return visible_; }
    void Visible(bool visible) override;
    Gui::Twips Left() const override { return left_; }
    void Left(Gui::Twips value) override;
    Gui::Twips Top() const override { return top_; }
    void Top(Gui::Twips value) override;
    Gui::Twips Width() const override { return width_; }
    void Width(Gui::Twips value) override;
    Gui::Twips Height() const override { return height_; }
    void Height(Gui::Twips value) override;
    Gui::Colour ForeColour() const override { return foreColour_; }
    void ForeColour(Gui::Colour colour) override;
    Gui::Colour BackColour() const override { return backColour_; }
    void BackColour(Gui::Colour colour) override;
    void SetFocus() override;

  protected:
    friend class HeadlessForm;
    virtual void gotFocus() {}
    virtual void lostFocus() {}
    virtual void resized() {}
    // Writes into the form's journal.
    void note(const std::wstring& property, const std::wstring& value);

    HeadlessForm& form_;
    std::wstring name_;
    std::wstring text_;
    bool enabled_ = true;
    bool visible_ = true;
    Gui::Twips left_ = 0;
    Gui::Twips top_ = 0;
    Gui::Twips width_ = 0;
    Gui::Twips height_ = 0;
    Gui::Colour foreColour_ = 0;
    Gui::Colour backColour_ = 0xFFFFFF;
};

class HeadlessLabel final : public Gui::Label, public HeadlessControl {
    using HeadlessControl::HeadlessControl;
};

class HeadlessFrame final : public Gui::Frame, public HeadlessControl {
    using HeadlessControl::HeadlessControl;
};

class HeadlessButton final : public Gui::Button, public HeadlessControl {
    using HeadlessControl::HeadlessControl;
};

class HeadlessOption final : public Gui::OptionButton, public HeadlessControl {
    using HeadlessControl::HeadlessControl;

  public:
    bool Value() const override { return value_; }
    // All options of a form are one group.
    void Value(bool value) override;

  private:
    friend class HeadlessForm;
    bool value_ = false;
};

class HeadlessCheck final : public Gui::CheckBox, public HeadlessControl {
    using HeadlessControl::HeadlessControl;

  public:
    bool Value() const override { return value_; }
    void Value(bool value) override;

  private:
    bool value_ = false;
};

class HeadlessField final : public Gui::TextField, public HeadlessControl {
    using HeadlessControl::HeadlessControl;

  public:
    using HeadlessControl::Text;
    // As a window does, takes the selection away.
    void Text(const std::wstring& text) override;
    // Cut to what the text has.
    void Select(int start, int length) override;
    int SelectionStart() const { return static_cast<int>(start_); }
    int SelectionLength() const { return static_cast<int>(length_); }

  private:
    friend class HeadlessForm;
    void gotFocus() override;
    void lostFocus() override;
    void replaceSelection(const std::wstring& text);
    void typeKey(wchar_t character);

    std::size_t start_ = 0;
    std::size_t length_ = 0;
};

class HeadlessDropDown final : public Gui::DropDown, public HeadlessControl {
    using HeadlessControl::HeadlessControl;

  public:
    void AddItem(const std::wstring& text) override { items_.push_back(text); }
    int ItemCount() const override { return static_cast<int>(items_.size()); }
    std::wstring Item(int index) const override {
        return items_.at(static_cast<std::size_t>(index));
    }
    const std::vector<std::wstring>& Items() const { return items_; }

  private:
    std::vector<std::wstring> items_;
};

class HeadlessTabs final : public Gui::TabStrip, public HeadlessControl {
    using HeadlessControl::HeadlessControl;

  public:
    int Tab() const override { return tab_; }
    void Tab(int index) override;
    std::wstring TabCaption(int index) const override;
    void TabCaption(int index, const std::wstring& caption) override;

  private:
    int tab_ = 0;
    std::map<int, std::wstring> captions_;
};

class HeadlessGrid final : public Gui::Grid, public HeadlessControl {
    using HeadlessControl::HeadlessControl;

  public:
    void Redraw(bool on) override { redrawing_ = on; }
    Gui::Twips ColWidth(int column) const override;
    void ColWidth(int column, Gui::Twips width) override { columnWidths_[column] = width; }
    void Bars(Gui::ScrollBars bars) override { bars_ = bars; }
    Gui::ScrollBars Bars() const { return bars_; }
    int Row() const override { return row_; }
    void Row(int row) override { row_ = row; }
    int Col() const override { return column_; }
    void Col(int column) override { column_ = column; }
    int TopRow() const override { return topRow_; }
    void TopRow(int row) override { topRow_ = row; }

    bool Redrawing() const { return redrawing_; }

  private:
    std::map<int, Gui::Twips> columnWidths_;
    Gui::ScrollBars bars_ = Gui::ScrollBars::None;
    int row_ = 0;
    int column_ = 0;
    int topRow_ = 1;
    bool redrawing_ = true;
};

class HeadlessMenuItem final : public Gui::MenuItem {
  public:
    HeadlessMenuItem(HeadlessForm& form, std::wstring name, bool separator)
        : form_(form), name_(std::move(name)), separator_(separator) {}

    const std::wstring& Name() const { return name_; }
    bool IsSeparator() const { return separator_; }
    const std::vector<std::unique_ptr<HeadlessMenuItem>>& Items() const { return items_; }

    std::wstring Caption() const override { return caption_; }
    void Caption(const std::wstring& caption) override { caption_ = caption; }
    void Shortcut(const std::wstring& keys) override { shortcut_ = keys; }
    const std::wstring& Shortcut() const { return shortcut_; }
    MenuItem& AddItem(const std::wstring& name) override;
    void AddSeparator(const std::wstring& name) override;

    // The item of that name in this menu or below; null when there is none.
    HeadlessMenuItem* Find(const std::wstring& name);

  private:
    HeadlessMenuItem& add(const std::wstring& name, bool separator);

    HeadlessForm& form_;
    std::wstring name_;
    bool separator_;
    std::wstring caption_;
    std::wstring shortcut_;
    std::vector<std::unique_ptr<HeadlessMenuItem>> items_;
};

class HeadlessForm final : public Gui::Form, public HeadlessControl {
  public:
    HeadlessForm(HeadlessDesktop& desktop, const std::wstring& name);
    ~HeadlessForm() override;

    Gui::Control& Find(const std::wstring& name, Gui::ControlKind kind) override;
    Gui::MenuItem& Menu(const std::wstring& name) override;
    void PopupMenu(Gui::MenuItem& menu) override;
    void Show() override;
    void ShowModal() override;
    void Unload() override;
    void HoldSession(const std::wstring& reason) override { sessionReason_ = reason; }
    // What the session waits for; empty when it need not wait.
    const std::wstring& SessionReason() const { return sessionReason_; }

    HeadlessDesktop& OwningDesktop() { return desktop_; }
    bool Loaded() const { return loaded_; }
    // The form that was active when this one was shown modally; empty when there was none.
    const std::wstring& OwnerName() const { return ownerName_; }
    // What the program wrote into properties, in order: "lblDx.Text= dx in m:", "SSTab1.Tab=1".
    const std::vector<std::wstring>& Journal() const { return journal_; }

    // The control of a name, whatever its kind; std::logic_error when nobody asked for it yet.
    HeadlessControl& ControlNamed(const std::wstring& name);
    HeadlessField& Field(const std::wstring& name);
    HeadlessDropDown& List(const std::wstring& name);
    HeadlessOption& Option(const std::wstring& name);
    HeadlessCheck& Check(const std::wstring& name);
    HeadlessTabs& Tabs(const std::wstring& name);
    HeadlessGrid& Table(const std::wstring& name);
    HeadlessMenuItem& MenuNamed(const std::wstring& name);

    // ---- What a user can do.

    // Moves the focus, as Tab does; the control left behind gets its LostFocus first.
    bool Focus(const std::wstring& name);
    // The focus leaves the last field for somewhere that is no field.
    bool LeaveField();
    // The name of the control with the focus; empty when none has it.
    std::wstring Focused() const;
    // Clicks a button or an option, or turns a check box over. The focus moves there first.
    bool Click(const std::wstring& name);
    // Moves the focus into a field and types; "\b" is the backspace key.
    bool Type(const std::wstring& name, const std::wstring& keys);
    // As from the clipboard by mouse: no key filter is asked.
    bool Paste(const std::wstring& name, const std::wstring& text);
    // Takes an item of a drop-down list.
    bool Choose(const std::wstring& name, int index);
    bool SelectTab(const std::wstring& name, int index);
    bool ClickCell(const std::wstring& name, Gui::MouseButton button, int row, int column);
    // The release of the first click, then the double click.
    bool DoubleClickCell(const std::wstring& name, int row, int column);
    bool ChooseMenu(const std::wstring& name);
    // Press and release; the two halves alone for keys that another window saw half of.
    bool PressKey(const Gui::KeyStroke& stroke);
    bool PressKey(int key) { return PressKey(Gui::KeyStroke{key}); }
    bool KeyDown(const Gui::KeyStroke& stroke);
    bool KeyDown(int key) { return KeyDown(Gui::KeyStroke{key}); }
    bool ReleaseKey(int key);
    // Drags the frame to another outer size.
    bool DragTo(Gui::Twips width, Gui::Twips height);
    // The close button of the frame.
    bool Close();
    // The system asks whether the session may end, and ends it.
    bool AskForSessionEnd();
    void EndSession();

  private:
    friend class HeadlessControl;
    friend class HeadlessOption;
    friend class HeadlessDesktop;
    friend class HeadlessMenuItem;

    bool acceptsInput() const;
    template <class Kind>
    Kind& control(const std::wstring& name);
    template <class Kind>
    Kind& existing(const std::wstring& name);
    bool canUse(const HeadlessControl& control) const;
    void moveFocus(HeadlessControl* control);
    void clearOtherOptions(const HeadlessOption& chosen);
    void unload(bool byForce);
    void resized() override;
    void takeMenuName(const std::wstring& name);

    HeadlessDesktop& desktop_;
    std::map<std::wstring, std::unique_ptr<HeadlessControl>> controls_;
    std::vector<std::unique_ptr<HeadlessMenuItem>> menus_;
    std::set<std::wstring> menuNames_;
    std::vector<std::wstring> journal_;
    HeadlessControl* focus_ = nullptr;
    std::set<int> pressedKeys_;
    std::wstring ownerName_;
    std::wstring sessionReason_;
    bool loaded_ = true;
    bool unloading_ = false;
};

} // namespace kalvrooms
