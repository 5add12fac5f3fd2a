// The bridge against a real automation server in a process of its own: every rule that only a call
// across processes can show.

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <sstream>

#include "host/clsKalvero.h"
#include "practice/PracticeHostProcess.h"
#include "support/BridgeContext.h"
#include "support/TemporaryFolder.h"
#include "win32/ComHostServer.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Clock = std::chrono::steady_clock;

std::string element(int id, int fileNumber, const std::string& name, const std::string& storey,
                    double x = 0, int moreAttributes = 0) {
    std::ostringstream more;
    for (int i = 1; i <= moreAttributes; ++i)
        more << R"(,{"name":"Merkmal )" << i << R"(","value":"x"})";
    std::ostringstream json;
    json << R"({"componentId":)" << id << R"(,"fileNumber":)" << fileNumber << R"(,"fileId":"K)"
         << fileNumber << R"(","name":")" << name << R"(","function":"Büro","storey":")" << storey
         << R"(","colour":0,"outline":[[)" << x << ",0],[" << x + 4.5 << ",0],[" << x + 4.5
         << R"(,3],[)" << x << R"(,3]],"attributes":[{"name":"Bodenfläche","value":13.5},)"
         << R"({"name":"Nutzen","value":"HNF 2"},{"name":"Umschließungsart","value":"a"})"
         << more.str() << "]}";
    return json.str();
}

std::string drawingOf(const std::vector<std::string>& elements,
                      const std::filesystem::path& folder = std::filesystem::temp_directory_path() /
                                                            L"quartino-project") {
    std::filesystem::create_directories(folder);
    std::string escaped;
    for (const char c : folder.string())
        escaped += c == '\\' ? std::string("\\\\") : std::string(1, c);
    std::string json =
        R"({"project":{"name":"Schule","folder":")" + escaped + R"(","number":4711},"elements":[)";
    for (std::size_t i = 0; i < elements.size(); ++i)
        json += (i ? "," : "") + elements[i];
    return json + "]}";
}

int countOf(const std::wstring& text, const std::wstring& word) {
    int count = 0;
    for (auto at = text.find(word); at != std::wstring::npos; at = text.find(word, at + 1))
        ++count;
    return count;
}

class Bridge : public ::testing::Test {
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
    }
    void TearDown() override {
        bridge_.reset();
        if (host_->running()) {
            EXPECT_EQ(host_->liveObjects(), 0) << "references left at the host";
        }
    }
    struct Counts {
        std::int32_t placed = 0, updated = 0, setDown = 0;
    };
    clsKalvero& bridge() {
        if (!bridge_)
            bridge_ = context_.bridge();
        return *bridge_;
    }
    Counts write() {
        Counts counts;
        bridge().ExportFloorsToKalvero(floors_, true, context_.asBlock, 1, 1, counts.placed,
                                       counts.updated, counts.setDown);
        return counts;
    }
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
    clsRoom room(std::int32_t index) const {
        clsRoom copy;
        floors_.GetRoomByIndex(index, copy);
        return copy;
    }
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

TEST_F(Bridge, ReadsTheRoomsOfTheDrawing) {
    host_->load(drawingOf({element(17, 3, " Raum 7 ", "OG"), element(18, 2, "B", "EG"),
                           element(19, 0, "kvd", "EG"), element(20, 2, "C", "og")}));
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
    std::ifstream file(std::filesystem::path(first.Geometry->CalculationValue()), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}),
              "4\r\n0\t0\r\n4.5\t0\r\n4.5\t3\r\n0\t3\r\nend\r\n");
    expectRestored();
}

