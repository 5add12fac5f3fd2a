#pragma once
// The controls of every form in tab order: name, kind and number in the dialog templates.

#include "platform/Gui.h"

#include <span>
#include <string_view>

namespace kalvrooms::Gui {

struct ControlEntry {
    std::wstring_view name;
    ControlKind kind;
    int id;
};

// The dialogs' layout: template, templates of the tab pages, controls.
struct FormEntry {
    std::wstring_view name;
    int dialog; // 0: not made from a template
    std::span<const int> pages;
    std::span<const ControlEntry> controls;
};

// Null for a name that no form has.
const FormEntry* FindForm(std::wstring_view name);

} // namespace kalvrooms::Gui
