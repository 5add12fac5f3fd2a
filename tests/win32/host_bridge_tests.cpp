// The bridge against a real automation server in a process of its own: every rule that only a call
// across processes can show.

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>

#include "host/clsKalvero.h"
#include "practice/PracticeHostProcess.h"
#include "support/BridgeContext.h"
#include "support/Drawings.h"
#include "support/RoomForTest.h"
#include "support/TemporaryFolder.h"
#include "support/UserLocaleForTest.h"
#include "win32/ComHostServer.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

const std::filesystem::path& projectFolder() {
    static const TemporaryFolder folder;
    return folder.path();
}

// The rooms of a drawing whose project folder is there, and empty.
Drawing schoolOf(std::vector<Element> elements) {
    std::filesystem::remove_all(projectFolder());
    std::filesystem::create_directories(projectFolder());
    return drawingOf(std::move(elements), projectFolder().wstring());
}

Drawing schoolOf(int elements, int moreAttributes = 0) {
    std::vector<Element> standing;
    for (int i = 1; i <= elements; ++i)
        standing.push_back(roomElement(i, 3, L"A", L"EG", 0, moreAttributes));
    return schoolOf(std::move(standing));
}

// With and without the members that are our own invention.
class Bridge : public ::testing::TestWithParam<bool> {
  protected:
    static void SetUpTestSuite() {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        host_ = std::make_unique<PracticeHostProcess>();
    }
    static void TearDownTestSuite() {
        host_.reset();
        CoUninitialize();
    }
    void SetUp() override {
        if (!host_->running())
            host_ = std::make_unique<PracticeHostProcess>();
        host_->clearFaults();
        host_->state(L"");
        host_->control().call(L"Plain", plain());
    }
    void TearDown() override {
        bridge_.reset();
        if (host_->running()) {
            EXPECT_EQ(host_->liveObjects(), 0) << "references left at the host";
        }
    }
    static bool plain() { return GetParam(); }
    clsKalvero& bridge() {
        if (!bridge_)
            bridge_ = context_.bridge();
        return *bridge_;
    }
    ExportCounts write() { return writeTo(bridge(), floors_, context_.asBlock); }
    void read() {
        floors_ = clsFloors();
        bridge().GetProjectName();
        bridge().ImportFloorsFromKalvero(floors_);
    }
    void addSquares(int rooms, const std::wstring& storey = L"EG") {
        clsRoom room;
        room.StoryCode(storey);
        floors_.AddRooms(room, rooms);
    }
    clsRoom room(std::int32_t index) const { return roomAt(floors_, index); }
    static int elements() { return static_cast<int>(host_->drawing().elements.size()); }
    void expectRestored() {
        EXPECT_TRUE(context_.inputEnabled);
        EXPECT_EQ(context_.desktop().MousePointer(), Gui::DefaultPointer);
    }

    static inline std::unique_ptr<PracticeHostProcess> host_;
    std::shared_ptr<ComSession> session_ = std::make_shared<ComSession>(1500);
    std::unique_ptr<HostServer> server_ = MakeComHostServer(session_);
    BridgeContext context_{*server_};
    std::unique_ptr<clsKalvero> bridge_;
    clsFloors floors_;
};

