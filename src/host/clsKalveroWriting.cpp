// Writes a list into the drawing.

#include <algorithm>
#include <unordered_map>

#include "app/Messages.h"
#include "app/TextNumbers.h"
#include "files/clsFileSytem.h"
#include "host/BridgeOperation.h"
#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

// Disables the main window while the drawing is written, whatever way the writing ends.
class InputLock {
  public:
    explicit InputLock(ExportWindow& window) : window_(window) { window_.EnableInput(false); }
    ~InputLock() { window_.EnableInput(true); }
    InputLock(const InputLock&) = delete;
    InputLock& operator=(const InputLock&) = delete;

  private:
    ExportWindow& window_;
};

} // namespace

// The room elements of the drawing, read once per writing and only if a room asks for them.
class clsKalvero::Elements {
  public:
    Elements(HostServer& server, HostDrawingService& service)
        : server_(server), service_(service) {}

    // The element with the room's identity, or null. Two rooms with one identity share it.
    std::shared_ptr<HostRoomElement> find(const clsRoom& room) {
        const std::wstring key = IdentityKey(room.ComponentID(), room.FileID());
        if (key.empty())
            return nullptr;
        read();
        const auto found = indexByIdentity_.find(key);
        if (found == indexByIdentity_.end())
            return nullptr;
        std::shared_ptr<HostRoomElement>& element = taken_[found->second];
        if (!element)
            element = list_->Item(found->second);
        return element;
    }
    // For a room that was not found: it may be one of those that did not tell who they are.
    bool mayHold(const clsRoom& room) const {
        return untold_ && !IdentityKey(room.ComponentID(), room.FileID()).empty();
    }

  private:
    void read() {
        if (list_)
            return;
        const auto filter = server_.CreateRoomFilter();
        filter->SelectRooms();
        list_ = service_.GetElements(*filter);
        std::int32_t index = 0;
        for (const auto& identity : list_->Identities()) {
            ++index;
            if (!identity) {
                untold_ = true;
                continue;
            }
            const std::wstring key = IdentityKey(identity->ComponentID, identity->FileID);
            if (!key.empty())
                indexByIdentity_.emplace(key, index);
        }
    }

    HostServer& server_;
    HostDrawingService& service_;
    std::unique_ptr<HostElementList> list_;
    std::unordered_map<std::wstring, std::int32_t> indexByIdentity_;
    std::unordered_map<std::int32_t, std::shared_ptr<HostRoomElement>> taken_;
    bool untold_ = false;
};

// What the first pass collects: rooms that stand in the drawing, and new ones at their position.
struct clsKalvero::KnownRooms {
    KnownRooms(HostServer& server, HostDrawingService& drawingService, bool mayModify,
               std::int32_t rgb)
        : service(drawingService), drawing(server, drawingService),
          changed(drawingService.CreateElementList()), added(drawingService.CreateElementList()),
          withModify(mayModify), colour(rgb) {}

    HostDrawingService& service;
    Elements drawing;
    std::unique_ptr<HostElementList> changed;
    std::unique_ptr<HostElementList> added;
    // No element is handed over twice.
    std::set<const HostRoomElement*> changedElements;
    std::int32_t addedCount = 0;
    // A room that may stand in the drawing was not made again.
    bool leftOut = false;
    const bool withModify;
    const std::int32_t colour;
};

// The corners of rooms in a block of two rows with a free strip between them.
class clsKalvero::TwoRows {
  public:
    TwoRows(double distanceX, double distanceY, double limit)
        : distanceX_(distanceX), distanceY_(distanceY), limit_(limit) {}

    // The lower left corner of the next room, which is a wide and b high.
    Point next(double a, double b) {
        if (firstRow_ && x_ + distanceX_ > limit_) {
            x_ = 0.0;
            firstRow_ = false;
        }
        const Point corner{x_, firstRow_ ? distanceY_ / 2.0 : -distanceY_ / 2.0 - b};
        x_ += a + distanceX_;
        return corner;
    }

  private:
    const double distanceX_;
    const double distanceY_;
    const double limit_;
    double x_ = 0.0;
    bool firstRow_ = true;
};

