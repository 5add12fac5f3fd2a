#include "host/clsKalvero.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <unordered_map>

#include "app/Messages.h"
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

// After so many elements in a row that cannot be taken, the count of the list is not believed.
constexpr std::int32_t mostFailuresInARow = 20;

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

PointArray pointsOf(const Outline& outline) {
    PointArray points;
    for (const Point& point : outline)
        points.Add(point.x, point.y);
    return points;
}

// Moves a file aside, over one that was moved there before. True when nothing is left at the path
// that could be read as a file.
bool setAside(const std::wstring& path) {
    try {
        const std::filesystem::path file = FilePath(path);
        if (!std::filesystem::exists(file) || std::filesystem::is_directory(file))
            return true;
        std::error_code failure;
        std::filesystem::rename(file, FilePath(path + L".bak"), failure);
        return !failure;
    } catch (const std::exception&) {
        // No file can have a name like that.
        return true;
    }
}

} // namespace

// Shows how far an operation is, and asks between two rooms whether the user ends it.
class clsKalvero::Progress {
  public:
    Progress(ExportWindow& window, const FileServices& files, std::int32_t words,
             std::int32_t total)
        : window_(window), files_(files), words_(words), total_(total) {
        // What was pressed before was meant for something else.
        files_.desktop.EscapePressed();
    }
    ~Progress() { window_.ShowProgress(L""); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Before every room. False when the user has ended the operation.
    bool next(std::int32_t room) {
        ended_ = ended_ || files_.desktop.EscapePressed();
        // A room that one pass leaves to the other is begun once.
        if (!ended_ && begun_.insert(room).second)
            window_.ShowProgress(MessageText(
                files_.texts, words_,
                {FromLong(static_cast<std::int32_t>(begun_.size())), FromLong(total_)}));
        return !ended_;
    }
    bool ended() const { return ended_; }

  private:
    ExportWindow& window_;
    const FileServices& files_;
    const std::int32_t words_;
    const std::int32_t total_;
    std::set<std::int32_t> begun_;
    bool ended_ = false;
};

// The room elements of the drawing, read once per writing and only if a room asks for them.
class clsKalvero::Elements {
  public:
    Elements(HostServer& server, HostDrawingService& service)
        : server_(server), service_(service) {}