TEST_P(Bridge, ReadsTheRoomsOfTheDrawing) {
    host_->load(schoolOf({roomElement(17, 3, L" Raum 7 ", L"OG"), roomElement(18, 2, L"B", L"EG"),
                          roomElement(19, 0, L"kvd", L"EG"), roomElement(20, 2, L"C", L"og")}));
    read();
    ASSERT_EQ(floors_.GetCountOfRooms(), 3);
    EXPECT_EQ(floors_.GetCountOfFloors(), 2);
    const clsRoom first = room(1);
    EXPECT_EQ(first.Name(), L"Raum 7");
    EXPECT_EQ(first.FunctionName(), L"Büro");
    EXPECT_EQ(first.ProjectNumber(), 4711);
    EXPECT_EQ(first.FileNumber(), 3);
    EXPECT_EQ(first.GetRoomID(), L"17-K3");
    EXPECT_EQ(first.Geometry->Area(), 13.5);
    EXPECT_EQ(first.Occupancy(), L"HNF 2");
    EXPECT_EQ(first.Enclosure(), L"a");
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L" Räume aus KVD-Dateien können nicht gelesen werden."));
    EXPECT_EQ(readBytes(first.Geometry->CalculationValue()),
              "4\r\n0\t0\r\n4.5\t0\r\n4.5\t3\r\n0\t3\r\nend\r\n");
    expectRestored();
}