// One writing of the list, room by room.
struct clsKalvero::Writing {
    const clsFloors& floors;
    Progress progress;
    std::unique_ptr<HostDrawingService> service{};
    // Why the host did not place the rooms, in its own words.
    std::wstring trouble{};
    bool leftOut = false;
};

void clsKalvero::ExportFloorsToKalvero(const clsFloors& qtoFloors, bool blnWithModify,
                                       bool blnRoomsAsBlock, double dblDxOfRooms,
                                       double dblDyOfRooms, std::int32_t& lngNoWithKoNew,
                                       std::int32_t& lngNoWithKoOld, std::int32_t& lngNoWithoutKo) {
    modificationList_.clear();
    writtenRooms_.clear();
    const std::int32_t countOfRooms = qtoFloors.GetCountOfRooms();
    if (countOfRooms == 0) {
        desktop_.ShowMessage(
            {texts_.GetText(TextNumber::NoRooms), texts_.GetText(TextNumber::Title)});
        return;
    }
    if (countOfRooms > MostRooms) {
        desktop_.ShowMessage({texts_.GetText(TextNumber::TooManyRooms),
                              texts_.GetText(TextNumber::Title), Gui::Message::Buttons::Ok,
                              Gui::Message::Icon::Stop});
        return;
    }

    Writing writing{qtoFloors,
                    Progress(window_, files_, TextNumber::WritingProgress, countOfRooms)};
    {
        Busy busy(wait_, desktop_);
        Attempt([&] { writing.service = getDrawingService(); });
        if (hostForbidsAccess())
            return;
        busy->StartWait();
        const InputLock lock(window_);
        // A host that was ended in the meantime is reached by the connection that the check has
        // made.
        if (!writing.service)
            writing.service = getDrawingService();

        LeftRooms left;
        writeRoomsWithCoordinates(writing, blnWithModify, left, lngNoWithKoNew, lngNoWithKoOld);
        writing.service->ApplyChanges();
        if (!writing.progress.ended()) {
            // Half of one row that would hold all rooms: the block comes out as two rows of about
            // equal length.
            const double rowLimit = (left.count - 1) / 2.0 * dblDxOfRooms + left.sumOfSides / 2.0;
            TwoRows rows(dblDxOfRooms, dblDyOfRooms, rowLimit);
            lngNoWithoutKo =
                writeRoomsWithoutCoordinates(writing, blnRoomsAsBlock ? &rows : nullptr);
            writing.service->ApplyChanges();
        }
    }
    tellOf(writing, lngNoWithKoNew + lngNoWithKoOld + lngNoWithoutKo);
}

void clsKalvero::tellOf(const Writing& writing, std::int32_t written) {
    if (!writing.trouble.empty())
        tell(TextNumber::PlacingFailed, {writing.trouble});
    if (writing.progress.ended() || writing.leftOut)
        tell(TextNumber::WritingEnded,
             {FromLong(written), FromLong(writing.floors.GetCountOfRooms())});
}

void clsKalvero::writeRoomsWithCoordinates(Writing& writing, bool withModify, LeftRooms& left,
                                           std::int32_t& newRooms, std::int32_t& updatedRooms) {
    KnownRooms known(host_, *writing.service, withModify, window_.GetPlace().colorOld);
    const std::int32_t countOfRooms = writing.floors.GetCountOfRooms();
    for (std::int32_t index = 1; index <= countOfRooms; ++index) {
        clsRoom room;
        writing.floors.GetRoomByIndex(index, room);
        double side = room.Geometry->dx();
        if (side == 0.0) {
            if (!writing.progress.next(index))
                break;
            if (isUnidentified(room) || writeKnownRoom(room, known)) {
                writtenRooms_.insert(index);
                continue;
            }
            modificationList_.push_back(FromLong(room.ID()));
            double unused = 0.0;
            room.Geometry->Default(true);
            room.Geometry->getDefaultValues(side, unused);
        }
        left.sumOfSides = RoundToLong(left.sumOfSides + side);
        ++left.count;
    }
    updatedRooms = static_cast<std::int32_t>(known.changedElements.size());
    newRooms = known.addedCount;
    writing.leftOut = known.leftOut;
    if (updatedRooms > 0)
        writing.service->ChangeElements(*known.changed);
    if (newRooms > 0)
        writing.service->AddElements(*known.added);
}

