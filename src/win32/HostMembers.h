#pragma once
// The one table between the program's host operations and the host's automation library: classes
// and member names. The library's real names are not known to us; fitting the adapter to it means
// editing this file (see docs/host-automation.md for the shapes).

namespace kalvrooms::HostMembers {

// Classes that can be created from outside.
inline constexpr const wchar_t* ApplicationClass = L"KALVCOMSERVERLib.KalvApplication";
inline constexpr const wchar_t* RoomFilterClass = L"KALVCOMSERVERLib.KalvRoomFilter";
inline constexpr const wchar_t* AttributeCatalogueClass =
    L"KALVCOMSERVERLib.KalvAttributeCatalogue";

// Called right after an application object was created, so that a host that forbids access can
// say why. Our own invention: a host that does not know it refuses the creation itself.
inline constexpr const wchar_t* CheckAccess = L"CheckAccess";

inline constexpr const wchar_t* UpdateProjectInfo = L"UpdateProjectInfo";
inline constexpr const wchar_t* GetProject = L"GetProject";
inline constexpr const wchar_t* GetDrawingService = L"GetDrawingService";

inline constexpr const wchar_t* ProjectNumber = L"ProjectNumber";
inline constexpr const wchar_t* ProjectName = L"ProjectName";
inline constexpr const wchar_t* ProjectFolder = L"ProjectFolder";

inline constexpr const wchar_t* SelectRooms = L"SelectRooms";
inline constexpr const wchar_t* AttributeName = L"AttributeName";

inline constexpr const wchar_t* GetElements = L"GetElements";
inline constexpr const wchar_t* CreateElementList = L"CreateElementList";
inline constexpr const wchar_t* CreateRoomElement = L"CreateRoomElement";
inline constexpr const wchar_t* ChangeElements = L"ChangeElements";
inline constexpr const wchar_t* AddElements = L"AddElements";
inline constexpr const wchar_t* PlaceElements = L"PlaceElements";
inline constexpr const wchar_t* ApplyChanges = L"ApplyChanges";

inline constexpr const wchar_t* Count = L"Count";
inline constexpr const wchar_t* Item = L"Item";
inline constexpr const wchar_t* Add = L"Add";

inline constexpr const wchar_t* ComponentID = L"ComponentID";
inline constexpr const wchar_t* FileNumber = L"FileNumber";
inline constexpr const wchar_t* FileID = L"FileID";
inline constexpr const wchar_t* RoomName = L"RoomName";
inline constexpr const wchar_t* RoomFunction = L"RoomFunction";
inline constexpr const wchar_t* StoreyCode = L"StoreyCode";
inline constexpr const wchar_t* Outline = L"Outline";
inline constexpr const wchar_t* Colour = L"Colour";
inline constexpr const wchar_t* Attributes = L"Attributes";

inline constexpr const wchar_t* Name = L"Name";
inline constexpr const wchar_t* NumberValue = L"NumberValue";
inline constexpr const wchar_t* TextValue = L"TextValue";

} // namespace kalvrooms::HostMembers

namespace kalvrooms {

// Members that bring many values in one call, our own invention: where the host does not know them
// (or null stands here) the values are asked for one by one.
struct HostBulkMembers {
    const wchar_t* IdentityTable = L"IdentityTable";
    const wchar_t* RoomRecord = L"RoomRecord";
    const wchar_t* AttributeTable = L"AttributeTable";
};

} // namespace kalvrooms
