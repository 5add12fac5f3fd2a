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

// The window that the drawing is read and written from.
class ExportWindow {
  public:
    virtual ~ExportWindow() = default;
    virtual Placement GetPlace() const = 0;
    // Accepts input of the user or not.
    virtual void EnableInput(bool enabled) = 0;
    // How far reading or writing is; without words it has ended.
    virtual void ShowProgress(const std::wstring& words) = 0;
};

class clsKalvero {
  public:
    // What the drawing takes in one go.
    static constexpr std::int32_t MostRooms = 150;
    static constexpr const wchar_t* ProjectWithoutName = L"RaumProgramm";

    // Connects to the host; a connection that fails is tried again when it is needed.
    clsKalvero(HostServer& host, const FileServices& files, ExportWindow& window);

    // The project's name, "RaumProgramm" when the host gives none. Host errors are ignored.
    std::wstring GetProjectName();
    // The project's folder as of the last GetProjectName; empty before.
    std::wstring GetProjectPath() const;

    // Adds the rooms of the drawing to the list and stores their outlines as point files in the
    // project folder. A failing call costs what it was to bring; messages at the end tell what is
    // missing. Escape ends the reading between two rooms.
    void ImportFloorsFromKalvero(clsFloors& floors);

    // Writes the list into the drawing. Distances in metres; blnRoomsAsBlock: as a block of two
    // rows, else singly. The counts are those of new rooms at their known position, of rooms
    // updated, and of rooms placed. Escape ends the writing between two rooms, and so does giving
    // up at the cross-hair; what was written until then stays and counts. Other errors of the host
    // go to the caller after the main window accepts input again. The list is not changed.
    void ExportFloorsToKalvero(const clsFloors& qtoFloors, bool blnWithModify, bool blnRoomsAsBlock,
                               double dblDxOfRooms, double dblDyOfRooms,
                               std::int32_t& lngNoWithKoNew, std::int32_t& lngNoWithKoOld,
                               std::int32_t& lngNoWithoutKo);

    // Writes the room's texts (cut at 32 characters, with one warning per kind and run) and
    // attributes into an element that is being created or changed. Texts that the element is known
    // to give already are not sent; a room that could not be read whole takes nothing away from it.
    void AddRoomToModificationList(const clsRoom& room, HostRoomElement& element,
                                   HostAttributeList* attributes,
                                   const HostRoomRecord* given = nullptr);

  private:
    class Busy;
    class Elements;
    struct AttributeNames;
    struct KnownRooms;
    class Progress;
    struct Reading;
    struct Writing;
    class TwoRows;
    // Rooms that the first pass leaves to the second, and the sum of their sides along X, which is
    // rounded with every room.
    struct LeftRooms {
        std::int32_t count = 0;
        std::int32_t sumOfSides = 0;
    };

    void connect();
    // A call on the application; one that fails shows the connection to be broken.
    template <typename Call>
    auto ask(Call call);
    std::unique_ptr<HostDrawingService> getDrawingService();
    std::unique_ptr<HostProject> getProject();
    bool hostForbidsAccess();
    void showHostMessage(std::int32_t textNumber);
    void tell(std::int32_t textNumber, const std::vector<std::wstring>& parts = {});

    std::unique_ptr<HostElementList> selectRooms(Reading& reading);
    void readRooms(HostElementList* elements, Reading& reading, clsFloors& floors);
    void readRoom(HostRoomElement& element, const HostRoomRecord& record,
                  const AttributeNames& names, Reading& reading, clsFloors& floors);
    // False when the host failed to tell what a room has.
    static bool ReadRoomAttributes(HostRoomElement& element, clsRoom& room,
                                   const AttributeNames& names, Reading& reading);
    bool readOutline(HostRoomElement& element, const std::wstring& path, Reading& reading);
    void writePoints(const std::wstring& path, const Outline& outline);
    void tellOf(const Reading& reading);

    void writeRoomsWithCoordinates(Writing& writing, bool withModify, LeftRooms& left,
                                   std::int32_t& newRooms, std::int32_t& updatedRooms);
    // False for a room that has to be laid out like one without coordinates.
    bool writeKnownRoom(const clsRoom& room, KnownRooms& known);
    // Without points where the room's file gives none.
    Outline outlineOf(const clsRoom& room) const;
    // Singly without rows. The number of rooms that were placed.
    std::int32_t writeRoomsWithoutCoordinates(Writing& writing, TwoRows* rows);
    std::unique_ptr<HostRoomElement> createRectangle(HostDrawingService& service,
                                                     const clsRoom& room, Point corner, double a,
                                                     double b, std::int32_t colour);
    // False when they were not placed: the writing is over then.
    bool place(Writing& writing, HostElementList& elements);
    void tellOf(const Writing& writing, std::int32_t written);
    void fillElement(const clsRoom& room, HostRoomElement& element, std::int32_t colour,
                     const HostRoomRecord* given = nullptr);
    bool wasReadInPart(const clsRoom& room) const;
    // It stands in the drawing already, and nobody knows where.
    bool isUnidentified(const clsRoom& room) const;
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
    // A call on the application has failed.
    bool broken_ = false;
    std::wstring projectPath_;
    // Identities of the rooms that could not be read whole in this run.
    std::set<std::wstring> readInPart_;
    // Paths of the point files of rooms whose identity could not be read.
    std::set<std::wstring> unidentified_;
    // Where point files would lie that were not written; what lies there is no outline of ours.
    std::set<std::wstring> withoutOutline_;
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