bool clsKalvero::writeKnownRoom(const clsRoom& room, KnownRooms& known) {
    const Outline outline = outlineOf(room);
    if (const auto element = known.drawing.find(room)) {
        if (!known.withModify)
            return true;
        HostRoomRecord given;
        const bool told = Attempt([&] { given = element->Record(); });
        fillElement(room, *element, known.colour, told ? &given : nullptr);
        // A point file keeps fewer digits than the drawing: only one that says something else may
        // bend the room.
        Outline standing;
        if (!outline.empty() &&
            !(Attempt([&] { standing = element->Outline(); }) &&
              clsFileSytem::WouldBeReadAs(PointsOf(standing), PointsOf(outline))))
            element->Outline(outline);
        if (known.changedElements.insert(element.get()).second)
            known.changed->Add(*element);
        return true;
    }
    if (known.drawing.mayHold(room)) {
        known.leftOut = true;
        return true;
    }
    if (outline.empty())
        return false;
    const auto created = known.service.CreateRoomElement();
    fillElement(room, *created, known.colour);
    created->Outline(outline);
    known.added->Add(*created);
    ++known.addedCount;
    return true;
}

Outline clsKalvero::outlineOf(const clsRoom& room) const {
    PointArray points;
    Outline outline;
    if (withoutOutline_.contains(room.Geometry->FileName()))
        return outline;
    if (clsFileSytem(files_).ReadPointsFromGeometryFile(room.Geometry->FileName(), points))
        for (std::int32_t i = 0; i < points.Count(); ++i)
            outline.push_back({points.X(i), points.Y(i)});
    return outline;
}

std::int32_t clsKalvero::writeRoomsWithoutCoordinates(Writing& writing, TwoRows* rows) {
    HostDrawingService& service = *writing.service;
    const std::int32_t colour = window_.GetPlace().colorNew;
    std::int32_t placed = 0;
    std::unique_ptr<HostElementList> block;
    const std::int32_t countOfRooms = writing.floors.GetCountOfRooms();
    for (std::int32_t index = 1; index <= countOfRooms; ++index) {
        clsRoom room;
        writing.floors.GetRoomByIndex(index, room);
        // What the first pass has written is done, even if a room of another storey that is to be
        // laid out has the same ID.
        if (writtenRooms_.contains(index))
            continue;
        double a = 0.0;
        double b = 0.0;
        room.Geometry->Default(isInModificationList(room));
        room.Geometry->getDefaultValues(a, b);
        if (a <= 0.0 || b <= 0.0)
            continue;
        // A block that is not complete is not placed.
        if (!writing.progress.next(index))
            return placed;
        if (rows) {
            if (!block)
                block = service.CreateElementList();
            block->Add(*createRectangle(service, room, rows->next(a, b), a, b, colour));
        } else {
            const auto element = createRectangle(service, room, {}, a, b, colour);
            const auto single = service.CreateElementList();
            single->Add(*element);
            if (!place(writing, *single))
                return placed;
            ++placed;
        }
    }
    if (!block)
        return placed;
    placed = block->Count();
    return place(writing, *block) ? placed : 0;
}

std::unique_ptr<HostRoomElement> clsKalvero::createRectangle(HostDrawingService& service,
                                                             const clsRoom& room, Point corner,
                                                             double a, double b,
                                                             std::int32_t colour) {
    auto element = service.CreateRoomElement();
    fillElement(room, *element, colour);
    element->Outline(
        {corner, {corner.x + a, corner.y}, {corner.x + a, corner.y + b}, {corner.x, corner.y + b}});
    return element;
}