TEST_F(Bridge, WhatWasReadAndChangedGoesBackToTheSameElements) {
    host_->load(drawingOf({element(17, 3, "A", "EG"), element(18, 3, "B", "EG", 10)}));
    const std::wstring before = host_->drawing();
    read();
    std::shared_ptr<clsRoom> stored;
    floors_.GetRoomByID(L"EG", 2, stored);
    stored->Name(L"umbenannt");
    stored->FunctionName(L"Lager");
    stored->Occupancy(L"HNF 4");
    addSquares(2, L"OG");
    const Counts counts = write();
    EXPECT_EQ(counts.updated, 2);
    EXPECT_EQ(counts.placed, 0);
    EXPECT_EQ(counts.setDown, 2);
    read();
    ASSERT_EQ(floors_.GetCountOfRooms(), 4);
    EXPECT_EQ(room(1).Name(), L"umbenannt");
    EXPECT_EQ(room(1).FunctionName(), L"Lager");
    EXPECT_EQ(room(1).Occupancy(), L"HNF 4");
    EXPECT_EQ(room(1).Geometry->Area(), 13.5);
    EXPECT_EQ(room(2).Name(), L"B");
    EXPECT_EQ(room(3).Geometry->Area(), 16);
    // The rooms of the last writing are known now.
    const Counts again = write();
    EXPECT_EQ(again.updated, 4);
    EXPECT_EQ(again.placed, 0);
    EXPECT_EQ(again.setDown, 0);
    EXPECT_EQ(countOf(host_->drawing(), L"\"componentId\""), 4);
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Bridge, AHostWithoutTablesIsAskedOneByOne) {
    server_ = MakeComHostServer(session_, HostBulkMembers{nullptr, nullptr, nullptr});
    BridgeContext context(*server_);
    {
        const auto bridge = context.bridge();
        host_->load(drawingOf({element(17, 3, "A", "EG"), element(18, 0, "kvd", "EG")}));
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
        Counts counts;
        bridge->ExportFloorsToKalvero(floors_, true, true, 1, 1, counts.placed, counts.updated,
                                      counts.setDown);
        EXPECT_EQ(counts.updated, 1);
    }
}

TEST_F(Bridge, APointFileThatCannotBeWrittenCostsOnlyTheOutline) {
    host_->load(drawingOf({element(17, 3, "A", "EG"), element(18, 3, "B", "EG"),
                           element(19, 3, "C", "EG"), element(20, 3, "D", "EG")}));
    const auto folder = std::filesystem::temp_directory_path() / L"quartino-project";
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
    EXPECT_THAT(context_.prompts(), IsEmpty());
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
    EXPECT_EQ(countOf(host_->drawing(), L"\"componentId\""), 4);
}

TEST_F(Bridge, AProjectFolderThatCannotHoldFilesCostsOnlyTheOutlines) {
    for (const std::string& name : {std::string(300, 'x'), std::string("Projekt \\u03a9\\u4e2d"),
                                    std::string("fehlt\\\\ganz"), std::string("a<b>|c")}) {
        host_->load(R"({"project":{"name":"S","folder":"C:\\)" + name +
                    R"(","number":1},"elements":[)" + element(17, 3, "A", "EG") + "]}");
        read();
        ASSERT_EQ(floors_.GetCountOfRooms(), 1) << name;
        EXPECT_EQ(room(1).Geometry->Area(), 13.5);
        EXPECT_EQ(room(1).Geometry->Info(), L"polygonal");
        EXPECT_EQ(write().updated, 1);
        EXPECT_EQ(countOf(host_->drawing(), L"\"componentId\""), 1);
    }
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Bridge, AFolderBeyondTheCodePageHoldsPointFiles) {
    const std::filesystem::path folder = L"C:\\Projekt \u03a9\u4e2d";
    std::filesystem::create_directories(folder);
    host_->load(
        R"({"project":{"name":"S","folder":"C:\\Projekt \u03a9\u4e2d","number":1},"elements":[)" +
        element(17, 3, "A", "EG") + "]}");
    read();
    ASSERT_EQ(floors_.GetCountOfRooms(), 1);
    EXPECT_TRUE(std::filesystem::exists(folder / L"3-17.txt"));
    EXPECT_EQ(write().updated, 1);
    std::filesystem::remove_all(folder);
}