TEST_P(Bridge, WhatWasReadAndChangedGoesBackToTheSameElements) {
    host_->load(schoolOf({roomElement(17, 3, L"A", L"EG"), roomElement(18, 3, L"B", L"EG", 10)}));
    read();
    std::shared_ptr<clsRoom> stored;
    floors_.GetRoomByID(L"EG", 2, stored);
    stored->Name(L"umbenannt");
    stored->FunctionName(L"Lager");
    stored->Occupancy(L"HNF 4");
    addSquares(2, L"OG");
    const ExportCounts counts = write();
    EXPECT_EQ(counts.updated, 2);
    EXPECT_EQ(counts.atPosition, 0);
    EXPECT_EQ(counts.placed, 2);
    read();
    ASSERT_EQ(floors_.GetCountOfRooms(), 4);
    EXPECT_EQ(room(1).Name(), L"umbenannt");
    EXPECT_EQ(room(1).FunctionName(), L"Lager");
    EXPECT_EQ(room(1).Occupancy(), L"HNF 4");
    EXPECT_EQ(room(1).Geometry->Area(), 13.5);
    EXPECT_EQ(room(2).Name(), L"B");
    EXPECT_EQ(room(3).Geometry->Area(), 16);
    // The rooms of the last writing are known now.
    const ExportCounts again = write();
    EXPECT_EQ(again.updated, 4);
    EXPECT_EQ(again.atPosition, 0);
    EXPECT_EQ(again.placed, 0);
    EXPECT_EQ(elements(), 4);
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_P(Bridge, AHostWithoutTablesIsAskedOneByOne) {
    server_ = MakeComHostServer(session_, HostBulkMembers{nullptr, nullptr, nullptr});
    BridgeContext context(*server_);
    {
        const auto bridge = context.bridge();
        host_->load(schoolOf({roomElement(17, 3, L"A", L"EG"), roomElement(18, 0, L"kvd", L"EG")}));
        bridge->GetProjectName();
        bridge->ImportFloorsFromKalvero(floors_);
        ASSERT_EQ(floors_.GetCountOfRooms(), 1);
        EXPECT_EQ(room(1).GetRoomID(), L"17-K3");
        EXPECT_EQ(room(1).Geometry->Area(), 13.5);
        EXPECT_EQ(room(1).Occupancy(), L"HNF 2");
        // A text attribute has no number; that costs nothing but the number.
        host_->failMember(L"NumberValue", L"fail", L"no number");
        floors_ = clsFloors();
        bridge->ImportFloorsFromKalvero(floors_);
        ASSERT_EQ(floors_.GetCountOfRooms(), 1);
        EXPECT_EQ(room(1).Occupancy(), L"HNF 2");
        EXPECT_EQ(writeTo(*bridge, floors_).updated, 1);
    }
}

TEST_P(Bridge, APointFileThatCannotBeWrittenCostsOnlyTheOutline) {
    host_->load(schoolOf({roomElement(17, 3, L"A", L"EG"), roomElement(18, 3, L"B", L"EG"),
                          roomElement(19, 3, L"C", L"EG"), roomElement(20, 3, L"D", L"EG")}));
    const std::filesystem::path& folder = projectFolder();
    // A folder of that name, a file that somebody holds, a file that nobody may write.
    std::filesystem::remove(folder / L"3-17.txt");
    std::filesystem::create_directory(folder / L"3-17.txt");
    const HANDLE held = CreateFileW((folder / L"3-18.txt").c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                    nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    std::ofstream(folder / L"3-19.txt") << "old";
    SetFileAttributesW((folder / L"3-19.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    read();
    CloseHandle(held);
    SetFileAttributesW((folder / L"3-19.txt").c_str(), FILE_ATTRIBUTE_NORMAL);
    std::filesystem::remove(folder / L"3-17.txt");
    EXPECT_THAT(context_.prompts(), ElementsAre(StartsWith(L"Umrisse, die nicht gespeichert werden "
                                                           L"konnten: ")));
    ASSERT_EQ(floors_.GetCountOfRooms(), 4);
    for (const int index : {1, 2, 3, 4}) {
        EXPECT_EQ(room(index).Geometry->Area(), 13.5);
        EXPECT_EQ(room(index).Occupancy(), L"HNF 2");
        EXPECT_EQ(room(index).GetRoomID(), std::to_wstring(16 + index) + L"-K3");
    }
    EXPECT_GT(std::filesystem::file_size(room(4).Geometry->CalculationValue()), 20u);
    expectRestored();
    // The same elements are found again; the one whose outline is known keeps it too.
    EXPECT_EQ(write().updated, 4);
    EXPECT_EQ(elements(), 4);
}

TEST_P(Bridge, AProjectFolderThatCannotHoldFilesCostsOnlyTheOutlines) {
    for (const std::wstring& name : {std::wstring(300, L'x'), std::wstring(L"Projekt \u03a9\u4e2d"),
                                     std::wstring(L"fehlt\\ganz"), std::wstring(L"a<b>|c")}) {
        host_->load(drawingOf({roomElement(17, 3, L"A")}, L"C:\\" + name));
        read();
        ASSERT_EQ(floors_.GetCountOfRooms(), 1) << std::filesystem::path(name);
        EXPECT_EQ(room(1).Geometry->Area(), 13.5);
        EXPECT_EQ(room(1).Geometry->Info(), L"polygonal");
        EXPECT_EQ(write().updated, 1);
        EXPECT_EQ(elements(), 1);
    }
    const auto told = StartsWith(L"Umrisse, die nicht gespeichert werden konnten: 1. ");
    EXPECT_THAT(context_.prompts(), ElementsAre(told, told, told, told));
}

TEST_P(Bridge, AFolderBeyondTheCodePageHoldsPointFiles) {
    const std::filesystem::path folder = L"C:\\Projekt \u03a9\u4e2d";
    std::filesystem::create_directories(folder);
    host_->load(drawingOf({roomElement(17, 3, L"A")}, folder.wstring()));
    read();
    ASSERT_EQ(floors_.GetCountOfRooms(), 1);
    EXPECT_TRUE(std::filesystem::exists(folder / L"3-17.txt"));
    EXPECT_EQ(write().updated, 1);
    std::filesystem::remove_all(folder);
}

// One without the member for it refuses its creation; its words stay behind there (an error object
// comes out of a call, not out of a class factory of another process), and the command ends.
TEST_P(Bridge, AHostThatForbidsAccessIsReadAndWrittenInNoWay) {
    host_->load(schoolOf({roomElement(17, 3, L"A")}));
    const std::pair<const wchar_t*, const wchar_t*> refusals[] = {
        {L"menu", L" Bitte beenden Sie die Menüaktion."},
        {L"kvd", L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte schließen "
                 L"Sie alle KVD-Dateien."}};
    const std::wstring notRead = L"Das Teilbild konnte nicht gelesen werden: Die Komponente kann "
                                 L"kein Objekt erzeugen";
    for (const auto& [state, words] : refusals) {
        host_->state(state);
        floors_ = clsFloors();
        const std::size_t before = context_.prompts().size();
        read();
        EXPECT_EQ(floors_.GetCountOfRooms(), 0);
        addSquares(1);
        const long writing = errorOf([this] { write(); });
        EXPECT_EQ(writing, plain() ? static_cast<long>(RuntimeError::CannotCreateObject) : 0L);
        std::vector<std::wstring> prompts = context_.prompts();
        prompts.erase(prompts.begin(), prompts.begin() + static_cast<std::ptrdiff_t>(before));
        EXPECT_EQ(prompts, plain() ? std::vector<std::wstring>{notRead}
                                   : std::vector<std::wstring>(2, words));
    }
    host_->state(L"");
    EXPECT_EQ(elements(), 1);
    expectRestored();
}

// A drawing and a list in which every kind of call occurs.
class Faults : public Bridge {
  protected:
    void prepare() {
        host_->clearFaults();
        host_->load(
            schoolOf({roomElement(17, 3, L"A", L"EG"), roomElement(18, 3, L"B", L"EG", 10)}));
        bridge();
        floors_ = clsFloors();
        floors_.AddRooms(known_, 1);
        addSquares(2);
    }
    void SetUp() override {
        Bridge::SetUp();
        known_.SetRoomID(L"17-K3");
        known_.Geometry->SetTypeAndValue(CalculationByFile, L"missing.txt");
    }
    int callsOfWriting() {
        prepare();
        host_->resetCalls();
        write();
        return host_->calls();
    }
    int callsOfReading() {
        prepare();
        host_->resetCalls();
        read();
        return host_->calls();
    }
    // Natively every call meets every fault; here each fault meets calls of every kind. One by one
    // there are many calls of a kind.
    static int step() { return plain() ? 13 : 4; }
    clsRoom known_;
};

TEST_P(Faults, WhicheverCallOfAWritingFailsTheNextWritingWorks) {
    const int calls = callsOfWriting();
    ASSERT_GT(calls, 25);
    for (const wchar_t* mode : {L"fail", L"empty", L"later"}) {
        const bool swallows = std::wstring(mode) == L"empty" && !plain();
        int doubled = 0;
        for (int n = 1; n <= calls; n += swallows ? 1 : step()) {
            prepare();
            host_->failAt(n, mode, std::wstring(mode) == L"later" ? L"1" : L"no");
            try {
                write();
                if (std::wstring(mode) == L"later") {
                    EXPECT_EQ(elements(), 4) << n;
                }
            } catch (const RuntimeError& error) {
                EXPECT_NE(error.number(), 0);
            }
            doubled += elements() > 4;
            EXPECT_GE(elements(), 2) << mode << n;
            expectRestored();
            EXPECT_EQ(floors_.GetCountOfRooms(), 3);
            EXPECT_EQ(room(1).GetRoomID(), L"17-K3");
            host_->clearFaults();
            const ExportCounts next = write();
            EXPECT_EQ(next.updated, 1) << mode << n;
            EXPECT_EQ(next.placed, 2) << mode << n;
            EXPECT_EQ(next.atPosition, 0) << mode << n;
        }
        // Whatever failed, no room of the drawing was made twice; only a host that swallows the
        // selection of rooms without a word, and then says that it has none, cannot be told from
        // an empty drawing.
        // Nor can an element whose single values are swallowed be told from others.
        if (!plain() || std::wstring(mode) != L"empty") {
            EXPECT_EQ(doubled, std::wstring(mode) == L"empty" ? 1 : 0) << mode;
        }
    }
}

TEST_P(Faults, WhicheverCallOfAReadingFailsTheWalkGoesOn) {
    const int calls = callsOfReading();
    ASSERT_GT(calls, 12);
    for (const wchar_t* mode : {L"fail", L"empty", L"later"}) {
        for (int n = 1; n <= calls; n += step()) {
            prepare();
            host_->failAt(n, mode, std::wstring(mode) == L"later" ? L"1" : L"no");
            read();
            expectRestored();
            if (std::wstring(mode) == L"later") {
                EXPECT_EQ(floors_.GetCountOfRooms(), 2) << n;
            }
            EXPECT_LE(floors_.GetCountOfRooms(), 2);
            host_->clearFaults();
            read();
            EXPECT_EQ(floors_.GetCountOfRooms(), 2) << mode << n;
        }
    }
}

TEST_P(Faults, AHostThatKeepsRejectingIsGivenUpAfterABoundedWait) {
    prepare();
    for (const wchar_t* mode : {L"reject", L"later"}) {
        host_->failAt(3, mode, L"100000");
        EXPECT_THROW(write(), RuntimeError);
        read();
        expectRestored();
        prepare();
        EXPECT_EQ(write().placed, 2);
    }
}

TEST_P(Faults, WhicheverCallStallsIsWaitedFor) {
    // However long: rejected calls alone have a limit.
    prepare();
    host_->failAt(5, L"stall", L"2000");
    EXPECT_EQ(write().placed, 2);
    const int writing = callsOfWriting();
    for (int n = 1; n <= writing; n += step()) {
        prepare();
        host_->failAt(n, L"stall", L"150");
        const ExportCounts counts = write();
        EXPECT_EQ(counts.updated, 1) << n;
        EXPECT_EQ(counts.placed, 2) << n;
        expectRestored();
    }
    const int reading = callsOfReading();
    for (int n = 1; n <= reading; n += step()) {
        prepare();
        host_->failAt(n, L"stall", L"150");
        read();
        EXPECT_EQ(floors_.GetCountOfRooms(), 2) << n;
        expectRestored();
    }
}

TEST_P(Faults, AHostThatEndsInTheMiddleIsLeftAndAFreshOneServesTheNextCommand) {
    const int writing = callsOfWriting();
    const int reading = callsOfReading();
    const auto afterwards = [&](bool wasWriting, int n) {
        expectRestored();
        host_->process().waitForEnd();
        host_ = std::make_unique<PracticeHostProcess>();
        host_->control().call(L"Plain", plain());
        host_->load(
            schoolOf({roomElement(17, 3, L"A", L"EG"), roomElement(18, 3, L"B", L"EG", 10)}));
        floors_ = clsFloors();
        floors_.AddRooms(known_, 1);
        addSquares(2);
        const ExportCounts counts = write();
        EXPECT_EQ(counts.updated, 1) << wasWriting << ' ' << n;
        EXPECT_EQ(counts.placed, 2) << wasWriting << ' ' << n;
        read();
        EXPECT_EQ(floors_.GetCountOfRooms(), 4) << wasWriting << ' ' << n;
    };
    for (int n = 1; n <= writing; n += step()) {
        prepare();
        host_->failAt(n, L"exit", L"");
        try {
            write();
        } catch (const RuntimeError& error) {
            EXPECT_NE(error.number(), 0);
        }
        EXPECT_EQ(floors_.GetCountOfRooms(), 3);
        afterwards(true, n);
    }
    for (int n = 1; n <= reading; n += step()) {
        prepare();
        host_->failAt(n, L"exit", L"");
        read();
        afterwards(false, n);
    }
}

class Figures : public Bridge {
  protected:
    int callsOfWriting(int rooms, int elements) {
        host_->load(schoolOf(elements));
        bridge();
        floors_ = clsFloors();
        clsRoom known;
        known.SetRoomID(L"1-K3");
        known.Geometry->SetTypeAndValue(CalculationByFile, L"missing.txt");
        floors_.AddRooms(known, 1);
        // Every attribute has to be sent.
        clsRoom room;
        room.Enclosure(L"a");
        room.Occupancy(L"HNF 2");
        room.AreaType(L"N");
        floors_.AddRooms(room, rooms - 1);
        host_->resetCalls();
        write();
        return host_->calls();
    }
    // Rooms that stand in the drawing, and new ones whose outlines come from point files.
    int callsOfWritingInPlace(int known, int polygons) {
        host_->load(schoolOf(known));
        const TemporaryFolder folder;
        const auto points = folder / "points.txt";
        writeBytes(points, "4\r\n0\t0\r\n4\t0\r\n4\t3\r\n0\t3\r\nend\r\n");
        floors_ = clsFloors();
        for (int i = 1; i <= known + polygons; ++i) {
            clsRoom room;
            room.Enclosure(L"b");
            room.Occupancy(L"HNF 3");
            room.AreaType(L"N");
            if (i <= known)
                room.SetRoomID(std::to_wstring(i) + L"-K3");
            room.Geometry->SetTypeAndValue(CalculationByFile, points.wstring());
            floors_.AddRooms(room, 1);
        }
        host_->resetCalls();
        const ExportCounts counts = write();
        EXPECT_EQ(counts.updated, known);
        EXPECT_EQ(counts.atPosition, polygons);
        return host_->calls();
    }
    int callsOfReading(int elements, int moreAttributes = 0) {
        host_->load(schoolOf(elements, moreAttributes));
        bridge().GetProjectName();
        floors_ = clsFloors();
        host_->resetCalls();
        bridge().ImportFloorsFromKalvero(floors_);
        return host_->calls();
    }
};

TEST_P(Figures, CallsOfAWriting) {
    const int one = callsOfWriting(1, 10);
    const int perRoom = (callsOfWriting(41, 10) - callsOfWriting(21, 10)) / 20;
    const int perElement = (callsOfWriting(1, 110) - one) / 100;
    std::printf("calls of a writing: %d + %d x rooms + %d x elements\n", one - perRoom, perRoom,
                perElement);
    EXPECT_LE(one, plain() ? 80 : 30);
    EXPECT_LE(perRoom, plain() ? 35 : 15);
    // Which element is which.
    EXPECT_EQ(perElement, plain() ? 4 : 0);
    EXPECT_NEAR(callsOfWriting(41, 110), one + 40 * perRoom + 100 * perElement, 3);
    const int perKnown = (callsOfWritingInPlace(40, 1) - callsOfWritingInPlace(20, 1)) / 20;
    const int perPolygon = (callsOfWritingInPlace(1, 40) - callsOfWritingInPlace(1, 20)) / 20;
    std::printf("of these for a room that is updated %d, for one with a point file %d\n", perKnown,
                perPolygon);
    EXPECT_LE(perKnown, plain() ? 40 : 18);
    EXPECT_LE(perPolygon, plain() ? 35 : 15);
}

TEST_P(Figures, CallsOfAReading) {
    const int none = callsOfReading(0);
    const int perElement = (callsOfReading(100) - none) / 100;
    const int perAttribute = (callsOfReading(10, 30) - callsOfReading(10, 0)) / 300;
    std::printf("calls of a reading: %d + %d x elements + %d x attributes\n", none, perElement,
                perAttribute);
    EXPECT_LE(none, 18);
    EXPECT_LE(perElement, plain() ? 23 : 5);
    EXPECT_EQ(perAttribute, plain() ? 4 : 0);
    EXPECT_EQ(callsOfReading(50), none + 50 * perElement);
}

const auto kinds = ::testing::Bool();
const auto nameOf = [](const auto& kind) { return kind.param ? "Plain" : "AtOnce"; };
INSTANTIATE_TEST_SUITE_P(Host, Bridge, kinds, nameOf);
INSTANTIATE_TEST_SUITE_P(Host, Faults, kinds, nameOf);
INSTANTIATE_TEST_SUITE_P(Host, Figures, kinds, nameOf);

} // namespace
} // namespace kalvrooms::testing
