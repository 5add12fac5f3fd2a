#pragma once
// What the program asks of the host CAD application. The bridge is written against these
// interfaces; an adapter puts the host's automation server behind them.
//
// Every operation may raise a RuntimeError with the number and description that the host gave.
// Indices are 1-based, as the host counts. Coordinates and lengths are in the drawing's units
// (metres), areas in square metres, colours RGB with red in the low byte.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kalvrooms {

struct Point {
    double x = 0.0;
    double y = 0.0;
    bool operator==(const Point&) const = default;
};
using Outline = std::vector<Point>;

// What ties a room record to its element in the drawing.
struct HostIdentity {
    std::int32_t ComponentID = 0;
    std::int32_t FileNumber = 0;
    std::wstring FileID;
    bool operator==(const HostIdentity&) const = default;
};

// Identity and texts of a room element.
struct HostRoomRecord {
    HostIdentity Identity;
    std::wstring RoomName;
    std::wstring RoomFunction;
    std::wstring StoreyCode;
    // False when the host failed to tell some of it, which is then 0 or empty.
    bool Whole = true;
};

// After so many items in a row that cannot be taken, the count of a list is not believed.
inline constexpr std::int32_t MostFailuresInARow = 20;

// Characters of a text of an element that the host takes.
inline constexpr std::size_t LongestHostText = 32;

// One attribute of an element; the number is 0 where the value is none. Without a value: the host
// failed to tell it.
struct HostAttributeValue {
    std::optional<std::wstring> Name;
    std::optional<double> Number;
    std::optional<std::wstring> Text;
};

class HostAttribute {
  public:
    virtual ~HostAttribute() = default;
    virtual void TextValue(const std::wstring& value) = 0;
};

class HostAttributeList {
  public:
    virtual ~HostAttributeList() = default;
    virtual std::unique_ptr<HostAttribute> Item(std::int32_t index) = 0;
    // All attributes in list order; one call where the host offers it.
    virtual std::vector<HostAttributeValue> Values() = 0;
};

class HostRoomElement {
  public:
    virtual ~HostRoomElement() = default;
    // One call where the host offers it. Raises an error when the host does not tell in which file
    // the element lies.
    virtual HostRoomRecord Record() = 0;
    virtual void RoomName(const std::wstring& text) = 0;
    virtual void RoomFunction(const std::wstring& text) = 0;
    virtual void StoreyCode(const std::wstring& text) = 0;
    // The ground plan as the host delivers it: the last point repeats the first.
    virtual kalvrooms::Outline Outline() = 0;
    // Takes the ground plan with or without the repeated last point.
    virtual void Outline(const kalvrooms::Outline& points) = 0;
    virtual void Colour(std::int32_t rgb) = 0;
    virtual std::unique_ptr<HostAttributeList> Attributes() = 0;
};

class HostElementList {
  public:
    virtual ~HostElementList() = default;
    virtual std::int32_t Count() = 0;
    virtual std::unique_ptr<HostRoomElement> Item(std::int32_t index) = 0;
    virtual void Add(HostRoomElement& element) = 0;
    // The identities of all elements in list order, none where the host failed to tell it; one call
    // where the host offers it.
    virtual std::vector<std::optional<HostIdentity>> Identities() = 0;
};

class HostRoomSelection {
  public:
    virtual ~HostRoomSelection() = default;
    virtual void SelectRooms() = 0;
};

// How new elements reach the drawing: placed by the user at the cross-hair.
inline constexpr std::int32_t PlaceAtCrossHair = 10;

class HostDrawingService {
  public:
    virtual ~HostDrawingService() = default;
    virtual std::unique_ptr<HostElementList> GetElements(HostRoomSelection& selection) = 0;
    virtual std::unique_ptr<HostElementList> CreateElementList() = 0;
    // A new room element that is not in the drawing yet; identity -1 until it is applied.
    virtual std::unique_ptr<HostRoomElement> CreateRoomElement() = 0;
    virtual void ChangeElements(HostElementList& elements) = 0;
    virtual void AddElements(HostElementList& elements) = 0;
    // Returns when the user has placed the elements. Raises DialogCancelled when the user gives up.
    virtual void PlaceElements(HostElementList& elements, std::int32_t mode) = 0;
    // Nothing that was changed, added or placed reaches the drawing before this.
    virtual void ApplyChanges() = 0;
};

class HostProject {
  public:
    virtual ~HostProject() = default;
    virtual std::int32_t ProjectNumber() = 0;
    virtual std::wstring ProjectName() = 0;
    // Without a separator at the end.
    virtual std::wstring ProjectFolder() = 0;
};

class HostApplication {
  public:
    virtual ~HostApplication() = default;
    virtual void UpdateProjectInfo() = 0;
    virtual std::unique_ptr<HostProject> GetProject() = 0;
    virtual std::unique_ptr<HostDrawingService> GetDrawingService() = 0;
};

class HostAttributeCatalogue {
  public:
    virtual ~HostAttributeCatalogue() = default;
    virtual std::wstring AttributeName(std::int32_t number) = 0;
};

// The host's automation server: the objects that can be created from outside.
class HostServer {
  public:
    virtual ~HostServer() = default;
    // Fails with the host's description while the host is in a state that forbids access.
    virtual std::unique_ptr<HostApplication> CreateHostApplication() = 0;
    virtual std::unique_ptr<HostRoomSelection> CreateRoomFilter() = 0;
    virtual std::unique_ptr<HostAttributeCatalogue> CreateAttributeCatalogue() = 0;
    // A call has been under way for so long that nobody has to wait for it any more.
    virtual bool Hangs() const { return false; }
};

} // namespace kalvrooms