TEST_F(Bridge, AHundredAndFiftyRoomsGoIntoTheDrawing) {
    host_->load(drawingOf({}));
    addSquares(150);
    EXPECT_EQ(write().setDown, 150);
    EXPECT_EQ(countOf(host_->drawing(), L"\"componentId\""), 150);
    addSquares(1);
    EXPECT_EQ(write().setDown, 0);
    EXPECT_THAT(context_.prompts(), SizeIs(1));
}

TEST_F(Bridge, SingleRoomsAreSetDownOneBesideTheOther) {
    host_->load(drawingOf({}));
    context_.asBlock = false;
    addSquares(3);
    EXPECT_EQ(write().setDown, 3);
    EXPECT_EQ(countOf(host_->drawing(), L"\"mode\""), 3);
}

TEST_F(Bridge, ABusyHostIsNotDisturbed) {
    host_->load(drawingOf({element(17, 3, "A", "EG")}));
    addSquares(1);
    host_->state(L"menu");
    EXPECT_EQ(write().setDown, 0);
    floors_ = clsFloors();
    bridge().ImportFloorsFromKalvero(floors_);
    EXPECT_EQ(floors_.GetCountOfRooms(), 0);
    addSquares(1);
    host_->state(L"kvd");
    EXPECT_EQ(write().setDown, 0);
    EXPECT_THAT(context_.prompts(),
                ElementsAre(L" Bitte beenden Sie die Menüaktion.",
                            L" Bitte beenden Sie die Menüaktion.",
                            L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte "
                            L"schließen Sie alle KVD-Dateien."));
    EXPECT_EQ(countOf(host_->drawing(), L"\"componentId\""), 1);
    expectRestored();
}

