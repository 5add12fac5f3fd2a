#include "win32/ControlNames.h"

namespace kalvrooms::Gui {
namespace {

#define QUARTINO_WIDE(text) L##text
#define QUARTINO_ENTRY(name, kind, id, page) {QUARTINO_WIDE(#name), ControlKind::kind, id, page},

constexpr ControlEntry mainControls[] = {QUARTINO_MAIN_CONTROLS(QUARTINO_ENTRY)};
constexpr ControlEntry roomControls[] = {QUARTINO_ROOM_CONTROLS(QUARTINO_ENTRY)};
constexpr ControlEntry geometryControls[] = {QUARTINO_GEOMETRY_CONTROLS(QUARTINO_ENTRY)};
constexpr ControlEntry placeControls[] = {QUARTINO_PLACE_CONTROLS(QUARTINO_ENTRY)};
constexpr ControlEntry reportControls[] = {QUARTINO_REPORT_CONTROLS(QUARTINO_ENTRY)};
constexpr int placePages[] = {IDD_PLACE_PAGE1, IDD_PLACE_PAGE2};

#undef QUARTINO_ENTRY
#undef QUARTINO_WIDE

constexpr FormEntry forms[] = {
    {L"frmMain", 0, {}, mainControls},
    {L"frmRoom", IDD_ROOM, {}, roomControls},
    {L"frmGeometry", IDD_GEOMETRY, {}, geometryControls},
    {L"frmPlace", IDD_PLACE, placePages, placeControls},
    {L"frmReport", IDD_REPORT, {}, reportControls},
};

} // namespace

const FormEntry* FindForm(std::wstring_view name) {
    for (const FormEntry& form : forms) {
        if (form.name == name)
            return &form;
    }
    return nullptr;
}

} // namespace kalvrooms::Gui
