#include "headless/HeadlessForm.h"

#include <algorithm>
#include <utility>

#include "headless/HeadlessDesktop.h"

namespace kalvrooms {
namespace {

constexpr wchar_t backspace = 8;
constexpr wchar_t firstVisible = 32;

// The size a main window gets from its layout; dialogs do not ask.
constexpr Gui::Twips designedWidth = 9735;
constexpr Gui::Twips designedHeight = 6825;

std::wstring twips(Gui::Twips value) {
    return std::to_wstring(static_cast<long>(value));
}

std::wstring yesNo(bool value) {
    return value ? L"True" : L"False";
}

} // namespace

// ------------------------------------------------------------------------- every control

void HeadlessControl::note(const std::wstring& property, const std::wstring& value) {
    form_.journal_.push_back(name_ + L"." + property + L"=" + value);
}

void HeadlessControl::Text(const std::wstring& text) {
    text_ = text;
    note(L"Text", text);
}

void HeadlessControl::Enabled(bool enabled) {
    enabled_ = enabled;
    note(L"Enabled", yesNo(enabled));
}

void HeadlessControl::Visible(bool visible) {
    visible_ = visible;
    note(L"Visible", yesNo(visible));
}

void HeadlessControl::Left(Gui::Twips value) {
    left_ = value;
    note(L"Left", twips(value));
}

void HeadlessControl::Top(Gui::Twips value) {
    top_ = value;
    note(L"Top", twips(value));
}

void HeadlessControl::Width(Gui::Twips value) {
    width_ = value;
    note(L"Width", twips(value));
    resized();
}

void HeadlessControl::Height(Gui::Twips value) {
    height_ = value;
    note(L"Height", twips(value));
    resized();
}

void HeadlessControl::ForeColour(Gui::Colour colour) {
    foreColour_ = colour;
    note(L"ForeColour", std::to_wstring(colour));
}

void HeadlessControl::BackColour(Gui::Colour colour) {
    backColour_ = colour;
    note(L"BackColour", std::to_wstring(colour));
}

void HeadlessControl::SetFocus() {
    if (enabled_ && visible_)
        form_.moveFocus(this);
}

// ------------------------------------------------------------------------- kinds of controls

void HeadlessOption::Value(bool value) {
    value_ = value;
    note(L"Value", yesNo(value));
    if (!value)
        return;
    form_.clearOtherOptions(*this);
    form_.OwningDesktop().Dispatch(Click);
}

void HeadlessCheck::Value(bool value) {
    value_ = value;
    note(L"Value", yesNo(value));
}

void HeadlessField::Text(const std::wstring& text) {
    HeadlessControl::Text(text);
    start_ = 0;
    length_ = 0;
}

void HeadlessField::Select(int start, int length) {
    start_ = std::min(static_cast<std::size_t>(std::max(start, 0)), text_.size());
    length_ = std::min(static_cast<std::size_t>(std::max(length, 0)), text_.size() - start_);
}

void HeadlessField::gotFocus() {
    form_.OwningDesktop().Dispatch(GotFocus);
}

void HeadlessField::lostFocus() {
    form_.OwningDesktop().Dispatch(LostFocus);
}

void HeadlessField::replaceSelection(const std::wstring& text) {
    text_.replace(start_, length_, text);
    start_ += text.size();
    length_ = 0;
}

void HeadlessField::typeKey(wchar_t character) {
    auto key = static_cast<std::int16_t>(static_cast<std::uint16_t>(character));
    if (KeyPress)
        form_.OwningDesktop().Dispatch([this, &key] { KeyPress(key); });
    const auto typed = static_cast<wchar_t>(static_cast<std::uint16_t>(key));
    if (typed == backspace) {
        if (length_ == 0 && start_ > 0) {
            --start_;
            length_ = 1;
        }
        replaceSelection(std::wstring());
    } else if (typed >= firstVisible) {
        replaceSelection(std::wstring(1, typed));
    }
}

void HeadlessTabs::Tab(int index) {
    tab_ = index;
    note(L"Tab", std::to_wstring(index));
}

std::wstring HeadlessTabs::TabCaption(int index) const {
    const auto found = captions_.find(index);
    return found == captions_.end() ? std::wstring() : found->second;
}

void HeadlessTabs::TabCaption(int index, const std::wstring& caption) {
    captions_[index] = caption;
    note(L"TabCaption(" + std::to_wstring(index) + L")", caption);
}

Gui::Twips HeadlessGrid::ColWidth(int column) const {
    const auto found = columnWidths_.find(column);
    return found == columnWidths_.end() ? 0 : found->second;
}

// ------------------------------------------------------------------------- menus

HeadlessMenuItem& HeadlessMenuItem::add(const std::wstring& name, bool separator) {
    form_.takeMenuName(name);
    items_.push_back(std::make_unique<HeadlessMenuItem>(form_, name, separator));
    return *items_.back();
}

Gui::MenuItem& HeadlessMenuItem::AddItem(const std::wstring& name) {
    return add(name, false);
}

void HeadlessMenuItem::AddSeparator(const std::wstring& name) {
    add(name, true);
}

HeadlessMenuItem* HeadlessMenuItem::Find(const std::wstring& name) {
    if (name_ == name)
        return this;
    for (const auto& item : items_)
        if (HeadlessMenuItem* found = item->Find(name))
            return found;
    return nullptr;
}

// ------------------------------------------------------------------------- forms

HeadlessForm::HeadlessForm(HeadlessDesktop& desktop, const std::wstring& name)
    : HeadlessControl(*this, name), desktop_(desktop) {
    visible_ = false;
    width_ = designedWidth;
    height_ = designedHeight;
    desktop_.forms_.push_back(this);
}

HeadlessForm::~HeadlessForm() {
    std::erase(desktop_.forms_, this);
    std::erase(desktop_.modalForms_, this);
}

template <class Kind>
Kind& HeadlessForm::control(const std::wstring& name) {
    auto& held = controls_[name];
    if (!held)
        held = std::make_unique<Kind>(*this, name);
    if (auto* found = dynamic_cast<Kind*>(held.get()))
        return *found;
    desktop_.complain(L"another kind of control is named " + name_ + L"." + name);
}

template <class Kind>
Kind& HeadlessForm::existing(const std::wstring& name) {
    if (!controls_.contains(name))
        desktop_.complain(L"nobody asked for a control named " + name_ + L"." + name);
    return control<Kind>(name);
}

Gui::Control& HeadlessForm::Find(const std::wstring& name, Gui::ControlKind kind) {
    switch (kind) {
    case Gui::ControlKind::Label:
        return control<HeadlessLabel>(name);
    case Gui::ControlKind::Frame:
        return control<HeadlessFrame>(name);
    case Gui::ControlKind::Button:
        return control<HeadlessButton>(name);
    case Gui::ControlKind::Option:
        return control<HeadlessOption>(name);
    case Gui::ControlKind::Check:
        return control<HeadlessCheck>(name);
    case Gui::ControlKind::Field:
        return control<HeadlessField>(name);
    case Gui::ControlKind::DropDown:
        return control<HeadlessDropDown>(name);
    case Gui::ControlKind::Tabs:
        return control<HeadlessTabs>(name);
    case Gui::ControlKind::Grid:
        break;
    }
    return control<HeadlessGrid>(name);
}

HeadlessControl& HeadlessForm::ControlNamed(const std::wstring& name) {
    const auto found = controls_.find(name);
    if (found == controls_.end())
        desktop_.complain(L"nobody asked for a control named " + name_ + L"." + name);
    return *found->second;
}

HeadlessField& HeadlessForm::Field(const std::wstring& name) {
    return existing<HeadlessField>(name);
}

HeadlessDropDown& HeadlessForm::List(const std::wstring& name) {
    return existing<HeadlessDropDown>(name);
}

HeadlessOption& HeadlessForm::Option(const std::wstring& name) {
    return existing<HeadlessOption>(name);
}

HeadlessCheck& HeadlessForm::Check(const std::wstring& name) {
    return existing<HeadlessCheck>(name);
}

HeadlessTabs& HeadlessForm::Tabs(const std::wstring& name) {
    return existing<HeadlessTabs>(name);
}

HeadlessGrid& HeadlessForm::Table(const std::wstring& name) {
    return existing<HeadlessGrid>(name);
}

void HeadlessForm::takeMenuName(const std::wstring& name) {
    if (!menuNames_.insert(name).second)
        desktop_.complain(L"two menu items are named " + name_ + L"." + name);
}

Gui::MenuItem& HeadlessForm::Menu(const std::wstring& name) {
    for (const auto& menu : menus_)
        if (menu->Name() == name)
            return *menu;
    takeMenuName(name);
    menus_.push_back(std::make_unique<HeadlessMenuItem>(*this, name, false));
    return *menus_.back();
}

HeadlessMenuItem& HeadlessForm::MenuNamed(const std::wstring& name) {
    for (const auto& menu : menus_)
        if (HeadlessMenuItem* found = menu->Find(name))
            return *found;
    desktop_.complain(L"there is no menu item named " + name_ + L"." + name);
}

void HeadlessForm::PopupMenu(Gui::MenuItem& menu) {
    auto& shown = dynamic_cast<HeadlessMenuItem&>(menu);
    desktop_.popup(shown);
}

void HeadlessForm::Show() {
    if (!loaded_)
        desktop_.complain(name_ + L" is shown after it was unloaded");
    Visible(true);
}

void HeadlessForm::ShowModal() {
    if (!loaded_)
        desktop_.complain(name_ + L" is shown after it was unloaded");
    desktop_.runModal(*this);
}

void HeadlessForm::Unload() {
    unload(false);
}

void HeadlessForm::unload(bool byForce) {
    if (!loaded_ || unloading_)
        return;
    if (!byForce && MayUnload) {
        bool may = true;
        desktop_.Dispatch([this, &may] { may = MayUnload(); });
        if (!may)
            return;
    }
    unloading_ = true;
    desktop_.Dispatch(OnUnload);
    unloading_ = false;
    loaded_ = false;
    visible_ = false;
    focus_ = nullptr;
    pressedKeys_.clear();
}

void HeadlessForm::resized() {
    desktop_.Dispatch(Resize);
}

void HeadlessForm::moveFocus(HeadlessControl* control) {
    HeadlessControl* const left = focus_;
    if (left == control || !loaded_)
        return;
    focus_ = control;
    if (left)
        left->lostFocus();
    // Whoever lost the focus may have put it somewhere else.
    if (control && focus_ == control)
        control->gotFocus();
}

void HeadlessForm::clearOtherOptions(const HeadlessOption& chosen) {
    for (const auto& [name, held] : controls_)
        if (auto* option = dynamic_cast<HeadlessOption*>(held.get()); option && option != &chosen)
            option->value_ = false;
}

// ------------------------------------------------------------------------- what a user can do

bool HeadlessForm::acceptsInput() const {
    return loaded_ && visible_ && enabled_ && !desktop_.isBlocked(*this);
}

bool HeadlessForm::canUse(const HeadlessControl& control) const {
    return acceptsInput() && control.enabled_ && control.visible_;
}

bool HeadlessForm::Focus(const std::wstring& name) {
    HeadlessControl& target = ControlNamed(name);
    if (!canUse(target))
        return false;
    moveFocus(&target);
    return true;
}

bool HeadlessForm::LeaveField() {
    if (!acceptsInput())
        return false;
    moveFocus(nullptr);
    return true;
}

std::wstring HeadlessForm::Focused() const {
    return focus_ ? focus_->name_ : std::wstring();
}

bool HeadlessForm::Click(const std::wstring& name) {
    if (!Focus(name))
        return false;
    HeadlessControl& target = ControlNamed(name);
    // What happens on leaving a field may have put the target out of reach.
    if (!canUse(target))
        return false;
    if (auto* button = dynamic_cast<HeadlessButton*>(&target))
        desktop_.Dispatch(button->Click);
    else if (auto* option = dynamic_cast<HeadlessOption*>(&target))
        option->Value(true);
    else if (auto* check = dynamic_cast<HeadlessCheck*>(&target))
        check->Value(!check->Value());
    else
        desktop_.complain(name_ + L"." + name + L" is nothing to click on");
    return true;
}

bool HeadlessForm::Type(const std::wstring& name, const std::wstring& keys) {
    HeadlessField& field = Field(name);
    if (!Focus(name))
        return false;
    for (const wchar_t character : keys)
        field.typeKey(character);
    return true;
}

bool HeadlessForm::Paste(const std::wstring& name, const std::wstring& text) {
    HeadlessField& field = Field(name);
    if (!Focus(name))
        return false;
    field.replaceSelection(text);
    return true;
}

bool HeadlessForm::Choose(const std::wstring& name, int index) {
    HeadlessDropDown& list = List(name);
    if (!Focus(name))
        return false;
    list.text_ = list.Item(index);
    return true;
}

bool HeadlessForm::SelectTab(const std::wstring& name, int index) {
    HeadlessTabs& tabs = Tabs(name);
    if (!Focus(name))
        return false;
    tabs.Tab(index);
    return true;
}

bool HeadlessForm::ClickCell(const std::wstring& name, Gui::MouseButton button, int row,
                             int column) {
    HeadlessGrid& grid = Table(name);
    if (!Focus(name))
        return false;
    if (grid.MouseUp)
        desktop_.Dispatch([&] { grid.MouseUp(button, row, column); });
    return true;
}

bool HeadlessForm::DoubleClickCell(const std::wstring& name, int row, int column) {
    if (!ClickCell(name, Gui::MouseButton::Left, row, column))
        return false;
    desktop_.Dispatch(Table(name).DoubleClick);
    return true;
}

bool HeadlessForm::ChooseMenu(const std::wstring& name) {
    HeadlessMenuItem& item = MenuNamed(name);
    if (!acceptsInput() || item.IsSeparator() || !item.Items().empty())
        return false;
    desktop_.Dispatch(item.Click);
    return true;
}

bool HeadlessForm::PressKey(const Gui::KeyStroke& stroke) {
    if (!KeyDown(stroke))
        return false;
    ReleaseKey(stroke.key);
    return true;
}

bool HeadlessForm::KeyDown(const Gui::KeyStroke& stroke) {
    if (!acceptsInput())
        return false;
    if (auto* button = dynamic_cast<HeadlessButton*>(focus_);
        button && stroke.key == Gui::KeyEnter) {
        desktop_.Dispatch(button->Click);
        return true;
    }
    pressedKeys_.insert(stroke.key);
    if (const auto shortcut = Shortcuts.find(stroke); shortcut != Shortcuts.end())
        desktop_.Dispatch(shortcut->second);
    return true;
}

bool HeadlessForm::ReleaseKey(int key) {
    if (!acceptsInput() || pressedKeys_.erase(key) == 0)
        return false;
    if (KeyUp)
        desktop_.Dispatch([this, key] { KeyUp(key); });
    return true;
}

bool HeadlessForm::DragTo(Gui::Twips width, Gui::Twips height) {
    if (!acceptsInput())
        return false;
    width_ = width;
    height_ = height;
    resized();
    return true;
}

bool HeadlessForm::AskForSessionEnd() {
    bool may = true;
    desktop_.Dispatch([this, &may] { may = !MayEndSession || MayEndSession(); });
    return may;
}

void HeadlessForm::EndSession() {
    desktop_.Dispatch(OnSessionEnd);
    OnUnload = nullptr;
    Unload();
}

bool HeadlessForm::Close() {
    if (!acceptsInput())
        return false;
    Unload();
    return true;
}

} // namespace kalvrooms
