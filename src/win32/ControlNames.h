#pragma once
// The controls of every form in tab order: name, kind, number in the dialog template, and the tab
// page that it stands on (-1: on the form itself).

#include "win32/ControlIds.h"

#include <span>
#include <string_view>

// clang-format off
#define QUARTINO_MAIN_CONTROLS(X)                                                                  \
    X(Label1,                Label,    ID_MAIN_LABEL1,                 -1)                         \
    X(grdRooms,              Grid,     ID_MAIN_GRDROOMS,               -1)

#define QUARTINO_ROOM_CONTROLS(X)                                                                  \
    X(frmAttrib,             Frame,    ID_ROOM_FRMATTRIB,              -1)                         \
    X(lblGeschoss,           Label,    ID_ROOM_LBLGESCHOSS,            -1)                         \
    X(txtStoryCode,          Field,    ID_ROOM_TXTSTORYCODE,           -1)                         \
    X(lblBez,                Label,    ID_ROOM_LBLBEZ,                 -1)                         \
    X(txtName,               Field,    ID_ROOM_TXTNAME,                -1)                         \
    X(lblFkt,                Label,    ID_ROOM_LBLFKT,                 -1)                         \
    X(txtFunction,           Field,    ID_ROOM_TXTFUNCTION,            -1)                         \
    X(lblFlaeche,            Label,    ID_ROOM_LBLFLAECHE,             -1)                         \
    X(txtArea,               Field,    ID_ROOM_TXTAREA,                -1)                         \
    X(lblGFlaeche,           Label,    ID_ROOM_LBLGFLAECHE,            -1)                         \
    X(cmdGeometry,           Button,   ID_ROOM_CMDGEOMETRY,            -1)                         \
    X(lblUm,                 Label,    ID_ROOM_LBLUM,                  -1)                         \
    X(cboEnclosureType,      DropDown, ID_ROOM_CBOENCLOSURETYPE,       -1)                         \
    X(lblNutz,               Label,    ID_ROOM_LBLNUTZ,                -1)                         \
    X(cboOccupancy,          DropDown, ID_ROOM_CBOOCCUPANCY,           -1)                         \
    X(lblFlArt,              Label,    ID_ROOM_LBLFLART,               -1)                         \
    X(cboAreaType,           DropDown, ID_ROOM_CBOAREATYPE,            -1)                         \
    X(lblAnz,                Label,    ID_ROOM_LBLANZ,                 -1)                         \
    X(txtQuantity,           Field,    ID_ROOM_TXTQUANTITY,            -1)                         \
    X(cmdOk,                 Button,   ID_ROOM_CMDOK,                  -1)                         \
    X(cmdCancel,             Button,   ID_ROOM_CMDCANCEL,              -1)

#define QUARTINO_GEOMETRY_CONTROLS(X)                                                              \
    X(fraGeo,                Frame,    ID_GEOMETRY_FRAGEO,             -1)                         \
    X(optXDirection,         Option,   ID_GEOMETRY_OPTXDIRECTION,      -1)                         \
    X(lblDx,                 Label,    ID_GEOMETRY_LBLDX,              -1)                         \
    X(txtDx,                 Field,    ID_GEOMETRY_TXTDX,              -1)                         \
    X(optYDirection,         Option,   ID_GEOMETRY_OPTYDIRECTION,      -1)                         \
    X(lblDy,                 Label,    ID_GEOMETRY_LBLDY,              -1)                         \
    X(txtDy,                 Field,    ID_GEOMETRY_TXTDY,              -1)                         \
    X(optRatio,              Option,   ID_GEOMETRY_OPTRATIO,           -1)                         \
    X(lblRatio,              Label,    ID_GEOMETRY_LBLRATIO,           -1)                         \
    X(txtRatio,              Field,    ID_GEOMETRY_TXTRATIO,           -1)                         \
    X(optExcelFile,          Option,   ID_GEOMETRY_OPTEXCELFILE,       -1)                         \
    X(cmdExcelFile,          Button,   ID_GEOMETRY_CMDEXCELFILE,       -1)                         \
    X(cmdOk,                 Button,   ID_GEOMETRY_CMDOK,              -1)                         \
    X(cmdCancel,             Button,   ID_GEOMETRY_CMDCANCEL,          -1)

#define QUARTINO_PLACE_CONTROLS(X)                                                                 \
    X(SSTab1,                Tabs,     ID_PLACE_SSTAB1,                -1)                         \
    X(fraAnordnung,          Frame,    ID_PLACE_FRAANORDNUNG,           0)                         \
    X(optSingle,             Option,   ID_PLACE_OPTSINGLE,              0)                         \
    X(optBlock,              Option,   ID_PLACE_OPTBLOCK,               0)                         \
    X(lblDisX,               Label,    ID_PLACE_LBLDISX,                0)                         \
    X(txtDx,                 Field,    ID_PLACE_TXTDX,                  0)                         \
    X(lblDisY,               Label,    ID_PLACE_LBLDISY,                0)                         \
    X(txtDy,                 Field,    ID_PLACE_TXTDY,                  0)                         \
    X(fraColor,              Frame,    ID_PLACE_FRACOLOR,               1)                         \
    X(lblcolold,             Label,    ID_PLACE_LBLCOLOLD,              1)                         \
    X(cmdWithCoordinates,    Button,   ID_PLACE_CMDWITHCOORDINATES,     1)                         \
    X(lblcolnew,             Label,    ID_PLACE_LBLCOLNEW,              1)                         \
    X(cmdWithoutCoordinates, Button,   ID_PLACE_CMDWITHOUTCOORDINATES,  1)                         \
    X(chkUpdate,             Check,    ID_PLACE_CHKUPDATE,              1)                         \
    X(cmdOk,                 Button,   ID_PLACE_CMDOK,                 -1)                         \
    X(cmdCancel,             Button,   ID_PLACE_CMDCANCEL,             -1)

#define QUARTINO_REPORT_CONTROLS(X)                                                                \
    X(lblTop,                Label,    ID_REPORT_LBLTOP,               -1)                         \
    X(lblNum1,               Label,    ID_REPORT_LBLNUM1,              -1)                         \
    X(lblText1,              Label,    ID_REPORT_LBLTEXT1,             -1)                         \
    X(lblNum2,               Label,    ID_REPORT_LBLNUM2,              -1)                         \
    X(lblText2,              Label,    ID_REPORT_LBLTEXT2,             -1)                         \
    X(lblNum3,               Label,    ID_REPORT_LBLNUM3,              -1)                         \
    X(lblText3,              Label,    ID_REPORT_LBLTEXT3,             -1)                         \
    X(chkNoReport,           Check,    ID_REPORT_CHKNOREPORT,          -1)                         \
    X(lblOption,             Label,    ID_REPORT_LBLOPTION,            -1)                         \
    X(cmdOk,                 Button,   ID_REPORT_CMDOK,                -1)
// clang-format on

namespace kalvrooms::Gui {

enum class ControlKind { Label, Frame, Button, Option, Check, Field, DropDown, Tabs, Grid };

struct ControlEntry {
    std::wstring_view name;
    ControlKind kind;
    int id;
    int page;
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
