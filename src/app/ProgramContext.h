#pragma once
// The abstract face of the main window: what dialogs, file classes and the host bridge may ask of
// it. Nobody but the entry procedure includes the main window itself.

#include <cstdint>
#include <memory>
#include <string>

#include "model/clsRoom.h"
#include "platform/Platform.h"

namespace kalvrooms {

class ProgramContext {
  public:
    virtual ~ProgramContext() = default;

    // Settings key path below the current user's hive, as the host names it.
    virtual void SetRegKey(const std::wstring& path) = 0;
    // A new text table: the German defaults, overlaid by the language's library if there is one.
    virtual void SetLang(const std::wstring& code) = 0;
    // Texts by number. Error: SubscriptOutOfRange outside 0 to 200.
    virtual std::wstring GetText(std::int32_t number) const = 0;
    virtual std::wstring GetTextWithoutDot(std::int32_t number) const = 0;

    // Colours RGB with red in the low byte; counts of the last writing to the drawing.
    virtual void GetReport(std::int32_t& colorOld, std::int32_t& colorNew, std::int32_t& updated,
                           std::int32_t& newAtPosition, std::int32_t& setDown,
                           bool& noReport) const = 0;
    virtual void SetWithoutReport() = 0;
    virtual void SetWithReport() = 0;
    // Distances in metres; block: true for a block, false for single rooms.
    virtual void GetPlace(double& distanceX, double& distanceY, bool& block, std::int32_t& colorOld,
                          std::int32_t& colorNew, bool& noReport) const = 0;
    virtual void SetPlace(double distanceX, double distanceY, bool block, std::int32_t colorOld,
                          std::int32_t colorNew) = 0;

    virtual void WriteListToFile() = 0;
    virtual void ReadListFromFile() = 0;

    // The room that the room dialog edits in place.
    virtual std::shared_ptr<clsRoom> GetCurrentRoom() const = 0;
    virtual void AddCurrentRoomsToListOfFloors(std::int32_t quantity) = 0;
    // Rebuilds the table; warn shows the room-limit warning where the list is over it.
    virtual void UpdateTable(bool warn) = 0;

    // Accepts input of the user or not (while the drawing is written).
    virtual void EnableInput(bool enabled) = 0;
    // The help file that F1 opens; empty until the host named one.
    virtual std::wstring HelpFile() const = 0;
    virtual void HelpFile(const std::wstring& path) = 0;

    virtual Platform& System() const = 0;
};

} // namespace kalvrooms
