#pragma once
// One wanted room of the programme, or one room that was read from the drawing. A room that is
// wanted n times is n records.

#include <cstdint>
#include <memory>
#include <string>

#include "model/FieldTexts.h"
#include "model/clsGeometry.h"

namespace kalvrooms {

class clsRoom {
  public:
    clsRoom();

    // Ground plan and target area; a new room has ratio " 1" and 16 square metres.
    std::shared_ptr<clsGeometry> Geometry;

    // "12-K3" gives ComponentID 12 and FileID "K3"; a text under three characters or without
    // hyphen clears both. Errors: TypeMismatch, Overflow when the left part is no 32-bit number.
    void SetRoomID(const std::wstring& key);
    // "12-K3", or empty while the room is not known in the drawing.
    std::wstring GetRoomID() const;

    // Text setters remove blanks at both ends.
    std::wstring Name() const;
    void Name(const std::wstring& text);

    // Makes Name the designation of the next room of a series. Error: Overflow.
    void IncrementRoomNumber();

    std::wstring FunctionName() const;
    void FunctionName(const std::wstring& text);
    std::wstring StoryCode() const;
    void StoryCode(const std::wstring& text);
    std::wstring Enclosure() const;
    void Enclosure(const std::wstring& text);
    std::wstring Occupancy() const;
    void Occupancy(const std::wstring& text);
    std::wstring AreaType() const;
    void AreaType(const std::wstring& text);

    bool IsNew() const;
    void IsNew(bool value);
    // Key inside the storey, given when the room is added; 0 until then.
    std::int32_t ID() const;
    void ID(std::int32_t value);
    // Identity in the drawing; -1 and empty while there is none.
    std::int32_t ComponentID() const;
    void ComponentID(std::int32_t value);
    std::wstring FileID() const;
    void FileID(const std::wstring& text);
    std::int32_t FileNumber() const;
    void FileNumber(std::int32_t value);
    std::int32_t ProjectNumber() const;
    void ProjectNumber(std::int32_t value);

  private:
    enum Text : std::size_t {
        NameText,
        FunctionNameText,
        StoryCodeText,
        EnclosureText,
        OccupancyText,
        AreaTypeText,
        FileIDText,
        CountOfTexts
    };

    std::wstring text(Text number) const { return std::wstring(texts_.Get(number)); }

    FieldTexts<CountOfTexts> texts_;
    std::int32_t fileNumber_ = -1;
    std::int32_t componentID_ = -1;
    std::int32_t projectNumber_ = -1;
    std::int32_t id_ = 0;
    bool isNew_ = false;
};

} // namespace kalvrooms
