#include "win32/ControlFactory.h"

#include "win32/Win32Buttons.h"
#include "win32/Win32Fields.h"
#include "win32/Win32Grid.h"
#include "win32/Win32TabStrip.h"

#include <stdexcept>

namespace kalvrooms::Gui {
namespace {

std::unique_ptr<Win32Control> bare(Win32Form& form, ControlKind kind) {
    switch (kind) {
    case ControlKind::Label:
        return std::make_unique<Win32Label>(form);
    case ControlKind::Frame:
        return std::make_unique<Win32Frame>(form);
    case ControlKind::Button:
        return std::make_unique<Win32Button>(form);
    case ControlKind::Option:
        return std::make_unique<Win32OptionButton>(form);
    case ControlKind::Check:
        return std::make_unique<Win32CheckBox>(form);
    case ControlKind::Field:
        return std::make_unique<Win32TextField>(form);
    case ControlKind::DropDown:
        return std::make_unique<Win32DropDown>(form);
    case ControlKind::Tabs:
        return std::make_unique<Win32TabStrip>(form);
    case ControlKind::Grid:
        return std::make_unique<Win32Grid>(form);
    }
    throw std::logic_error("a kind of control that nobody makes");
}

} // namespace

std::unique_ptr<Win32Control> MakeControl(Win32Form& form, const ControlEntry& entry, HWND window) {
    if (!window)
        throw std::logic_error("a control of the layout is missing in the dialog template");
    std::unique_ptr<Win32Control> control = bare(form, entry.kind);
    control->Attach(window);
    return control;
}

} // namespace kalvrooms::Gui
