#include "host/clsKalvero.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <unordered_map>

#include "app/TextNumbers.h"
#include "files/FilePath.h"
#include "files/clsFileSytem.h"
#include "model/NumberText.h"
#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

// Runs a step whose failure leaves its result as it was; tells whether it went well.
bool attempt(const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const RuntimeError&) {
        return false;
    }
}

// A word at the very start of a host's description counts as absent.
bool standsBehindStart(const std::wstring& description, const wchar_t* words) {
    const std::size_t position = description.find(words);
    return position != std::wstring::npos && position > 0;
}

// Identity of a room as it is compared with an element's; empty for a room that has none.
std::wstring identityKey(std::int32_t componentID, const std::wstring& fileID) {
    const std::wstring file = Trim(fileID);
    if (componentID < 0 || file.empty())
        return {};
    return FromLong(componentID) + L"-" + file;
}

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

// The operation's busy indicator, known to the bridge as long as the operation runs.
class Busy {
  public:
    Busy(clsWait*& slot, Gui::Desktop& desktop) : wait_(desktop), slot_(slot) { slot_ = &wait_; }
    ~Busy() { slot_ = nullptr; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    clsWait* operator->() { return &wait_; }

  private:
    clsWait wait_;
    clsWait*& slot_;
};

} // namespace

// The room elements of the drawing, read once per writing and only if a room asks for them.
class clsKalvero::Elements {
  public:
    Elements(HostServer& server, HostDrawingService& service)
        : server_(server), service_(service) {}

    // The element with the room's identity, or null.
    std::unique_ptr<HostRoomElement> find(const clsRoom& room) {
        const std::wstring key = identityKey(room.ComponentID(), room.FileID());
        if (key.empty())
            return nullptr;
        read();
        const auto found = indexByIdentity_.find(key);
        return found == indexByIdentity_.end() ? nullptr : list_->Item(found->second);
    }

  private:
    void read() {
        if (list_)
            return;
        const auto filter = server_.CreateRoomFilter();
        filter->SelectRooms();
        list_ = service_.GetElements(*filter);
        std::int32_t index = 0;
        for (const HostIdentity& identity : list_->Identities()) {
            ++index;
            const std::wstring key = identityKey(identity.ComponentID, identity.FileID);
            if (!key.empty())
                indexByIdentity_.emplace(key, index);
        }
    }

    HostServer& server_;
    HostDrawingService& service_;
    std::unique_ptr<HostElementList> list_;
    std::unordered_map<std::wstring, std::int32_t> indexByIdentity_;
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
    std::int32_t changedCount = 0;
    std::int32_t addedCount = 0;
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

// The host's names of the attributes that are read, as its catalogue gives them.
struct clsKalvero::AttributeNames {
    std::wstring area = L"Bodenfläche";
    std::wstring enclosure = L"Umschließungsart";
    std::wstring occupancy = L"Nutzen";
    std::wstring areaType = L"Flächenart 277";

