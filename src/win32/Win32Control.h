#pragma once
// What every control and every form has in common: its window, its place in twips, its colours.

#include "platform/Gui.h"
#include "win32/Handles.h"

#include <commctrl.h>

#include <array>
#include <optional>

namespace kalvrooms::Gui {

class Win32Form;

class Win32Control : public virtual Control {
  public:
    explicit Win32Control(Win32Form& form) : form_(form) {}
    ~Win32Control() override;
    Win32Control(const Win32Control&) = delete;
    Win32Control& operator=(const Win32Control&) = delete;

    std::wstring Text() const override;
    void Text(const std::wstring& text) override;
    bool Enabled() const override;
    void Enabled(bool enabled) override;
    bool Visible() const override;
    void Visible(bool visible) override;
    Twips Left() const override { return place(Edge::Left); }
    void Left(Twips value) override { place(Edge::Left, value); }
    Twips Top() const override { return place(Edge::Top); }
    void Top(Twips value) override { place(Edge::Top, value); }
    Twips Width() const override { return place(Edge::Width); }
    void Width(Twips value) override { place(Edge::Width, value); }
    Twips Height() const override { return place(Edge::Height); }
    void Height(Twips value) override { place(Edge::Height, value); }
    Colour ForeColour() const override;
    void ForeColour(Colour colour) override;
    Colour BackColour() const override;
    void BackColour(Colour colour) override;
    void SetFocus() override;

    // Null before Attach and once the window was destroyed.
    HWND Window() const { return window_; }
    Win32Form& Owner() const { return form_; }

    // Takes a window over: its messages come to HandleMessage first.
    virtual void Attach(HWND window);

    // What the parent window is told about the control. True: handled, with the result.
    virtual bool OnCommand(WORD code);
    virtual bool OnNotify(NMHDR& header, LRESULT& result);
    virtual bool OnDrawItem(const DRAWITEMSTRUCT& item);
    // Colours for a control that the window system paints itself.
    HBRUSH OnColour(HDC context, HBRUSH standard);

    // Follows the form to another DPI.
    virtual void Rescale(UINT from, UINT to);

  protected:
    enum class Edge { Left, Top, Width, Height };
    struct Box {
        int left, top, width, height;
    };
    // In pixels of the form's client area.
    virtual Box Bounds() const;
    virtual void Bounds(const Box& box);
    // The DPI in which one of the figures is counted.
    virtual UINT DpiOf(Edge edge) const;
    // Once more, all that was set so far.
    void PlaceAgain();
    virtual LRESULT HandleMessage(UINT message, WPARAM word, LPARAM data);

    std::optional<Colour> foreColour_;
    std::optional<Colour> backColour_;

  private:
    // A length that was set reads back as it was set for as long as the window keeps it.
    struct Stored {
        Twips value;
        int pixels;
    };
    static int& pick(Box& box, Edge edge);
    Twips place(Edge edge) const;
    void place(Edge edge, Twips value);
    static LRESULT procedure(HWND window, UINT message, WPARAM word, LPARAM data, void* reference);

    Win32Form& form_;
    HWND window_ = nullptr;
    GdiObject<HBRUSH> backBrush_;
    std::array<std::optional<Stored>, 4> stored_;
};

// Windows takes a NUL for the end of a text: it is shown as a blank.
std::wstring Shown(std::wstring text);

// A colour that was chosen by the user for another background than a high-contrast theme has:
// where it would vanish there, the theme's own text colour stands in.
COLORREF LegibleColour(Colour colour, COLORREF background, int themeText);

} // namespace kalvrooms::Gui
