#pragma once
// The menu bar of a window and its items.

#include "platform/Gui.h"

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kalvrooms::Gui {

class Win32MenuBar;

class Win32MenuItem : public MenuItem {
  public:
    Win32MenuItem(Win32MenuBar& bar, HMENU parent, UINT position, UINT id);

    std::wstring Caption() const override { return caption_; }
    void Caption(const std::wstring& caption) override;
    void Shortcut(const std::wstring& keys) override;
    MenuItem& AddItem(const std::wstring& name) override;
    void AddSeparator(const std::wstring& name) override;

    // The menu that opens; made when first asked for.
    HMENU Popup();

  private:
    void show();

    Win32MenuBar& bar_;
    HMENU parent_;
    UINT position_;
    UINT id_;
    HMENU popup_ = nullptr;
    std::wstring caption_;
    std::wstring shortcut_;
    std::vector<std::unique_ptr<Win32MenuItem>> items_;
};

class Win32MenuBar {
  public:
    Win32MenuBar() = default;
    ~Win32MenuBar();
    Win32MenuBar(const Win32MenuBar&) = delete;
    Win32MenuBar& operator=(const Win32MenuBar&) = delete;

    // A menu of the bar; made when first asked for.
    Win32MenuItem& Menu(HWND window, const std::wstring& name);
    // The item behind a command; null when there is none.
    Win32MenuItem* ItemById(UINT id) const;
    // The window took the bar away with it.
    void WindowGone();

  private:
    friend class Win32MenuItem;
    UINT nextId(Win32MenuItem& item);
    void redraw() const;

    HWND window_ = nullptr;
    HMENU bar_ = nullptr;
    std::map<std::wstring, std::unique_ptr<Win32MenuItem>> menus_;
    std::map<UINT, Win32MenuItem*> byId_;
};

} // namespace kalvrooms::Gui
