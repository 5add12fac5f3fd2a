#pragma once
// All that the program wants from a desktop. Forms are written once against this header; a folder
// per desktop realises it, and the headless one serves the tests.
//
// Lengths are twips (1/1440 inch) whatever the monitor's DPI, as single-precision numbers. Captions
// use "&" for access keys. Every event comes in through Desktop::Dispatch.

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "model/RuntimeError.h"
#include "platform/GridCells.h"

namespace kalvrooms::Gui {

using Twips = float;

// Pointer shapes of the window system's standard set.
inline constexpr std::int16_t DefaultPointer = 0;
inline constexpr std::int16_t HourglassPointer = 11;

// Key codes that forms ask for; letters have the code of their capital.
inline constexpr int KeyEnter = 13;
inline constexpr int KeyEscape = 27;
inline constexpr int KeyUpArrow = 38;
inline constexpr int KeyDownArrow = 40;
inline constexpr int KeyInsert = 45;
inline constexpr int KeyDelete = 46;
inline constexpr int KeyF1 = 112;
inline constexpr int KeyF2 = 113;

// A key together with what is held down with it.
struct KeyStroke {
    int key = 0;
    bool control = false;
    bool shift = false;
    auto operator<=>(const KeyStroke&) const = default;
};

// What a layout says that a control is.
enum class ControlKind { Label, Frame, Button, Option, Check, Field, DropDown, Tabs, Grid };

enum class MouseButton { Left = 1, Right = 2, Middle = 4 };
enum class ScrollBars { None, Vertical, Both };

class Control {
  public:
    virtual ~Control() = default;
    // Caption of a label, button, frame or form; contents of a field.
    virtual std::wstring Text() const = 0;
    virtual void Text(const std::wstring& text) = 0;
    virtual bool Enabled() const = 0;
    virtual void Enabled(bool enabled) = 0;
    virtual bool Visible() const = 0;
    virtual void Visible(bool visible) = 0;
    // Relative to the client area of the form (or of the desktop for a form).
    virtual Twips Left() const = 0;
    virtual void Left(Twips value) = 0;
    virtual Twips Top() const = 0;
    virtual void Top(Twips value) = 0;
    virtual Twips Width() const = 0;
    virtual void Width(Twips value) = 0;
    virtual Twips Height() const = 0;
    virtual void Height(Twips value) = 0;
    virtual Colour ForeColour() const = 0;
    virtual void ForeColour(Colour colour) = 0;
    virtual Colour BackColour() const = 0;
    virtual void BackColour(Colour colour) = 0;
    virtual void SetFocus() = 0;
};

class Label : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Label;
};

class Frame : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Frame;
};

class Button : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Button;
    std::function<void()> Click;
};

class OptionButton : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Option;
    virtual bool Value() const = 0;
    // Setting true clears the other options of the group and runs Click, as a user's click would.
    virtual void Value(bool value) = 0;
    std::function<void()> Click;
};

class CheckBox : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Check;
    virtual bool Value() const = 0;
    virtual void Value(bool value) = 0;
};

class TextField : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Field;
    virtual void Select(int start, int length) = 0;
    std::function<void()> GotFocus;
    std::function<void()> LostFocus;
    // The character of a typed key; set to 0 it is swallowed. Not asked for pasted text.
    std::function<void(std::int16_t& key)> KeyPress;
};

// A list that drops down. Its text may be one that is not in the list.
class DropDown : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::DropDown;
    virtual void AddItem(const std::wstring& text) = 0;
    virtual int ItemCount() const = 0;
    virtual std::wstring Item(int index) const = 0; // from 0
};

// Tabs are numbered from 0; which controls stand on which tab is a matter of the layout.
class TabStrip : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Tabs;
    virtual int Tab() const = 0;
    virtual void Tab(int index) = 0;
    virtual std::wstring TabCaption(int index) const = 0;
    virtual void TabCaption(int index, const std::wstring& caption) = 0;
};

// A read-only table: row 0 is the fixed header; the current cell is what commands act on.
class Grid : public virtual Control {
  public:
    static constexpr ControlKind Kind = ControlKind::Grid;
    // Reading and filling; what was changed shows when Redraw is on.
    GridCells& Cells() { return cells_; }
    const GridCells& Cells() const { return cells_; }
    // Off while the table is rebuilt; switching it on shows the new contents.
    virtual void Redraw(bool on) = 0;
    virtual Twips ColWidth(int column) const = 0;
    // A column of width 0 is hidden and cannot be dragged open.
    virtual void ColWidth(int column, Twips width) = 0;
    virtual void Bars(ScrollBars bars) = 0;
    // The first row below the header that is shown; as far down as the table reaches.
    virtual int TopRow() const = 0;
    virtual void TopRow(int row) = 0;
    // The current cell.
    virtual int Row() const = 0;
    virtual void Row(int row) = 0;
    virtual int Col() const = 0;
    virtual void Col(int column) = 0;
    // Row and column under the mouse; row 0 for the header.
    std::function<void(MouseButton button, int row, int column)> MouseUp;
    std::function<void()> DoubleClick;

  protected:
    GridCells cells_;
};

