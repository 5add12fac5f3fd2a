#pragma once
// One wanted room of the programme, or one room that was read from the drawing. A room that is
// wanted n times is n records.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "model/NumberText.h"
#include "model/clsGeometry.h"

namespace kalvrooms {

class clsRoom {
  public:
    clsRoom();

    // With a geometry of its own.
    std::shared_ptr<clsRoom> Copy() const;
    bool SaysTheSameAs(const clsRoom& other) const;

    // Ground plan and target area; a new room has ratio " 1" and 16 square metres.
    std::shared_ptr<clsGeometry> Geometry;

    // "12-K3" gives ComponentID 12 and FileID "K3"; a text under three characters or without
    // hyphen clears both. Errors: TypeMismatch, Overflow when the left part is no 32-bit number.
    void SetRoomID(std::wstring_view key, const NumberLocale& locale = UserLocale());
    // "12-K3", or empty while the room is not known in the drawing.
    std::wstring GetRoomID() const;

    // Text setters remove blanks at both ends.
    const std::wstring& Name() const;
    void Name(std::wstring_view text);

    // Makes Name the designation of the next room of a series. Error: Overflow.
    void IncrementRoomNumber();

    const std::wstring& FunctionName() const;
    void FunctionName(std::wstring_view text);
    const std::wstring& StoryCode() const;
    void StoryCode(std::wstring_view text);
    const std::wstring& Enclosure() const;
    void Enclosure(std::wstring_view text);
    const std::wstring& Occupancy() const;
    void Occupancy(std::wstring_view text);
    const std::wstring& AreaType() const;
    void AreaType(std::wstring_view text);

    bool IsNew() const;
    void IsNew(bool value);
    // Key inside the storey, given when the room is added; 0 until then.
    std::int32_t ID() const;
    void ID(std::int32_t value);
    // Identity in the drawing; -1 and empty while there is none.
    std::int32_t ComponentID() const;
    void ComponentID(std::int32_t value);
    const std::wstring& FileID() const;
    void FileID(std::wstring_view text);
    std::int32_t FileNumber() const;
    void FileNumber(std::int32_t value);
    std::int32_t ProjectNumber() const;
    void ProjectNumber(std::int32_t value);

  private:
    std::wstring name_ = L"1";
    std::wstring functionName_;
    // Few words for many rooms.
    const std::wstring* storyCode_;
    const std::wstring* enclosure_;
    const std::wstring* occupancy_;
    const std::wstring* areaType_;
    const std::wstring* fileID_;
    std::int32_t fileNumber_ = -1;
    std::int32_t componentID_ = -1;
    std::int32_t projectNumber_ = -1;
    std::int32_t id_ = 0;
    bool isNew_ = false;
};

} // namespace kalvrooms
