#include "win32/Win32Menu.h"

namespace kalvrooms::Gui {
namespace {

// Above the numbers of the controls.
constexpr UINT firstMenuId = 0x2000;

} // namespace

Win32MenuItem::Win32MenuItem(Win32MenuBar& bar, HMENU parent, UINT position, UINT id)
    : bar_(bar), parent_(parent), position_(position), id_(id) {}

void Win32MenuItem::Caption(const std::wstring& caption) {
    caption_ = caption;
    show();
}

void Win32MenuItem::Shortcut(const std::wstring& keys) {
    shortcut_ = keys;
    show();
}

void Win32MenuItem::show() {
    if (!bar_.bar_)
        return;
    // What follows a tab stands at the right edge of the menu.
    std::wstring text = shortcut_.empty() ? caption_ : caption_ + L"\t" + shortcut_;
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    info.dwTypeData = text.data();
    SetMenuItemInfoW(parent_, position_, TRUE, &info);
    bar_.redraw();
}

HMENU Win32MenuItem::Popup() {
    if (!popup_ && bar_.bar_) {
        popup_ = CreatePopupMenu();
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_SUBMENU;
        info.hSubMenu = popup_;
        SetMenuItemInfoW(parent_, position_, TRUE, &info);
    }
    return popup_;
}

MenuItem& Win32MenuItem::AddItem(const std::wstring&) {
    const HMENU popup = Popup();
    const auto position = static_cast<UINT>(items_.size());
    auto item = std::make_unique<Win32MenuItem>(bar_, popup, position, 0);
    item->id_ = bar_.nextId(*item);
    AppendMenuW(popup, MF_STRING, item->id_, L"");
    items_.push_back(std::move(item));
    return *items_.back();
}

void Win32MenuItem::AddSeparator(const std::wstring&) {
    const HMENU popup = Popup();
    const auto position = static_cast<UINT>(items_.size());
    AppendMenuW(popup, MF_SEPARATOR, 0, nullptr);
    items_.push_back(std::make_unique<Win32MenuItem>(bar_, popup, position, 0));
}

Win32MenuBar::~Win32MenuBar() {
    if (bar_ && !window_)
        DestroyMenu(bar_);
}

void Win32MenuBar::WindowGone() {
    window_ = nullptr;
    bar_ = nullptr;
}

Win32MenuItem& Win32MenuBar::Menu(HWND window, const std::wstring& name) {
    if (!bar_ && window) {
        window_ = window;
        bar_ = CreateMenu();
    }
    auto& menu = menus_[name];
    if (!menu) {
        const auto position = static_cast<UINT>(menus_.size() - 1);
        menu = std::make_unique<Win32MenuItem>(*this, bar_, position, 0);
        AppendMenuW(bar_, MF_STRING, nextId(*menu), L"");
        menu->Popup();
        // Only now: an empty bar would have no height.
        if (window_ && GetMenu(window_) != bar_)
            SetMenu(window_, bar_);
        redraw();
    }
    return *menu;
}

Win32MenuItem* Win32MenuBar::ItemById(UINT id) const {
    const auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : found->second;
}

UINT Win32MenuBar::nextId(Win32MenuItem& item) {
    const UINT id = firstMenuId + static_cast<UINT>(byId_.size());
    byId_[id] = &item;
    return id;
}

void Win32MenuBar::redraw() const {
    if (window_)
        DrawMenuBar(window_);
}

} // namespace kalvrooms::Gui