    // The element with the room's identity, or null. Two rooms with one identity share it.
    std::shared_ptr<HostRoomElement> find(const clsRoom& room) {
        const std::wstring key = identityKey(room.ComponentID(), room.FileID());
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
    std::unordered_map<std::int32_t, std::shared_ptr<HostRoomElement>> taken_;
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
    broken_ = false;
}

template <typename Call>
auto clsKalvero::ask(Call call) {
    try {
        return call(*application_);
    } catch (const RuntimeError&) {
        broken_ = true;
        throw;
    }
}

std::unique_ptr<HostDrawingService> clsKalvero::getDrawingService() {
    const auto service = [](HostApplication& host) { return host.GetDrawingService(); };
    if (application_) {
        try {
            return ask(service);
        } catch (const RuntimeError& error) {
            if (error.number() != RuntimeError::ServerUnavailable)
                throw;
            application_.reset();
        }
    }
    connect();
    if (!application_)
        throw RuntimeError(RuntimeError::ObjectVariableNotSet);
    return ask(service);
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
        const auto project = [](HostApplication& host) { return host.GetProject(); };
        attempt([&] { name = Trim(ask(project)->ProjectName()); });
        attempt([&] { projectPath_ = ask(project)->ProjectFolder(); });
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
        if (!application_ || broken_) {
            application_ = std::move(fresh);
            broken_ = false;
        }
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

void clsKalvero::tell(std::int32_t textNumber, const std::vector<std::wstring>& parts) {
    desktop_.ShowMessage(
        {MessageText(texts_, textNumber, parts), MessageText(texts_, TextNumber::Title)});
}

// ------------------------------------------------------------------------------------- reading

// What one reading knows, and what it has to tell at its end.
struct clsKalvero::Reading {
    std::int32_t projectNumber = 0;
    // Of the point files; empty when the host does not tell it.
    std::wstring folder;
    std::int32_t total = 0;
    std::int32_t read = 0;
    std::int32_t readInPart = 0;
    // Why there is nothing to read.
    std::optional<RuntimeError> failure;
    bool skippedNative = false;
    bool withoutFolder = false;
    bool gaveUp = false;
    bool ended = false;
    bool hostIsGone = false;

    // Tells whether the step went well.
    bool attempt(const std::function<void()>& step) {
        try {
            step();
            return true;
        } catch (const RuntimeError& error) {
            if (error.number() == RuntimeError::ServerUnavailable)
                hostIsGone = true;
            failure = error;
            return false;
        }
    }
};

void clsKalvero::ImportFloorsFromKalvero(clsFloors& floors) {
    Reading reading;
    {
        Busy busy(wait_, desktop_);
        busy->StartWait();
        auto elements = selectRooms(reading);
        broken_ = broken_ || reading.hostIsGone;
        const HostApplication* const before = application_.get();
        if (hostForbidsAccess())
            return;
        // A broken connection has brought nothing; the check has made another one.
        if (!elements && application_.get() != before) {
            reading = {};
            elements = selectRooms(reading);
        }
        readRooms(elements.get(), reading, floors);
        files_.table.UpdateTable(true);
    }
    tellOf(reading);
}

std::unique_ptr<HostElementList> clsKalvero::selectRooms(Reading& reading) {
    std::unique_ptr<HostDrawingService> service;
    std::unique_ptr<HostRoomSelection> filter;
    std::unique_ptr<HostElementList> elements;
    reading.attempt([&] { service = getDrawingService(); });
    reading.attempt([&] { filter = host_.CreateRoomFilter(); });
    if (application_) {
        std::unique_ptr<HostProject> project;
        reading.attempt(
            [&] { project = ask([](HostApplication& host) { return host.GetProject(); }); });
        if (project) {
            reading.attempt([&] { reading.projectNumber = project->ProjectNumber(); });
            // Another project may have been opened since its name was asked for.
            reading.attempt([&] { reading.folder = project->ProjectFolder(); });
        }
    }
    reading.attempt([&] {
        if (filter)
            filter->SelectRooms();
    });
    reading.attempt([&] {
        if (service && filter)
            elements = service->GetElements(*filter);
    });
    return elements;
}

void clsKalvero::readRooms(HostElementList* elements, Reading& reading, clsFloors& floors) {
    if (!elements || !reading.attempt([&] { reading.total = elements->Count(); }))
        return;
    reading.failure.reset();
    const AttributeNames names(host_);
    Progress progress(window_, files_, TextNumber::ReadingProgress, reading.total);
    std::int32_t failuresInARow = 0;
    for (std::int32_t begun = 0; begun < reading.total && !reading.hostIsGone; ++begun) {
        if (!progress.next(begun)) {
            reading.ended = true;
            return;
        }
        std::unique_ptr<HostRoomElement> element;
        HostRoomRecord record;
        reading.attempt([&] { element = elements->Item(begun + 1); });
        failuresInARow = element ? 0 : failuresInARow + 1;
        if (failuresInARow == mostFailuresInARow) {
            // They are no rooms.
            reading.readInPart -= failuresInARow - 1;
            reading.gaveUp = true;
            return;
        }
        if (!element || !reading.attempt([&] { record = element->Record(); }))
            ++reading.readInPart;
        else if (record.Identity.FileNumber <= 0)
            reading.skippedNative = true;
        else
            readRoom(*element, record, names, reading, floors);
    }
}

void clsKalvero::readRoom(HostRoomElement& element, const HostRoomRecord& record,
                          const AttributeNames& names, Reading& reading, clsFloors& floors) {
    clsRoom room;
    room.ProjectNumber(reading.projectNumber);
    room.FileNumber(record.Identity.FileNumber);
    room.ComponentID(record.Identity.ComponentID);
    room.FileID(record.Identity.FileID);
    room.FunctionName(record.RoomFunction);
    room.StoryCode(record.StoreyCode);
    room.Name(record.RoomName);
    bool whole = ReadRoomAttributes(element, room, names, reading) && record.Whole;
    const std::wstring path = reading.folder + PathSeparator +
                              FromLong(record.Identity.FileNumber) + L"-" +
                              FromLong(record.Identity.ComponentID) + L".txt";
    whole = readOutline(element, path, reading) && whole;
    // The host went away during this room: what is missing is unknown.
    if (reading.hostIsGone)
        return;
    room.Geometry->SetTypeAndValue(CalculationByFile, path);
    const std::wstring key = identityKey(room.ComponentID(), room.FileID());
    // Without its identity the room is still known by its place in the project folder.
    std::set<std::wstring>& inPart = key.empty() ? unidentified_ : readInPart_;
    const std::wstring& mark = key.empty() ? path : key;
    if (whole) {
        inPart.erase(mark);
    } else {
        inPart.insert(mark);
        ++reading.readInPart;
    }
    floors.AddRoom(room);
    ++reading.read;
}

bool clsKalvero::ReadRoomAttributes(HostRoomElement& element, clsRoom& room,
                                    const AttributeNames& names, Reading& reading) {
    room.AreaType(L"");
    room.Enclosure(L"");
    room.Occupancy(L"");
    room.Geometry->Area(0.0);
    std::vector<HostAttributeValue> values;
    bool whole = reading.attempt([&] {
        if (const auto attributes = element.Attributes())
            values = attributes->Values();
    });
    for (const HostAttributeValue& value : values) {
        bool told = value.Name.has_value();
        const std::wstring text = value.Text.value_or(L"");
        if (value.Name == names.area) {
            told = value.Number.has_value();
            room.Geometry->Area(value.Number.value_or(0.0));
        } else if (value.Name == names.enclosure) {
            told = value.Text.has_value();
            room.Enclosure(text);
        } else if (value.Name == names.areaType) {
            told = value.Text.has_value();
            room.AreaType(text);
        } else if (value.Name == names.occupancy) {
            told = value.Text.has_value();
            room.Occupancy(text);
        }
        whole = whole && told;
    }
    return whole;
}

bool clsKalvero::readOutline(HostRoomElement& element, const std::wstring& path, Reading& reading) {
    if (reading.folder.empty()) {
        reading.withoutFolder = true;
        withoutOutline_.insert(path);
        return true;
    }
    Outline outline;
    const bool told = reading.attempt([&] { outline = element.Outline(); });
    withoutOutline_.erase(path);
    // The next writing would put the older outline into the drawing.
    if ((!told || !attempt([&] { writePoints(path, outline); })) && !setAside(path))
        withoutOutline_.insert(path);
    return told;
}

void clsKalvero::writePoints(const std::wstring& path, const Outline& outline) {
    clsFileSytem(files_).WritePointsToGeometryFile(path, pointsOf(outline));
}

void clsKalvero::tellOf(const Reading& reading) {
    if (reading.skippedNative)
        desktop_.ShowMessage(
            {texts_.GetText(TextNumber::NoKvdRooms), texts_.GetText(TextNumber::Title)});
    if (reading.readInPart > 0)
        tell(TextNumber::RoomsReadInPart, {FromLong(reading.readInPart)});
    if (reading.withoutFolder)
        tell(TextNumber::NoProjectFolder);
    const std::vector<std::wstring> parts{FromLong(reading.read), FromLong(reading.total)};
    if (reading.hostIsGone)
        tell(TextNumber::HostIsGone, parts);
    else if (reading.failure && reading.total == 0)
        tell(TextNumber::DrawingNotRead, {DescriptionText(texts_, *reading.failure)});
    else if (reading.gaveUp)
        tell(TextNumber::ReadingGivenUp, parts);
    else if (reading.ended)
        tell(TextNumber::ReadingEnded, parts);
}

// ------------------------------------------------------------------------------------- writing

// One writing of the list, room by room.
struct clsKalvero::Writing {
    const clsFloors& floors;
    Progress progress;
    std::unique_ptr<HostDrawingService> service{};
    // The rooms were not placed: the user gave up, or the host did, in its own words.
    bool givenUp = false;
    std::wstring trouble{};

    bool goesOn() const { return !givenUp && !progress.ended(); }
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
        attempt([&] { writing.service = getDrawingService(); });
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
        if (writing.goesOn()) {
            // Half of one row that would hold all rooms: the block comes out as two rows of about
            // equal length.
            const double rowLimit = (left.count - 1) / 2.0 * dblDxOfRooms + left.sumOfSides / 2.0;
            TwoRows rows(dblDxOfRooms, dblDyOfRooms, rowLimit);
            lngNoWithoutKo =
                writeRoomsWithoutCoordinates(writing, blnRoomsAsBlock ? &rows : nullptr);
            writing.service->ApplyChanges();
        }
        modificationList_.clear();
    }
    tellOf(writing, lngNoWithKoNew + lngNoWithKoOld + lngNoWithoutKo);
}

void clsKalvero::tellOf(const Writing& writing, std::int32_t written) {
    if (!writing.trouble.empty())
        tell(TextNumber::PlacingFailed, {writing.trouble});
    if (writing.progress.ended())
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
        const bool told = attempt([&] { given = element->Record(); });
        fillElement(room, *element, known.colour, told ? &given : nullptr);
        // A point file keeps fewer digits than the drawing: only one that says something else may
        // bend the room.
        Outline standing;
        if (!outline.empty() &&
            !(attempt([&] { standing = element->Outline(); }) &&
              clsFileSytem::WouldBeReadAs(pointsOf(standing), pointsOf(outline))))
            element->Outline(outline);
        if (known.changedElements.insert(element.get()).second)
            known.changed->Add(*element);
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
        writing.givenUp = true;
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
        attempt([&] { attributes = element.Attributes(); });
    AddRoomToModificationList(room, element, attributes.get(), given);
    element.Colour(colour);
}

bool clsKalvero::isUnidentified(const clsRoom& room) const {
    return identityKey(room.ComponentID(), room.FileID()).empty() &&
           unidentified_.contains(room.Geometry->FileName());
}

bool clsKalvero::wasReadInPart(const clsRoom& room) const {
    return readInPart_.contains(identityKey(room.ComponentID(), room.FileID()));
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
