#include "win32/ControlNames.h"

#include "win32/ControlIds.h"

namespace kalvrooms::Gui {
namespace {

using enum ControlKind;

constexpr ControlEntry mainControls[] = {
    {L"Label1", Label, ID_MAIN_LABEL1},
    {L"grdRooms", Grid, ID_MAIN_GRDROOMS},
};

constexpr ControlEntry roomControls[] = {
    {L"frmAttrib", Frame, ID_ROOM_FRMATTRIB},
    {L"lblGeschoss", Label, ID_ROOM_LBLGESCHOSS},
    {L"txtStoryCode", Field, ID_ROOM_TXTSTORYCODE},
    {L"lblBez", Label, ID_ROOM_LBLBEZ},
    {L"txtName", Field, ID_ROOM_TXTNAME},
    {L"lblFkt", Label, ID_ROOM_LBLFKT},
    {L"txtFunction", Field, ID_ROOM_TXTFUNCTION},
    {L"lblFlaeche", Label, ID_ROOM_LBLFLAECHE},
    {L"txtArea", Field, ID_ROOM_TXTAREA},
    {L"lblGFlaeche", Label, ID_ROOM_LBLGFLAECHE},
    {L"cmdGeometry", Button, ID_ROOM_CMDGEOMETRY},
    {L"lblUm", Label, ID_ROOM_LBLUM},
    {L"cboEnclosureType", DropDown, ID_ROOM_CBOENCLOSURETYPE},
    {L"lblNutz", Label, ID_ROOM_LBLNUTZ},
    {L"cboOccupancy", DropDown, ID_ROOM_CBOOCCUPANCY},
    {L"lblFlArt", Label, ID_ROOM_LBLFLART},
    {L"cboAreaType", DropDown, ID_ROOM_CBOAREATYPE},
    {L"lblAnz", Label, ID_ROOM_LBLANZ},
    {L"txtQuantity", Field, ID_ROOM_TXTQUANTITY},
    {L"cmdOk", Button, ID_ROOM_CMDOK},
    {L"cmdCancel", Button, ID_ROOM_CMDCANCEL},
};

constexpr ControlEntry geometryControls[] = {
    {L"fraGeo", Frame, ID_GEOMETRY_FRAGEO},
    {L"optXDirection", Option, ID_GEOMETRY_OPTXDIRECTION},
    {L"lblDx", Label, ID_GEOMETRY_LBLDX},
    {L"txtDx", Field, ID_GEOMETRY_TXTDX},
    {L"optYDirection", Option, ID_GEOMETRY_OPTYDIRECTION},
    {L"lblDy", Label, ID_GEOMETRY_LBLDY},
    {L"txtDy", Field, ID_GEOMETRY_TXTDY},
    {L"optRatio", Option, ID_GEOMETRY_OPTRATIO},
    {L"lblRatio", Label, ID_GEOMETRY_LBLRATIO},
    {L"txtRatio", Field, ID_GEOMETRY_TXTRATIO},
    {L"optExcelFile", Option, ID_GEOMETRY_OPTEXCELFILE},
    {L"cmdExcelFile", Button, ID_GEOMETRY_CMDEXCELFILE},
    {L"cmdOk", Button, ID_GEOMETRY_CMDOK},
    {L"cmdCancel", Button, ID_GEOMETRY_CMDCANCEL},
};

constexpr ControlEntry placeControls[] = {
    {L"SSTab1", Tabs, ID_PLACE_SSTAB1},
    {L"fraAnordnung", Frame, ID_PLACE_FRAANORDNUNG},
    {L"optSingle", Option, ID_PLACE_OPTSINGLE},
    {L"optBlock", Option, ID_PLACE_OPTBLOCK},
    {L"lblDisX", Label, ID_PLACE_LBLDISX},
    {L"txtDx", Field, ID_PLACE_TXTDX},
    {L"lblDisY", Label, ID_PLACE_LBLDISY},
    {L"txtDy", Field, ID_PLACE_TXTDY},
    {L"fraColor", Frame, ID_PLACE_FRACOLOR},
    {L"lblcolold", Label, ID_PLACE_LBLCOLOLD},
    {L"cmdWithCoordinates", Button, ID_PLACE_CMDWITHCOORDINATES},
    {L"lblcolnew", Label, ID_PLACE_LBLCOLNEW},
    {L"cmdWithoutCoordinates", Button, ID_PLACE_CMDWITHOUTCOORDINATES},
    {L"chkUpdate", Check, ID_PLACE_CHKUPDATE},
    {L"cmdOk", Button, ID_PLACE_CMDOK},
    {L"cmdCancel", Button, ID_PLACE_CMDCANCEL},
};

constexpr ControlEntry reportControls[] = {
    {L"lblTop", Label, ID_REPORT_LBLTOP},       {L"lblNum1", Label, ID_REPORT_LBLNUM1},
    {L"lblText1", Label, ID_REPORT_LBLTEXT1},   {L"lblNum2", Label, ID_REPORT_LBLNUM2},
    {L"lblText2", Label, ID_REPORT_LBLTEXT2},   {L"lblNum3", Label, ID_REPORT_LBLNUM3},
    {L"lblText3", Label, ID_REPORT_LBLTEXT3},   {L"chkNoReport", Check, ID_REPORT_CHKNOREPORT},
    {L"lblOption", Label, ID_REPORT_LBLOPTION}, {L"cmdOk", Button, ID_REPORT_CMDOK},
};

constexpr int placePages[] = {IDD_PLACE_PAGE1, IDD_PLACE_PAGE2};

constexpr FormEntry forms[] = {
    {L"frmMain", 0, {}, mainControls},
    {L"frmRoom", IDD_ROOM, {}, roomControls},
    {L"frmGeometry", IDD_GEOMETRY, {}, geometryControls},
    {L"frmPlace", IDD_PLACE, placePages, placeControls},
    {L"frmReport", IDD_REPORT, {}, reportControls},
};

} // namespace

const FormEntry* FindForm(std::wstring_view name) {
    for (const FormEntry& form : forms)
        if (form.name == name)
            return &form;
    return nullptr;
}

} // namespace kalvrooms::Gui