    explicit AttributeNames(HostServer& server) {
        std::unique_ptr<HostAttributeCatalogue> catalogue;
        if (!attempt([&] { catalogue = server.CreateAttributeCatalogue(); }) || !catalogue)
            return;
        const auto ask = [&](std::int32_t number, std::wstring& name) {
            attempt([&] {
                std::wstring answer = catalogue->AttributeName(number);
                if (!answer.empty())
                    name = std::move(answer);
            });
        };
        ask(293, area);
        ask(231, enclosure);
        ask(235, occupancy);
        ask(232, areaType);
    }
};

clsKalvero::clsKalvero(HostServer& host, const FileServices& files, ExportWindow& window)
    : host_(host), files_(files), desktop_(files.desktop), texts_(files.texts), window_(window) {
    attempt([this] { connect(); });
}

void clsKalvero::connect() {
    application_ = host_.CreateHostApplication();
}

std::unique_ptr<HostDrawingService> clsKalvero::getDrawingService() {
    if (application_) {
        try {
            return application_->GetDrawingService();
        } catch (const RuntimeError& error) {
            if (error.number() != RuntimeError::ServerUnavailable)
                throw;
            application_.reset();
        }
    }
    connect();
    if (!application_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    return application_->GetDrawingService();
}

std::wstring clsKalvero::GetProjectName() {
    const auto updateProjectInfo = [this] {
        if (!application_)
            connect();
        if (application_)
            application_->UpdateProjectInfo();
    };
    try {
        updateProjectInfo();
    } catch (const RuntimeError& error) {
        // The host was ended; it may have been started again since.
        if (error.number() == RuntimeError::ServerUnavailable) {
            application_.reset();
            attempt(updateProjectInfo);
        }
    }
    std::wstring name;
    if (application_) {
        attempt([&] { name = Trim(application_->GetProject()->ProjectName()); });
        attempt([&] { projectPath_ = application_->GetProject()->ProjectFolder(); });
    }
    return name.empty() ? ProjectWithoutName : name;
}

std::wstring clsKalvero::GetProjectPath() const {
    return projectPath_;
}

bool clsKalvero::hostForbidsAccess() {
    std::wstring description;
    try {
        auto fresh = host_.CreateHostApplication();
        if (!application_)
            application_ = std::move(fresh);
    } catch (const RuntimeError& error) {
        description = error.description();
    }
    if (standsBehindStart(description, L"interaction") &&
        standsBehindStart(description, L"menue") && standsBehindStart(description, L"terminate")) {
        showHostMessage(TextNumber::EndMenuAction);
        return true;
    }
    if (standsBehindStart(description, L"any Kvd or free plan")) {
        showHostMessage(TextNumber::CloseKvdFiles);
        return true;
    }
    return false;
}

void clsKalvero::showHostMessage(std::int32_t textNumber) {
    if (wait_)
        wait_->BreakWait();
    desktop_.ShowMessage({texts_.GetText(textNumber), texts_.GetText(TextNumber::Title)});
    if (wait_)
        wait_->ContinueWait();
}

// ------------------------------------------------------------------------------------- reading

void clsKalvero::ImportFloorsFromKalvero(clsFloors& floors) {
    bool skipped = false;
    {
        Busy busy(wait_, desktop_);
        busy->StartWait();
        std::int32_t projectNumber = 0;
        const auto elements = selectRooms(projectNumber);
        if (!hostForbidsAccess()) {
            skipped = !readRooms(elements.get(), projectNumber, floors);
            files_.table.UpdateTable(true);
        }
    }
    if (skipped)
        desktop_.ShowMessage(
            {texts_.GetText(TextNumber::NoKvdRooms), texts_.GetText(TextNumber::Title)});
}

std::unique_ptr<HostElementList> clsKalvero::selectRooms(std::int32_t& projectNumber) {
    std::unique_ptr<HostDrawingService> service;
    std::unique_ptr<HostRoomSelection> filter;
    std::unique_ptr<HostElementList> elements;
    attempt([&] { service = getDrawingService(); });
    attempt([&] { filter = host_.CreateRoomFilter(); });
    attempt([&] {
        if (application_)
            projectNumber = application_->GetProject()->ProjectNumber();
    });
    attempt([&] {
        if (filter)
            filter->SelectRooms();
    });
    attempt([&] {
        if (service && filter)
            elements = service->GetElements(*filter);
    });
    return elements;
}

bool clsKalvero::readRooms(HostElementList* elements, std::int32_t projectNumber,
                           clsFloors& floors) {
    const AttributeNames names(host_);
    std::int32_t count = 0;
    attempt([&] {
        if (elements)
            count = elements->Count();
    });
    bool complete = true;
    for (std::int32_t index = 1; index <= count; ++index) {
        std::unique_ptr<HostRoomElement> element;
        HostRoomRecord record;
        attempt([&] { element = elements->Item(index); });
        attempt([&] {
            if (element)
                record = element->Record();
        });
        if (record.Identity.FileNumber <= 0) {
            complete = false;
            continue;
        }
        clsRoom room;
        room.ProjectNumber(projectNumber);
        readRoom(*element, record, names, room);
        floors.AddRoom(room);
    }
    return complete;
}

void clsKalvero::readRoom(HostRoomElement& element, const HostRoomRecord& record,
                          const AttributeNames& names, clsRoom& room) {
    room.FileNumber(record.Identity.FileNumber);
    room.ComponentID(record.Identity.ComponentID);
    room.FileID(record.Identity.FileID);
    room.FunctionName(record.RoomFunction);
    room.StoryCode(record.StoreyCode);
    room.Name(record.RoomName);
    ReadRoomAttributes(element, room, names);
    const std::wstring path = projectPath_ + PathSeparator + FromLong(record.Identity.FileNumber) +
                              L"-" + FromLong(record.Identity.ComponentID) + L".txt";
    // An older outline would push itself into the drawing with the next writing.
    if (!attempt([&] { writePoints(path, element.Outline()); }))
        removePoints(path);
    room.Geometry->SetTypeAndValue(CalculationByFile, path);
}

void clsKalvero::ReadRoomAttributes(HostRoomElement& element, clsRoom& room,
                                    const AttributeNames& names) {
    room.AreaType(L"");
    room.Enclosure(L"");
    room.Occupancy(L"");
    room.Geometry->Area(0.0);
    std::vector<HostAttributeValue> values;
    attempt([&] {
        if (const auto attributes = element.Attributes())
            values = attributes->Values();
    });
    for (const HostAttributeValue& value : values)
        if (value.Name == names.area)
            room.Geometry->Area(value.Number);
        else if (value.Name == names.enclosure)
            room.Enclosure(value.Text);
        else if (value.Name == names.areaType)
            room.AreaType(value.Text);
        else if (value.Name == names.occupancy)
            room.Occupancy(value.Text);
}

void clsKalvero::removePoints(const std::wstring& path) {
    try {
        std::error_code ignored;
        std::filesystem::remove(FilePath(path), ignored);
    } catch (const std::exception&) {
        // A name that no file can have has left none behind.
    }
}

void clsKalvero::writePoints(const std::wstring& path, const Outline& outline) {
    PointArray points;
    for (const Point& point : outline)
        points.Add(point.x, point.y);
    clsFileSytem(files_).WritePointsToGeometryFile(path, points);
}

// ------------------------------------------------------------------------------------- writing

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

    Busy busy(wait_, desktop_);
    std::unique_ptr<HostDrawingService> service;
    attempt([&] { service = getDrawingService(); });
    if (hostForbidsAccess())
        return;
    busy->StartWait();
    const InputLock lock(window_);
    // A host that was ended in the meantime is reached by the connection that the check has made.
    if (!service)
        service = getDrawingService();

    LeftRooms left;
    writeRoomsWithCoordinates(*service, qtoFloors, blnWithModify, left, lngNoWithKoNew,
                              lngNoWithKoOld);
    service->ApplyChanges();
    // Half of one row that would hold all rooms: the block comes out as two rows of about equal
    // length.
    const double rowLimit = (left.count - 1) / 2.0 * dblDxOfRooms + left.sumOfSides / 2.0;
    TwoRows rows(dblDxOfRooms, dblDyOfRooms, rowLimit);
    lngNoWithoutKo =
        writeRoomsWithoutCoordinates(*service, qtoFloors, blnRoomsAsBlock ? &rows : nullptr);
    service->ApplyChanges();
    modificationList_.clear();
}

void clsKalvero::writeRoomsWithCoordinates(HostDrawingService& service, const clsFloors& floors,
                                           bool withModify, LeftRooms& left, std::int32_t& newRooms,
                                           std::int32_t& updatedRooms) {
    KnownRooms known(host_, service, withModify, window_.GetPlace().colorOld);
    const std::int32_t countOfRooms = floors.GetCountOfRooms();
    for (std::int32_t index = 1; index <= countOfRooms; ++index) {
        clsRoom room;
        floors.GetRoomByIndex(index, room);
        double side = room.Geometry->dx();
        if (side == 0.0) {
            if (writeKnownRoom(room, known)) {
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
    if (known.changedCount > 0)
        service.ChangeElements(*known.changed);
    if (known.addedCount > 0)
        service.AddElements(*known.added);
    updatedRooms = known.changedCount;
    newRooms = known.addedCount;
}

bool clsKalvero::writeKnownRoom(const clsRoom& room, KnownRooms& known) {
    const Outline outline = outlineOf(room);
    if (const auto element = known.drawing.find(room)) {
        if (!known.withModify)
            return true;
        fillElement(room, *element, known.colour);
        if (!outline.empty())
            element->Outline(outline);
        known.changed->Add(*element);
        ++known.changedCount;
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
    if (clsFileSytem(files_).ReadPointsFromGeometryFile(room.Geometry->FileName(), points))
        for (std::int32_t i = 0; i < points.Count(); ++i)
            outline.push_back({points.X(i), points.Y(i)});
    return outline;
}

std::int32_t clsKalvero::writeRoomsWithoutCoordinates(HostDrawingService& service,
                                                      const clsFloors& floors, TwoRows* rows) {
    const std::int32_t colour = window_.GetPlace().colorNew;
    std::int32_t placed = 0;
    std::unique_ptr<HostElementList> block;
    const std::int32_t countOfRooms = floors.GetCountOfRooms();
    for (std::int32_t index = 1; index <= countOfRooms; ++index) {
        clsRoom room;
        floors.GetRoomByIndex(index, room);
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
        if (rows) {
            if (!block)
                block = service.CreateElementList();
            block->Add(*createRectangle(service, room, rows->next(a, b), a, b, colour));
        } else {
            const auto element = createRectangle(service, room, {}, a, b, colour);
            const auto single = service.CreateElementList();
            single->Add(*element);
            place(service, *single, placed > 0);
            ++placed;
        }
    }
    if (block) {
        placed = block->Count();
        place(service, *block, false);
    }
    return placed;
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

void clsKalvero::place(HostDrawingService& service, HostElementList& elements,
                       bool othersArePlaced) {
    // The user works in the drawing now: the pointer must not say that he has to wait.
    wait_->BreakWait();
    try {
        service.PlaceElements(elements, PlaceAtCrossHair);
    } catch (...) {
        wait_->ContinueWait();
        // What the user has placed one by one so far is not lost because he gives up here.
        if (othersArePlaced)
            attempt([&] { service.ApplyChanges(); });
        throw;
    }
    wait_->ContinueWait();
}

void clsKalvero::fillElement(const clsRoom& room, HostRoomElement& element, std::int32_t colour) {
    std::unique_ptr<HostAttributeList> attributes;
    attempt([&] { attributes = element.Attributes(); });
    AddRoomToModificationList(room, element, attributes.get());
    element.Colour(colour);
}

void clsKalvero::AddRoomToModificationList(const clsRoom& room, HostRoomElement& element,
                                           HostAttributeList* attributes) {
    element.RoomName(cutForHost(room.Name(), TextNumber::NameCut, warnOfName_));
    element.StoreyCode(cutForHost(room.StoryCode(), TextNumber::StoryCodeCut, warnOfStoryCode_));
    element.RoomFunction(cutForHost(room.FunctionName(), TextNumber::FunctionCut, warnOfFunction_));
    if (!attributes)
        return;
    std::vector<HostAttributeValue> values;
    attempt([&] { values = attributes->Values(); });
    // The blanks that frame the table's texts are no part of the host's names.
    const NamedTexts texts{{{Trim(texts_.GetText(TextNumber::Enclosure)), room.Enclosure()},
                            {Trim(texts_.GetText(TextNumber::HostOccupancy)), room.Occupancy()},
                            {Trim(texts_.GetText(TextNumber::HostAreaType)), room.AreaType()}}};
    std::int32_t index = 0;
    for (const HostAttributeValue& value : values) {
        ++index;
        attempt([&] { SetAttributeIfNamed(*attributes, index, value, texts); });
    }
}

void clsKalvero::SetAttributeIfNamed(HostAttributeList& attributes, std::int32_t index,
                                     const HostAttributeValue& attribute, const NamedTexts& texts) {
    const std::wstring name = Trim(attribute.Name);
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
    if (text.size() <= clsKalvero::LongestText)
        return text;
    if (warn) {
        showHostMessage(warning);
        warn = false;
    }
    return text.substr(0, clsKalvero::LongestText);
}

bool clsKalvero::isInModificationList(const clsRoom& room) const {
    const std::wstring id = FromLong(room.ID());
    return std::find(modificationList_.begin(), modificationList_.end(), id) !=
           modificationList_.end();
}

} // namespace kalvrooms
