#pragma once
// A window with its controls, its modal loop and its keys. What differs between the main window and
// the dialogs stands in Win32MainForm and Win32Dialog.

#include "win32/ControlNames.h"
#include "win32/Win32Control.h"
#include "win32/Win32Menu.h"

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kalvrooms::Gui {

class Win32Desktop;
class Win32OptionButton;
class Win32TextField;

class Win32Form : public Form, public Win32Control {
  public:
    Win32Form(Win32Desktop& desktop, const FormEntry& entry);
    ~Win32Form() override;

    Control& Find(const std::wstring& name, ControlKind kind) override;
    MenuItem& Menu(const std::wstring& name) override;
    void PopupMenu(MenuItem& menu) override;
    void Show() override;
    void ShowModal() override;
    void Unload() override;
    void HoldSession(const std::wstring& reason) override;

    Win32Desktop& Desktop() const { return desktop_; }
    const FormEntry& Entry() const { return entry_; }
    UINT Dpi() const { return dpi_; }
    // Shown and not unloaded yet.
    bool Loaded() const { return loaded_ && Window(); }
    // The controls in tab order; null for an unknown number or name.
    Win32Control* ControlById(int id) const;
    Win32Control* ControlNamed(const std::wstring& name) const;

    // Runs an event of this form; false when the form is gone or unloaded afterwards.
    bool Raise(const std::function<void()>& handler);
    // Looks at a message before it is dispatched; true when that was all.
    bool PreDispatch(MSG& message);
    void FocusArrived(Win32Control& control);
    void FocusAway(Win32Control& control);
    void MoveFocus(Win32Control& control);
    // The one option of a group that is on.
    void SelectOption(Win32OptionButton& option);
    // Where a context menu opens that was asked for by key; at the mouse without one.
    void PopupPoint(std::optional<POINT> point) { popupPoint_ = point; }

  protected:
    // The window is there: take it over and its controls.
    void Attach(HWND window) override;
    void AttachControl(const ControlEntry& entry, HWND window);
    Box Bounds() const override;
    void Bounds(const Box& box) override;
    UINT DpiOf(Edge edge) const override;
    LRESULT HandleMessage(UINT message, WPARAM word, LPARAM data) override;
    // Messages that controls send to their parent, which may be a tab page.
    bool Reflect(HWND parent, UINT message, WPARAM word, LPARAM data, LRESULT& result);
    // Takes over what an event may have changed without telling.
    virtual void AfterEvent() {}
    void ApplyFont();
    virtual void FocusFirst() = 0;
    // Sets the focus that was asked for before the form was shown; false without one.
    bool FocusAsked();
    // Before the first showing.
    virtual void Arrange(Win32Form* /*owner*/) {}
    virtual bool HandleDialogKeys(MSG& /*message*/) { return false; }

  private:
    struct FocusEvent {
        Win32TextField* field;
        bool got;
    };
    struct FrameMargins {
        int left, top, right, bottom;
    };

    FrameMargins margins() const;
    // Where a minimised window comes back to.
    RECT normalPlace() const;
    void changeDpi(UINT dpi, const RECT& suggested);
    bool flushFocusEvents();
    bool mayEndSession();
    void endSession();
    bool handleLife(UINT message, WPARAM word, LRESULT& result);
    bool handlePlace(UINT message, WPARAM word, LPARAM data, LRESULT& result);
    void handleLooks(UINT message);
    // For programs that drive this one from outside, who cannot see otherwise that a command has
    // ended: the number of ended commands is a property of the window.
    void countCommand();
    void destroy();
    void releaseOwner();
    bool chooseMenu(UINT id);
    bool keyDown(const MSG& message);
    bool runShortcut(const MSG& message);
    void pressFocusedButton(const MSG& message);
    bool openDropDown() const;
    bool moveInOptions(const MSG& message);

    Win32Desktop& desktop_;
    const FormEntry& entry_;
    UINT dpi_ = USER_DEFAULT_SCREEN_DPI;
    // While the window is neither minimised nor maximised.
    mutable FrameMargins usualMargins_{0, 0, 0, 0};
    bool loaded_ = false;
    bool shown_ = false;
    bool closing_ = false;
    bool destroying_ = false;
    // Expires with the form: an event may end the form that it belongs to.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    std::vector<std::pair<const ControlEntry*, std::unique_ptr<Win32Control>>> controls_;
    GdiObject<HFONT> font_;
    Win32MenuBar menuBar_;
    std::set<WPARAM> pressed_;
    Win32Control* focused_ = nullptr;
    Win32Control* firstFocus_ = nullptr;
    std::deque<FocusEvent> focusEvents_;
    HWND disabledOwner_ = nullptr;
    std::optional<POINT> popupPoint_;
};

} // namespace kalvrooms::Gui
