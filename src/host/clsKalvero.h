#pragma once
// The bridge to the host CAD application: the only class that talks to it. Reads the rooms of the
// drawing into a room list and writes a room list into the drawing.

#include <array>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/Options.h"
#include "app/clsWait.h"
#include "files/FileServices.h"
#include "host/HostApplication.h"
#include "model/clsFloors.h"

namespace kalvrooms {

// The window that the drawing is written from.
class ExportWindow {
  public:
    virtual ~ExportWindow() = default;
    virtual Placement GetPlace() const = 0;
    // Accepts input of the user or not.
    virtual void EnableInput(bool enabled) = 0;
};

class clsKalvero {
  public:
    // What the drawing takes in one go.
    static constexpr std::int32_t MostRooms = 150;
    // Characters of a text that the host takes.
    static constexpr std::size_t LongestText = 32;
    static constexpr const wchar_t* ProjectWithoutName = L"RaumProgramm";

    // Connects to the host; a connection that fails is tried again when it is needed.
    clsKalvero(HostServer& host, const FileServices& files, ExportWindow& window);

    // The project's name, "RaumProgramm" when the host gives none. Host errors are ignored.
    std::wstring GetProjectName();
    // The project's folder as of the last GetProjectName; empty before.
    std::wstring GetProjectPath() const;

    // Adds the rooms of the drawing to the list and stores their outlines as point files in the
    // project folder. Host errors are ignored room by room.
    void ImportFloorsFromKalvero(clsFloors& floors);

    // Writes the list into the drawing. Distances in metres; blnRoomsAsBlock: as a block of two
    // rows, else singly. The counts are those of new rooms at their known position, of rooms
    // updated, and of rooms placed. Errors of the host go to the caller after the main window
    // accepts input again; the list is not changed.
    void ExportFloorsToKalvero(const clsFloors& qtoFloors, bool blnWithModify, bool blnRoomsAsBlock,
                               double dblDxOfRooms, double dblDyOfRooms,
                               std::int32_t& lngNoWithKoNew, std::int32_t& lngNoWithKoOld,
                               std::int32_t& lngNoWithoutKo);

    // Writes the room's texts (cut at 32 characters, with one warning per kind and run) and
    // attributes into an element that is being created or changed.
    void AddRoomToModificationList(const clsRoom& room, HostRoomElement& element,
                                   HostAttributeList* attributes);

  private:
    class Elements;
    struct AttributeNames;
    struct KnownRooms;
    class TwoRows;
    // Rooms that the first pass leaves to the second, and the sum of their sides along X, which is
    // rounded with every room.
    struct LeftRooms {
        std::int32_t count = 0;
        std::int32_t sumOfSides = 0;
    };

    void connect();
    std::unique_ptr<HostDrawingService> getDrawingService();
    bool hostForbidsAccess();
    void showHostMessage(std::int32_t textNumber);

    std::unique_ptr<HostElementList> selectRooms(std::int32_t& projectNumber);
    // False when elements were passed over that belong to no file.
    bool readRooms(HostElementList* elements, std::int32_t projectNumber, clsFloors& floors);
    void readRoom(HostRoomElement& element, const HostRoomRecord& record,
                  const AttributeNames& names, clsRoom& room);
    void ReadRoomAttributes(HostRoomElement& element, clsRoom& room, const AttributeNames& names);
    void writePoints(const std::wstring& path, const Outline& outline);
    static void removePoints(const std::wstring& path);

    void writeRoomsWithCoordinates(HostDrawingService& service, const clsFloors& floors,
                                   bool withModify, LeftRooms& left, std::int32_t& newRooms,
                                   std::int32_t& updatedRooms);
    // False for a room that has to be laid out like one without coordinates.
    bool writeKnownRoom(const clsRoom& room, KnownRooms& known);
    // Without points where the room's file gives none.
    Outline outlineOf(const clsRoom& room) const;
    // Singly without rows. The number of rooms that were placed.
    std::int32_t writeRoomsWithoutCoordinates(HostDrawingService& service, const clsFloors& floors,
                                              TwoRows* rows);
    std::unique_ptr<HostRoomElement> createRectangle(HostDrawingService& service,
                                                     const clsRoom& room, Point corner, double a,
                                                     double b, std::int32_t colour);
    void place(HostDrawingService& service, HostElementList& elements, bool othersArePlaced);
    void fillElement(const clsRoom& room, HostRoomElement& element, std::int32_t colour);
    bool isInModificationList(const clsRoom& room) const;
    std::wstring cutForHost(const std::wstring& text, std::int32_t warning, bool& warn);
    // The first pair whose name is the attribute's gives its text; else it is left alone.
    using NamedTexts = std::array<std::pair<std::wstring, std::wstring>, 3>;
    static void SetAttributeIfNamed(HostAttributeList& attributes, std::int32_t index,
                                    const HostAttributeValue& attribute, const NamedTexts& texts);

    HostServer& host_;
    const FileServices files_;
    Gui::Desktop& desktop_;
    const Texts& texts_;
    ExportWindow& window_;
    std::unique_ptr<HostApplication> application_;
    std::wstring projectPath_;
    bool warnOfName_ = true;
    bool warnOfStoryCode_ = true;
    bool warnOfFunction_ = true;
    std::vector<std::wstring> modificationList_;
    // Running indices of the rooms that the first pass has dealt with.
    std::set<std::int32_t> writtenRooms_;
    // The busy indicator of the operation under way.
    clsWait* wait_ = nullptr;
};

} // namespace kalvrooms