class MenuItem {
  public:
    virtual ~MenuItem() = default;
    virtual std::wstring Caption() const = 0;
    virtual void Caption(const std::wstring& caption) = 0;
    // The keys that do the same, as they are shown beside the caption; the form listens for them.
    virtual void Shortcut(const std::wstring& keys) = 0;
    virtual MenuItem& AddItem(const std::wstring& name) = 0;
    virtual void AddSeparator(const std::wstring& name) = 0;
    std::function<void()> Click;
};

// A window. Controls are known by their own names; asking for a name with another kind than the
// layout's is a programming error (std::logic_error).
class Form : public virtual Control {
  public:
    template <typename Type>
    Type& Named(const std::wstring& name) {
        return dynamic_cast<Type&>(Find(name, Type::Kind));
    }
    virtual Control& Find(const std::wstring& name, ControlKind kind) = 0;
    // A menu of the menu bar; made when first asked for.
    virtual MenuItem& Menu(const std::wstring& name) = 0;
    // Opens a menu of the bar as context menu at the mouse.
    virtual void PopupMenu(MenuItem& menu) = 0;

    virtual void Show() = 0;
    // Returns when the form was unloaded.
    virtual void ShowModal() = 0;
    // Closes the form as its close button does: OnUnload runs first.
    virtual void Unload() = 0;

    // The form sees key releases before its controls; a release counts only if the form saw its
    // press too, and if the press did nothing yet: Enter on a button presses the button, Enter and
    // Escape close a list that has dropped down.
    std::function<void(int key)> KeyUp;
    // Run when they are pressed, whichever control has the focus. Held down they count once.
    std::map<KeyStroke, std::function<void()>> Shortcuts;
    std::function<void()> Resize;
    // Asked before closing: false defers the closing (a command is still under way).
    std::function<bool()> MayUnload;
    // Asked every second, also while a call of a command has not come back: true when the user's
    // input is served meanwhile.
    std::function<bool()> ServesInput;
    std::function<void()> OnUnload;

    // The user's session is about to end, and he can still answer questions: false when it has to
    // wait.
    std::function<bool()> MayEndSession;
    // It ends now. The form is closed without OnUnload then, unless it may not be closed.
    std::function<void()> OnSessionEnd;
    // What the user reads when the session waits for this form; empty when it need not wait.
    virtual void HoldSession(const std::wstring& reason) = 0;
};

struct Message {
    enum class Buttons { Ok, YesNo };
    enum class Icon { None, Exclamation, Stop };
    std::wstring Prompt;
    std::wstring Title;
    Buttons ButtonSet = Buttons::Ok;
    Icon Symbol = Icon::None;
};
enum class Answer { Ok, Yes, No };

// Flags of the file dialogs, as the system numbers them.
inline constexpr std::uint32_t OverwritePrompt = 0x0002;
inline constexpr std::uint32_t HideReadOnly = 0x0004;
inline constexpr std::uint32_t FileMustExist = 0x1000;
inline constexpr std::uint32_t CreatePrompt = 0x2000;

struct FileDialog {
    std::wstring FileName;  // in: proposed; out: chosen, full path
    std::wstring FileTitle; // out: chosen name without folder
    std::wstring Filter;    // description|pattern|description|pattern
    int FilterIndex = 0;    // in and out, from 1; 0 takes the first
    std::wstring DefaultExtension;
    std::uint32_t Flags = 0;
};

class Desktop {
  public:
    virtual ~Desktop() = default;
    // "frmMain", "frmRoom", ...; not shown yet. The form that is active owns a modal one.
    virtual std::unique_ptr<Form> CreateForm(const std::wstring& name) = 0;
    virtual Answer ShowMessage(const Message& message) = 0;
    // Both raise DialogCancelled when the user gives up.
    virtual void ShowOpen(FileDialog& dialog) = 0;
    virtual void ShowSave(FileDialog& dialog) = 0;
    // Opens without a preset colour; cancelled, it leaves the colour as it was.
    virtual void ShowColour(Colour& colour) = 0;
    // The application-wide mouse pointer.
    virtual std::int16_t MousePointer() const = 0;
    virtual void MousePointer(std::int16_t shape) = 0;
    // Whether Escape was pressed in one of the program's windows since the last question. For
    // operations that do not come back to the user in between.
    virtual bool EscapePressed() = 0;
    // Ends the process at once, whatever is still under way in it.
    virtual void EndProcess() = 0;
    // Opens the help file at a context number; a missing file does nothing.
    virtual void OpenHelp(Form& owner, const std::wstring& file, std::uint32_t context) = 0;
    // Runs until no form is loaded any more.
    virtual void Run() = 0;

    // The one way in for every event: a runtime error that nobody trapped ends the event here, not
    // the program. Running out of memory is handled the same way; a reserve is kept for the
    // message.
    void Dispatch(const std::function<void()>& event) noexcept;
    // Shows such an error; without one it is dropped.
    std::function<void(const RuntimeError&)> RuntimeErrorHandler;

  private:
    void report(const RuntimeError& error) noexcept;
    void setAside() noexcept;

    // Made beforehand: there may be no memory left for them when they are needed.
    const RuntimeError outOfMemory_{RuntimeError::OutOfMemory};
    const RuntimeError invalidCall_{RuntimeError::InvalidProcedureCall};
    std::unique_ptr<char[]> reserve_;
};

} // namespace kalvrooms::Gui
