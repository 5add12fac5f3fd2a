#include "model/clsRoom.h"

#include "model/SharedWord.h"

#include <tuple>

namespace kalvrooms {

namespace {

// Numbers of more digits are left alone when a series is counted on.
constexpr std::size_t mostTrailingCharacters = 10;

// Length of the number at the end of the name. It ends at the first length that is no number,
// and any length beyond the limit says the same: too long.
std::size_t trailingNumberLength(std::wstring_view name, const NumberLocale& locale) {
    std::size_t length = 0;
    while (length < name.size() && length <= mostTrailingCharacters &&
           IsNumeric(name.substr(name.size() - length - 1), locale))
        ++length;
    return length;
}

void share(const std::wstring*& shared, std::wstring_view word) {
    if (*shared != word)
        shared = SharedWord(word);
}

} // namespace

clsRoom::clsRoom()
    : Geometry(std::make_shared<clsGeometry>()), storyCode_(SharedWord(L"EG")),
      enclosure_(SharedWord({})), occupancy_(enclosure_), areaType_(enclosure_),
      fileID_(enclosure_) {
    Geometry->SetTypeAndValue(CalculationByRatio, L" 1");
    Geometry->Area(16.0);
}

std::shared_ptr<clsRoom> clsRoom::Copy() const {
    auto copy = std::make_shared<clsRoom>(*this);
    copy->Geometry = std::make_shared<clsGeometry>(*Geometry);
    return copy;
}

bool clsRoom::SaysTheSameAs(const clsRoom& other) const {
    const auto contents = [](const clsRoom& room) {
        return std::tie(room.name_, room.functionName_, room.storyCode_, room.enclosure_,
                        room.occupancy_, room.areaType_, room.fileID_, room.fileNumber_,
                        room.componentID_, room.projectNumber_, room.id_,
                        room.Geometry->CalculationType(), room.Geometry->CalculationValue());
    };
    return contents(*this) == contents(other) && Geometry->Area() == other.Geometry->Area();
}

void clsRoom::SetRoomID(std::wstring_view key, const NumberLocale& locale) {
    const std::size_t hyphen = key.find(L'-');
    if (key.size() < 3 || hyphen == std::wstring_view::npos) {
        componentID_ = -1;
        share(fileID_, {});
        return;
    }
    componentID_ = ToLong(TrimmedView(key.substr(0, hyphen)), locale);
    share(fileID_, key.substr(hyphen + 1));
}

std::wstring clsRoom::GetRoomID() const {
    if (componentID_ < 0 || TrimmedView(*fileID_).empty())
        return {};
    return FromLong(componentID_) + L"-" + *fileID_;
}

const std::wstring& clsRoom::Name() const {
    return name_;
}

void clsRoom::Name(std::wstring_view text) {
    name_ = TrimmedView(text);
}

void clsRoom::IncrementRoomNumber() {
    if (name_.empty()) {
        name_ = FromLong(AddLong(id_, 1));
        return;
    }
    const NumberLocale locale = UserLocale();
    if (IsNumeric(name_, locale)) {
        if (name_.size() < 10)
            name_ = FromLong(AddLong(ToLong(name_, locale), 1));
        return;
    }
    const std::size_t length = trailingNumberLength(name_, locale);
    if (length > mostTrailingCharacters)
        return;
    const std::size_t kept = name_.size() - length;
    const std::wstring_view number = std::wstring_view(name_).substr(kept);
    const std::int32_t next = length > 0 ? AddLong(ToLong(number, locale), 1) : AddLong(id_, 1);
    name_ = name_.substr(0, kept) + FromLong(next);
}

const std::wstring& clsRoom::FunctionName() const {
    return functionName_;
}

void clsRoom::FunctionName(std::wstring_view text) {
    functionName_ = TrimmedView(text);
}

const std::wstring& clsRoom::StoryCode() const {
    return *storyCode_;
}

void clsRoom::StoryCode(std::wstring_view text) {
    share(storyCode_, TrimmedView(text));
}

const std::wstring& clsRoom::Enclosure() const {
    return *enclosure_;
}

void clsRoom::Enclosure(std::wstring_view text) {
    share(enclosure_, TrimmedView(text));
}

const std::wstring& clsRoom::Occupancy() const {
    return *occupancy_;
}

void clsRoom::Occupancy(std::wstring_view text) {
    share(occupancy_, TrimmedView(text));
}

const std::wstring& clsRoom::AreaType() const {
    return *areaType_;
}

void clsRoom::AreaType(std::wstring_view text) {
    share(areaType_, TrimmedView(text));
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

const std::wstring& clsRoom::FileID() const {
    return *fileID_;
}

void clsRoom::FileID(std::wstring_view text) {
    share(fileID_, TrimmedView(text));
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
