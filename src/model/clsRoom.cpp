#include "model/clsRoom.h"

#include "model/NumberText.h"

namespace kalvrooms {

namespace {

// Numbers of more digits are left alone when a series is counted on.
constexpr std::size_t mostTrailingCharacters = 10;

// Length of the number at the end of the name. It ends at the first length that is no number,
// and any length beyond the limit says the same: too long.
std::size_t trailingNumberLength(const std::wstring& name) {
    const NumberLocale locale = UserLocale();
    std::size_t length = 0;
    while (length < name.size() && length <= mostTrailingCharacters &&
           IsNumeric(name.substr(name.size() - length - 1), locale)) {
        ++length;
    }
    return length;
}

} // namespace

clsRoom::clsRoom() : Geometry(std::make_shared<clsGeometry>()) {
    Geometry->SetTypeAndValue(CalculationByRatio, L" 1");
    Geometry->Area(16.0);
    texts_.Set(NameText, L"1");
    texts_.Set(StoryCodeText, L"EG");
}

void clsRoom::SetRoomID(const std::wstring& key) {
    const std::size_t hyphen = key.find(L'-');
    if (key.size() < 3 || hyphen == std::wstring::npos) {
        componentID_ = -1;
        texts_.Set(FileIDText, {});
        return;
    }
    componentID_ = ToLong(Trim(key.substr(0, hyphen)));
    texts_.Set(FileIDText, std::wstring_view(key).substr(hyphen + 1));
}

std::wstring clsRoom::GetRoomID() const {
    const std::wstring fileID = FileID();
    if (componentID_ < 0 || Trim(fileID).empty()) {
        return {};
    }
    return FromLong(componentID_) + L"-" + fileID;
}

std::wstring clsRoom::Name() const {
    return text(NameText);
}

void clsRoom::Name(const std::wstring& text) {
    texts_.Set(NameText, Trim(text));
}

void clsRoom::IncrementRoomNumber() {
    const std::wstring name = Name();
    if (name.empty()) {
        texts_.Set(NameText, FromLong(AddLong(id_, 1)));
        return;
    }
    if (IsNumeric(name)) {
        if (name.size() < 10) {
            texts_.Set(NameText, FromLong(AddLong(ToLong(name), 1)));
        }
        return;
    }
    const std::size_t length = trailingNumberLength(name);
    if (length > mostTrailingCharacters) {
        return;
    }
    const std::size_t kept = name.size() - length;
    const std::int32_t next = length > 0 ? AddLong(ToLong(name.substr(kept)), 1) : AddLong(id_, 1);
    texts_.Set(NameText, name.substr(0, kept) + FromLong(next));
}

std::wstring clsRoom::FunctionName() const {
    return text(FunctionNameText);
}

void clsRoom::FunctionName(const std::wstring& text) {
    texts_.Set(FunctionNameText, Trim(text));
}

std::wstring clsRoom::StoryCode() const {
    return text(StoryCodeText);
}

void clsRoom::StoryCode(const std::wstring& text) {
    texts_.Set(StoryCodeText, Trim(text));
}

std::wstring clsRoom::Enclosure() const {
    return text(EnclosureText);
}

void clsRoom::Enclosure(const std::wstring& text) {
    texts_.Set(EnclosureText, Trim(text));
}

std::wstring clsRoom::Occupancy() const {
    return text(OccupancyText);
}

void clsRoom::Occupancy(const std::wstring& text) {
    texts_.Set(OccupancyText, Trim(text));
}

std::wstring clsRoom::AreaType() const {
    return text(AreaTypeText);
}

void clsRoom::AreaType(const std::wstring& text) {
    texts_.Set(AreaTypeText, Trim(text));
}

bool clsRoom::IsNew() const {
    return isNew_;
}

void clsRoom::IsNew(bool value) {
    isNew_ = value;
}

std::int32_t clsRoom::ID() const {
    return id_;
}

void clsRoom::ID(std::int32_t value) {
    id_ = value;
}

std::int32_t clsRoom::ComponentID() const {
    return componentID_;
}

void clsRoom::ComponentID(std::int32_t value) {
    componentID_ = value;
}

std::wstring clsRoom::FileID() const {
    return text(FileIDText);
}

void clsRoom::FileID(const std::wstring& text) {
    texts_.Set(FileIDText, Trim(text));
}

std::int32_t clsRoom::FileNumber() const {
    return fileNumber_;
}

void clsRoom::FileNumber(std::int32_t value) {
    fileNumber_ = value;
}

std::int32_t clsRoom::ProjectNumber() const {
    return projectNumber_;
}

void clsRoom::ProjectNumber(std::int32_t value) {
    projectNumber_ = value;
}

} // namespace kalvrooms