bool clsKalvero::place(Writing& writing, HostElementList& elements) {
    // The user works in the drawing now: the pointer must not say that he has to wait.
    wait_->BreakWait();
    try {
        writing.service->PlaceElements(elements, PlaceAtCrossHair);
    } catch (const RuntimeError& error) {
        wait_->ContinueWait();
        if (error.number() == RuntimeError::ServerUnavailable)
            throw;
        // What is in the drawing already stays, although writing stops here.
        if (error.number() != RuntimeError::DialogCancelled)
            writing.trouble = error.description();
        return false;
    }
    wait_->ContinueWait();
    return true;
}

void clsKalvero::fillElement(const clsRoom& room, HostRoomElement& element, std::int32_t colour,
                             const HostRoomRecord* given) {
    std::unique_ptr<HostAttributeList> attributes;
    if (!wasReadInPart(room))
        Attempt([&] { attributes = element.Attributes(); });
    AddRoomToModificationList(room, element, attributes.get(), given);
    element.Colour(colour);
}

bool clsKalvero::isUnidentified(const clsRoom& room) const {
    return IdentityKey(room.ComponentID(), room.FileID()).empty() &&
           unidentified_.contains(room.Geometry->FileName());
}

bool clsKalvero::wasReadInPart(const clsRoom& room) const {
    return readInPart_.contains(IdentityKey(room.ComponentID(), room.FileID()));
}

void clsKalvero::AddRoomToModificationList(const clsRoom& room, HostRoomElement& element,
                                           HostAttributeList* attributes,
                                           const HostRoomRecord* given) {
    const auto write = [&](const std::wstring& text, std::wstring HostRoomRecord::*standing,
                           void (HostRoomElement::*put)(const std::wstring&), std::int32_t warning,
                           bool& warn) {
        // The blanks around the drawing's texts were cut off when they were read.
        const auto stands = [&](const std::wstring& wanted) {
            return given && Trim(given->*standing) == Trim(wanted);
        };
        if (stands(text) || (text.empty() && wasReadInPart(room)))
            return;
        const std::wstring cut = cutForHost(text, warning, warn);
        if (!stands(cut))
            (element.*put)(cut);
    };
    using Record = HostRoomRecord;
    using Element = HostRoomElement;
    write(room.Name(), &Record::RoomName, &Element::RoomName, TextNumber::NameCut, warnOfName_);
    write(room.StoryCode(), &Record::StoreyCode, &Element::StoreyCode, TextNumber::StoryCodeCut,
          warnOfStoryCode_);
    write(room.FunctionName(), &Record::RoomFunction, &Element::RoomFunction,
          TextNumber::FunctionCut, warnOfFunction_);
    if (!attributes)
        return;
    std::vector<HostAttributeValue> values;
    Attempt([&] { values = attributes->Values(); });
    // The blanks that frame the table's texts are no part of the host's names.
    const NamedTexts texts{{{Trim(texts_.GetText(TextNumber::Enclosure)), room.Enclosure()},
                            {Trim(texts_.GetText(TextNumber::HostOccupancy)), room.Occupancy()},
                            {Trim(texts_.GetText(TextNumber::HostAreaType)), room.AreaType()}}};
    std::int32_t index = 0;
    for (const HostAttributeValue& value : values) {
        ++index;
        Attempt([&] { SetAttributeIfNamed(*attributes, index, value, texts); });
    }
}

void clsKalvero::SetAttributeIfNamed(HostAttributeList& attributes, std::int32_t index,
                                     const HostAttributeValue& attribute, const NamedTexts& texts) {
    const std::wstring name = Trim(attribute.Name.value_or(L""));
    for (const auto& [wanted, text] : texts) {
        if (name == wanted) {
            // Every call costs; a text that stands there already is not sent again.
            if (text != attribute.Text)
                attributes.Item(index)->TextValue(text);
            return;
        }
    }
}

std::wstring clsKalvero::cutForHost(const std::wstring& text, std::int32_t warning, bool& warn) {
    if (text.size() <= LongestHostText)
        return text;
    if (warn) {
        showHostMessage(warning);
        warn = false;
    }
    return text.substr(0, LongestHostText);
}

bool clsKalvero::isInModificationList(const clsRoom& room) const {
    const std::wstring id = FromLong(room.ID());
    return std::find(modificationList_.begin(), modificationList_.end(), id) !=
           modificationList_.end();
}

} // namespace kalvrooms