// A drawing and a list in which every kind of call occurs.
class Faults : public Bridge {
  protected:
    void prepare() {
        host_->clearFaults();
        host_->load(drawingOf({element(17, 3, "A", "EG"), element(18, 3, "B", "EG", 10)}));
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
    clsRoom known_;
};

TEST_F(Faults, WhicheverCallOfAWritingFailsTheNextWritingWorks) {
    const int calls = callsOfWriting();
    ASSERT_GT(calls, 25);
    for (const wchar_t* mode : {L"fail", L"empty", L"later"}) {
        int doubled = 0;
        for (int n = 1; n <= calls; ++n) {
            prepare();
            host_->failAt(n, mode, std::wstring(mode) == L"later" ? L"1" : L"no");
            try {
                write();
                if (std::wstring(mode) == L"later") {
                    EXPECT_EQ(countOf(host_->drawing(), L"\"componentId\""), 4) << n;
                }
            } catch (const RuntimeError& error) {
                EXPECT_NE(error.number(), 0);
            }
            doubled += countOf(host_->drawing(), L"\"componentId\"") > 4;
            EXPECT_GE(countOf(host_->drawing(), L"\"componentId\""), 2) << mode << n;
            expectRestored();
            EXPECT_EQ(floors_.GetCountOfRooms(), 3);
            EXPECT_EQ(room(1).GetRoomID(), L"17-K3");
            host_->clearFaults();
            const Counts next = write();
            EXPECT_EQ(next.updated, 1) << mode << n;
            EXPECT_EQ(next.setDown, 2) << mode << n;
            EXPECT_EQ(next.placed, 0) << mode << n;
        }
        // Whatever failed, no room of the drawing was made twice; only a host that swallows the
        // selection of rooms without a word, and then says that it has none, cannot be told from
        // an empty drawing.
        EXPECT_EQ(doubled, std::wstring(mode) == L"empty" ? 1 : 0) << mode;
    }
}

TEST_F(Faults, WhicheverCallOfAReadingFailsTheWalkGoesOn) {
    const int calls = callsOfReading();
    ASSERT_GT(calls, 12);
    for (const wchar_t* mode : {L"fail", L"empty", L"later"}) {
        for (int n = 1; n <= calls; ++n) {
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

TEST_F(Faults, AHostThatKeepsRejectingIsGivenUpAfterABoundedWait) {
    prepare();
    for (const wchar_t* mode : {L"reject", L"later"}) {
        host_->failAt(3, mode, L"100000");
        constexpr auto bound = std::chrono::seconds(8);
        auto start = Clock::now();
        EXPECT_THROW(write(), RuntimeError);
        EXPECT_LT(Clock::now() - start, bound) << mode;
        start = Clock::now();
        read();
        EXPECT_LT(Clock::now() - start, bound) << mode;
        expectRestored();
        prepare();
        EXPECT_EQ(write().setDown, 2);
    }
}

TEST_F(Faults, AStallingHostIsWaitedFor) {
    prepare();
    host_->failAt(5, L"stall", L"2000");
    EXPECT_EQ(write().setDown, 2);
    expectRestored();
    host_->failAt(5, L"stall", L"2000");
    read();
    EXPECT_EQ(floors_.GetCountOfRooms(), 4);
}

TEST_F(Faults, WhicheverCallStallsIsWaitedFor) {
    const int writing = callsOfWriting();
    for (int n = 1; n <= writing; ++n) {
        prepare();
        host_->failAt(n, L"stall", L"150");
        const Counts counts = write();
        EXPECT_EQ(counts.updated, 1) << n;
        EXPECT_EQ(counts.setDown, 2) << n;
        expectRestored();
    }
    const int reading = callsOfReading();
    for (int n = 1; n <= reading; ++n) {
        prepare();
        host_->failAt(n, L"stall", L"150");
        read();
        EXPECT_EQ(floors_.GetCountOfRooms(), 2) << n;
        expectRestored();
    }
}

TEST_F(Faults, AHostThatEndsInTheMiddleIsLeftAndAFreshOneServesTheNextCommand) {
    const int writing = callsOfWriting();
    const int reading = callsOfReading();
    const auto afterwards = [&](bool wasWriting, int n) {
        expectRestored();
        host_->waitForEnd();
        host_ = std::make_unique<PracticeHostProcess>();
        host_->load(drawingOf({element(17, 3, "A", "EG"), element(18, 3, "B", "EG", 10)}));
        floors_ = clsFloors();
        floors_.AddRooms(known_, 1);
        addSquares(2);
        const Counts counts = write();
        EXPECT_EQ(counts.updated, 1) << wasWriting << ' ' << n;
        EXPECT_EQ(counts.setDown, 2) << wasWriting << ' ' << n;
        read();
        EXPECT_EQ(floors_.GetCountOfRooms(), 4) << wasWriting << ' ' << n;
    };
    for (int n = 1; n <= writing; ++n) {
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
    for (int n = 1; n <= reading; ++n) {
        prepare();
        host_->failAt(n, L"exit", L"");
        read();
        afterwards(false, n);
    }
}

class Figures : public Bridge {
  protected:
    int callsOfWriting(int rooms, int elements) {
        std::vector<std::string> standing;
        for (int i = 1; i <= elements; ++i)
            standing.push_back(element(i, 3, "A", "EG"));
        host_->load(drawingOf(standing));
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
        std::vector<std::string> standing;
        for (int i = 1; i <= known; ++i)
            standing.push_back(element(i, 3, "A", "EG"));
        host_->load(drawingOf(standing));
        const auto points = temporaryFolder("quartino-points.txt");
        std::ofstream(points, std::ios::binary) << "4\r\n0\t0\r\n4\t0\r\n4\t3\r\n0\t3\r\nend\r\n";
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
        const Counts counts = write();
        EXPECT_EQ(counts.updated, known);
        EXPECT_EQ(counts.placed, polygons);
        std::filesystem::remove(points);
        return host_->calls();
    }
    int callsOfReading(int elements, int moreAttributes = 0) {
        std::vector<std::string> standing;
        for (int i = 1; i <= elements; ++i)
            standing.push_back(element(i, 3, "A", "EG", 0, moreAttributes));
        host_->load(drawingOf(standing));
        bridge().GetProjectName();
        floors_ = clsFloors();
        host_->resetCalls();
        bridge().ImportFloorsFromKalvero(floors_);
        return host_->calls();
    }
};

TEST_F(Figures, CallsOfAWriting) {
    const int one = callsOfWriting(1, 10);
    const int perRoom = (callsOfWriting(101, 10) - callsOfWriting(51, 10)) / 50;
    const int perElement = (callsOfWriting(1, 1010) - one) / 1000;
    std::printf("calls of a writing: %d + %d x rooms + %d x elements\n", one - perRoom, perRoom,
                perElement);
    EXPECT_LE(one, 30);
    EXPECT_LE(perRoom, 15);
    EXPECT_EQ(perElement, 0);
    EXPECT_NEAR(callsOfWriting(101, 1010), one + 100 * perRoom, 3);
    const int perKnown = (callsOfWritingInPlace(100, 1) - callsOfWritingInPlace(50, 1)) / 50;
    const int perPolygon = (callsOfWritingInPlace(1, 100) - callsOfWritingInPlace(1, 50)) / 50;
    std::printf("of these for a room that is updated %d, for one with a point file %d\n", perKnown,
                perPolygon);
    EXPECT_LE(perKnown, 15);
    EXPECT_LE(perPolygon, 15);
}

TEST_F(Figures, CallsOfAReading) {
    const int none = callsOfReading(0);
    const int perElement = (callsOfReading(100) - none) / 100;
    const int perAttribute = (callsOfReading(10, 30) - callsOfReading(10, 0)) / 300;
    std::printf("calls of a reading: %d + %d x elements + %d x attributes\n", none, perElement,
                perAttribute);
    EXPECT_LE(none, 16);
    EXPECT_LE(perElement, 5);
    EXPECT_EQ(perAttribute, 0);
    EXPECT_EQ(callsOfReading(50), none + 50 * perElement);
}

TEST_F(Figures, TimeOfReadingFiveThousandElements) {
    // Where the machine has a memory disk: how fast its disk is says nothing about the program.
    std::filesystem::path folder = L"Z:\\dev\\shm";
    if (!std::filesystem::is_directory(folder))
        folder = std::filesystem::temp_directory_path();
    folder /= L"quartino-figures";
    // Once is enough for the long list: the decimal mark has no part in it.
    char mark[8] = "";
    GetLocaleInfoA(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, sizeof mark);
    const int count = mark[0] == ',' ? 5000 : 500;
    std::vector<std::string> standing;
    for (int i = 1; i <= count; ++i)
        standing.push_back(element(i, 3, "A", "EG"));
    host_->load(drawingOf(standing, folder));
    bridge().GetProjectName();
    // Other work of the machine falls into one reading or another; the best one shows our share.
    double share = 1.0;
    for (int reading = 1; reading <= 4 && share >= 0.10; ++reading) {
        floors_ = clsFloors();
        const auto before = session_->TimeInCalls();
        const auto start = Clock::now();
        bridge().ImportFloorsFromKalvero(floors_);
        const double all = std::chrono::duration<double>(Clock::now() - start).count();
        const double calls =
            std::chrono::duration<double>(session_->TimeInCalls() - before).count();
        EXPECT_EQ(floors_.GetCountOfRooms(), count);
        share = std::min(share, (all - calls) / all);
        std::printf("reading %d, %d elements: %.1f s, %.1f %% of it outside host calls\n", reading,
                    count, all, 100 * (all - calls) / all);
    }
    EXPECT_LT(share, 0.10);
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace kalvrooms::testing
