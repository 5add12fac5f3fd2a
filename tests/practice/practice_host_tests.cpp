// What only a process of its own shows of the practice host: registration, the shapes in which its
// values travel, its options, its faults, its window and the program that it starts.

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "practice/PracticeHostProcess.h"
#include "practice/host/ClassIds.h"
#include "practice/host/Commands.h"
#include "support/Drawings.h"
#include "support/TemporaryFolder.h"

namespace kalvrooms::testing {
namespace {

namespace ui = kalvrooms::driver;
using practice::ServerClass;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ui::CallFailed;
using ui::LateBound;

CallFailed failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const CallFailed& failure) {
        return failure;
    }
    return {S_OK, {}};
}

std::string refusalOf(const std::function<void()>& action) {
    return ToUtf8(failureOf(action).description);
}

_variant_t cell(const _variant_t& array, std::vector<LONG> index) {
    _variant_t value;
    if (array.vt == (VT_ARRAY | VT_R8)) {
        value = 0.0;
        SafeArrayGetElement(array.parray, index.data(), &value.dblVal);
    } else {
        SafeArrayGetElement(array.parray, index.data(), &value);
    }
    return value;
}

std::vector<LONG> bounds(const _variant_t& array) {
    std::vector<LONG> bounds;
    for (UINT dimension = 1; dimension <= SafeArrayGetDim(array.parray); ++dimension) {
        LONG lower = 0, upper = 0;
        SafeArrayGetLBound(array.parray, dimension, &lower);
        SafeArrayGetUBound(array.parray, dimension, &upper);
        bounds.insert(bounds.end(), {lower, upper});
    }
    return bounds;
}

Drawing school() {
    Drawing drawing = drawingOf({roomElement(17, 3, L"Klasse 1"), roomElement(18, 0, L"Bestand")});
    drawing.elements[1].outline.clear();
    drawing.elements[1].attributes.clear();
    return drawing;
}

DWORD hostWith(const std::wstring& arguments) {
    return ui::runToItsEnd(practiceHostProgram, arguments);
}

class PracticeHost : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    static void TearDownTestSuite() { CoUninitialize(); }
    static const TemporaryFolder& folder() {
        static const TemporaryFolder folder;
        return folder;
    }

    void start(const std::wstring& arguments = L"--hidden") {
        host = std::make_unique<PracticeHostProcess>(school(), arguments);
        control = host->control();
    }
    static LateBound create(const ServerClass& serverClass) {
        return LateBound::create(serverClass.programId);
    }
    static LateBound service() {
        return create(practice::ApplicationClass).object(L"GetDrawingService");
    }
    static LateBound elements(const LateBound& service) {
        const LateBound filter = create(practice::RoomFilterClass);
        filter.call(L"SelectRooms");
        return service.object(L"GetElements", filter);
    }
    // A new room of the service, alone in a list; 4 m wide.
    static LateBound newRoom(const LateBound& service) {
        const LateBound room = service.object(L"CreateRoomElement");
        SAFEARRAYBOUND size[] = {{2, 0}, {4, 0}};
        _variant_t outline;
        outline.vt = VT_ARRAY | VT_R8;
        outline.parray = SafeArrayCreate(VT_R8, 2, size);
        const double points[4][2] = {{0, 0}, {4, 0}, {4, 2}, {0, 2}};
        for (LONG point = 0; point < 4; ++point) {
            for (LONG axis = 0; axis < 2; ++axis) {
                LONG index[] = {axis, point};
                double value = points[point][axis];
                SafeArrayPutElement(outline.parray, index, &value);
            }
        }
        room.put(L"Outline", outline);
        const LateBound list = service.object(L"CreateElementList");
        list.call(L"Add", room);
        return list;
    }

    std::unique_ptr<PracticeHostProcess> host;
    LateBound control;
};

// --- registration and options -------------------------------------------------------------------

TEST_F(PracticeHost, RegistersItsClassesAndTakesThemBack) {
    CLSID id{};
    EXPECT_EQ(hostWith(L"--register"), 0u);
    for (const ServerClass* serverClass : practice::ServerClasses) {
        ASSERT_EQ(CLSIDFromProgID(serverClass->programId, &id), S_OK);
        EXPECT_TRUE(IsEqualCLSID(id, serverClass->id));
    }
    for (int time = 0; time < 2; ++time)
        EXPECT_EQ(hostWith(L"--unregister"), 0u);
    for (const ServerClass* serverClass : practice::ServerClasses)
        EXPECT_NE(CLSIDFromProgID(serverClass->programId, &id), S_OK);
    EXPECT_EQ(hostWith(L"--register"), 0u);
    PracticeHostProcess::doNotStartBySystem();
}

TEST_F(PracticeHost, IsKnownWhileItRunsWhereNobodyElseIs) {
    CLSID id{};
    const auto known = [&] {
        return CLSIDFromProgID(practice::RoomFilterClass.programId, &id) == S_OK;
    };
    const auto run = [] {
        auto process = std::make_unique<ui::Process>(
            L"\"" + (ui::binFolder() / practiceHostProgram).wstring() +
            L"\" --known-while-running");
        ui::waitForWindow("the drawing", *process,
                          [](HWND shown) { return ui::textOf(shown).starts_with(L"Kalvero"); });
        return process;
    };
    const auto close = [](const ui::Process& process) {
        for (const HWND window : ui::windowsOf(process.id()))
            PostMessageW(window, WM_CLOSE, 0, 0);
        return process.waitForEnd();
    };
    EXPECT_EQ(hostWith(L"--unregister"), 0u);
    const auto first = run();
    const auto second = run();
    EXPECT_TRUE(known());
    EXPECT_EQ(close(*first), 0u);
    EXPECT_TRUE(known());
    EXPECT_EQ(close(*second), 0u);
    EXPECT_FALSE(known());

    // One of the names belongs to another program: nothing of it is touched.
    const std::wstring key =
        L"Software\\Classes\\" + std::wstring(practice::RoomFilterClass.programId);
    const std::wstring other = L"{00020000-0000-0000-C000-000000000046}";
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
        RegSetKeyValueW(root, (key + L"\\CLSID").c_str(), nullptr, REG_SZ, other.c_str(),
                        static_cast<DWORD>((other.size() + 1) * sizeof(wchar_t)));
    for (const auto& [option, code] : {std::pair{L"--hidden --known-while-running", 2u},
                                       {L"--register", 2u},
                                       {L"--unregister", 0u}}) {
        EXPECT_EQ(hostWith(option), code);
        ASSERT_TRUE(known());
        EXPECT_EQ(id.Data1, 0x20000u);
    }
    EXPECT_NE(CLSIDFromProgID(practice::ApplicationClass.programId, &id), S_OK);
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
        RegDeleteTreeW(root, key.c_str());

    EXPECT_EQ(hostWith(L"--register"), 0u);
    PracticeHostProcess::doNotStartBySystem();
}

TEST_F(PracticeHost, RefusesWhatItCannotReadOrOpen) {
    EXPECT_EQ(hostWith(L"--moon"), 2u);
    EXPECT_EQ(hostWith(L"--hidden --drawing Z:\\gibt\\es\\nicht.json"), 2u);
    EXPECT_EQ(hostWith(L"--hidden --quit-with-client --start Z:\\gibt\\es\\nicht.exe"), 2u);
}

TEST_F(PracticeHost, PlacesUnattendedAndWritesItsFilesAtEveryApply) {
    const auto saved = folder() / L"nachher ö.json";
    const auto svg = folder() / L"nachher.svg";
    start(L"--hidden --place 100.5,-20 --save \"" + saved.wstring() + L"\" --svg \"" +
          svg.wstring() + L"\" --project-folder D:\\Projekt");
    EXPECT_FALSE(std::filesystem::exists(saved));
    EXPECT_EQ(host->drawing().project.folder, L"D:\\Projekt");
    {
        const LateBound drawing = service();
        for (int room = 0; room < 2; ++room)
            drawing.call(L"PlaceElements", newRoom(drawing), 10);
        drawing.call(L"ApplyChanges");
    }
    const Drawing placed = LoadDrawing(saved);
    ASSERT_EQ(placed.placements.size(), 2u);
    EXPECT_EQ(placed.placements[0].at, (Point{100.5, -20}));
    EXPECT_EQ(placed.elements[3].outline[0], placed.placements[1].at);
    EXPECT_THAT(readBytes(svg), HasSubstr("</svg>"));

    std::filesystem::remove(saved);
    control.call(L"Quit");
    control = {};
    EXPECT_EQ(host->process().waitForEnd(), 0u);
    EXPECT_EQ(LoadDrawing(saved).elements.size(), 4u);
}

TEST_F(PracticeHost, TheProbeFindsEveryNameThatTheProgramCalls) {
    start();
    EXPECT_EQ(ui::runToItsEnd(L"QuartinoProbe.exe", L""), 0u);
    EXPECT_EQ(ui::runToItsEnd(L"QuartinoProbe.exe", L"KEINSERVER"), 2u);
    // Without a room nobody can be asked for the names of elements.
    host->load(drawingOf({}));
    EXPECT_EQ(ui::runToItsEnd(L"QuartinoProbe.exe", L""), 1u);
}

// --- its objects --------------------------------------------------------------------------------

TEST_F(PracticeHost, TablesAndOutlinesTravelInTheirShapes) {
    start();
    const LateBound list = elements(service());
    const _variant_t identities = list.get(L"IdentityTable");
    EXPECT_EQ(identities.vt, VT_ARRAY | VT_VARIANT);
    EXPECT_THAT(bounds(identities), ElementsAre(1, 2, 1, 3));
    EXPECT_EQ(cell(identities, {2, 1}), _variant_t(18L));
    EXPECT_EQ(cell(identities, {1, 3}), _variant_t(L"K3"));

    const LateBound room = list.object(L"Item", 1);
    const _variant_t record = room.get(L"RoomRecord");
    EXPECT_THAT(bounds(record), ElementsAre(0, 5));
    EXPECT_EQ(cell(record, {3}), _variant_t(L"Klasse 1"));
    // The first point is repeated.
    const _variant_t outline = room.get(L"Outline");
    EXPECT_EQ(outline.vt, VT_ARRAY | VT_R8);
    EXPECT_THAT(bounds(outline), ElementsAre(0, 1, 0, 4));
    EXPECT_EQ(cell(outline, {0, 1}), _variant_t(4.5));
    EXPECT_EQ(cell(outline, {0, 4}), cell(outline, {0, 0}));
    const _variant_t attributes = room.object(L"Attributes").get(L"AttributeTable");
    EXPECT_THAT(bounds(attributes), ElementsAre(1, 3, 1, 3));
    EXPECT_EQ(cell(attributes, {1, 2}), _variant_t(13.5));
    EXPECT_EQ(cell(attributes, {2, 2}), _variant_t(0.0));
    EXPECT_EQ(cell(attributes, {2, 3}), _variant_t(L"HNF 2"));

    const LateBound bare = list.object(L"Item", 2);
    EXPECT_EQ(bare.get(L"Outline").vt, VT_EMPTY);
    EXPECT_EQ(bare.object(L"Attributes").get(L"AttributeTable").vt, VT_EMPTY);
}

TEST_F(PracticeHost, RefusesCallsThatDoNotFit) {
    start();
    const LateBound drawing = service();
    const LateBound list = elements(drawing);
    const auto resultOf = [](const auto& action) { return failureOf(action).result; };
    EXPECT_EQ(resultOf([&] { list.call(L"Dance"); }), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(resultOf([&] { list.put(L"Count", 1); }), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(resultOf([&] { list.call(L"Count"); }), DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(resultOf([&] { list.call(L"Item"); }), DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(resultOf([&] { list.call(L"Item", L"eins"); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(resultOf([&] { list.call(L"Add", drawing); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(resultOf([&] { drawing.call(L"GetElements", _variant_t()); }), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(resultOf([&] { list.object(L"Item", 1).put(L"Outline", L"rund"); }),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(refusalOf([&] { list.call(L"Item", 0); }), "There is no item 0 in the list.");
    EXPECT_EQ(resultOf([&] { list.call(L"Item", 3); }), DISP_E_EXCEPTION);
    EXPECT_EQ(
        refusalOf([&] { create(practice::AttributeCatalogueClass).call(L"AttributeName", 1000); }),
        "The catalogue has no attribute 1000.");
}

TEST_F(PracticeHost, CountsTheCallsOfItsObjectsButNotOfTheControl) {
    start();
    control.call(L"ResetCallCount");
    {
        const LateBound list = elements(service());
        list.get(L"Count");
        list.get(L"Count");
        EXPECT_EQ(control.number(L"LiveObjects"), 1);
    }
    EXPECT_EQ(host->liveObjects(), 0);
    EXPECT_EQ(host->calls(), 5);
    EXPECT_EQ(control.text(L"CallReport"), L"KalvApplication.GetDrawingService=1\n"
                                           L"KalvDrawingService.GetElements=1\n"
                                           L"KalvElementList.Count=2\n"
                                           L"KalvRoomFilter.SelectRooms=1\n");
    control.call(L"ResetCallCount");
    EXPECT_EQ(host->calls(), 0);
    EXPECT_EQ(control.text(L"CallReport"), L"");
}

// --- steering it --------------------------------------------------------------------------------

TEST_F(PracticeHost, TheControlLoadsSavesAndPlaces) {
    start();
    host->load(drawingOf({}));
    EXPECT_THAT(refusalOf([&] { control.call(L"LoadDrawing", L"Z:\\gibt\\es\\nicht"); }),
                HasSubstr("cannot be opened"));
    EXPECT_EQ(host->drawing().project.name, L"Schule");
    EXPECT_TRUE(host->drawing().elements.empty());

    const LateBound drawing = service();
    const LateBound list = newRoom(drawing);
    EXPECT_THAT(refusalOf([&] { drawing.call(L"PlaceElements", list, 10); }),
                HasSubstr("no window"));
    control.call(L"PlaceAt", 1.5, 2);
    drawing.call(L"PlaceElements", list, 10);
    drawing.call(L"ApplyChanges");
    EXPECT_EQ(host->drawing().placements.at(0).at, (Point{1.5, 2}));
    control.call(L"PlaceByClick");
    EXPECT_THAT(refusalOf([&] { drawing.call(L"PlaceElements", newRoom(drawing), 10); }),
                HasSubstr("no window"));

    const auto copy = folder() / L"kopie.json", svg = folder() / L"kopie.svg";
    control.call(L"SaveDrawing", copy.wstring());
    EXPECT_EQ(LoadDrawing(copy).elements.size(), 1u);
    control.call(L"ExportSvg", svg.wstring());
    EXPECT_THAT(readBytes(svg), HasSubstr("<polygon"));
}

TEST_F(PracticeHost, ForbidsAccessInItsStates) {
    start(L"--hidden --state menu");
    const LateBound application = create(practice::ApplicationClass);
    const auto refusal = [&] { return refusalOf([&] { application.call(L"CheckAccess"); }); };
    EXPECT_EQ(refusal(), "Please terminate the menue interaction first.");
    host->state(L"kvd");
    EXPECT_EQ(refusal(), "Access denied: any Kvd or free plan is open.");
    control.call(L"SetCreationError", L"any Kvd or free plan");
    EXPECT_EQ(refusal(), "any Kvd or free plan");
    control.call(L"SetCreationError", L"");
    host->state(L"");
    EXPECT_EQ(refusal(), "");
    EXPECT_EQ(failureOf([&] { host->state(L"moon"); }).result, DISP_E_EXCEPTION);
}

TEST_F(PracticeHost, PlainItKnowsNothingOfOurOwnInventionAndRefusesTheCreation) {
    start(L"--hidden --plain --state menu");
    EXPECT_TRUE(FAILED(failureOf([&] { create(practice::ApplicationClass); }).result));
    host->state(L"");
    const LateBound application = create(practice::ApplicationClass);
    const LateBound list = elements(service());
    const LateBound room = list.object(L"Item", 1);
    const auto unknown = [](const auto& action) {
        EXPECT_EQ(failureOf(action).result, DISP_E_UNKNOWNNAME);
    };
    unknown([&] { application.call(L"CheckAccess"); });
    unknown([&] { list.get(L"IdentityTable"); });
    unknown([&] { room.get(L"RoomRecord"); });
    unknown([&] { room.object(L"Attributes").get(L"AttributeTable"); });
    control.call(L"Plain", false);
    application.call(L"CheckAccess");
    EXPECT_EQ(room.get(L"RoomRecord").vt, VT_ARRAY | VT_VARIANT);
}

TEST_F(PracticeHost, SuffersFaults) {
    start(L"--hidden --fail-at \"2:fail:hier nicht: ä\"");
    const LateBound application = create(practice::ApplicationClass);
    const auto check = [&] { return failureOf([&] { application.call(L"CheckAccess"); }); };
    EXPECT_EQ(check().result, S_OK);
    const CallFailed failure = check();
    EXPECT_EQ(failure.result, DISP_E_EXCEPTION);
    EXPECT_EQ(failure.description, L"hier nicht: ä");

    host->failMember(L"KalvApplication.GetProject", L"empty", L"");
    EXPECT_EQ(application.call(L"GetProject").vt, VT_EMPTY);
    EXPECT_EQ(application.call(L"GetProject").vt, VT_DISPATCH);
    control.call(L"FailAt", 1, L"reject", 2);
    EXPECT_EQ(check().result, RPC_E_CALL_REJECTED);
    EXPECT_EQ(check().result, RPC_E_CALL_REJECTED);
    EXPECT_EQ(check().result, S_OK);
    host->failMember(L"CheckAccess", L"later", L"");
    EXPECT_EQ(check().result, RPC_E_SERVERCALL_RETRYLATER);
    host->failAt(1, L"later", L"3");
    host->clearFaults();
    EXPECT_EQ(check().result, S_OK);
    EXPECT_EQ(failureOf([&] { host->failAt(1, L"moon", L""); }).result, DISP_E_EXCEPTION);
    EXPECT_EQ(failureOf([&] { host->failAt(1, L"stall", L"never"); }).result, DISP_E_EXCEPTION);

    host->failAt(1, L"exit", L"");
    EXPECT_TRUE(FAILED(check().result));
    EXPECT_EQ(host->process().waitForEnd(), 3u);
}

TEST_F(PracticeHost, StartedByTheSystemItEndsWithItsLastObject) {
    ASSERT_EQ(hostWith(L"--unregister"), 0u);
    ASSERT_EQ(hostWith(L"--register"), 0u);
    control = create(practice::ControlClass);
    const HANDLE process =
        OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(control.number(L"ProcessId")));
    ASSERT_NE(process, nullptr);
    {
        const LateBound application = create(practice::ApplicationClass);
        control = {};
        application.call(L"CheckAccess");
    }
    ui::waitFor("the end of the host",
                [&] { return WaitForSingleObject(process, 0) == WAIT_OBJECT_0; });
    CloseHandle(process);
    PracticeHostProcess::doNotStartBySystem();
}

// --- its window ---------------------------------------------------------------------------------

class PracticeHostWindow : public PracticeHost {
  protected:
    void SetUp() override {
        start(L"");
        window = ui::waitForWindow("the drawing", host->process(), [](HWND shown) {
            return ui::textOf(shown) == L"Kalvero – Schule";
        });
    }
    // What the user does once the window asks for a place.
    CallFailed placeWhile(const std::function<void()>& action) {
        // The status bar turns amber.
        RECT status{};
        GetClientRect(window, &status);
        MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&status), 2);
        status.top = status.bottom - 3;
        EXPECT_LT(ui::Picture(status).redness(), 10);
        std::thread user([&] {
            ui::waitFor("a question for the place",
                        [&] { return ui::Picture(status).redness() > 10; });
            action();
        });
        const LateBound drawing = service();
        const CallFailed failure =
            failureOf([&] { drawing.call(L"PlaceElements", newRoom(drawing), 10); });
        user.join();
        if (SUCCEEDED(failure.result))
            drawing.call(L"ApplyChanges");
        return failure;
    }

    HWND window = nullptr;
};

TEST_F(PracticeHostWindow, AClickPlacesRooms) {
    const CallFailed failure = placeWhile([this] {
        PostMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(200, 200));
        PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(300, 250));
    });
    EXPECT_EQ(failure.result, S_OK);
    const Drawing drawing = host->drawing();
    ASSERT_EQ(drawing.placements.size(), 1u);
    EXPECT_EQ(drawing.elements[2].outline[0], drawing.placements[0].at);
}

TEST_F(PracticeHostWindow, EscapeCancels) {
    const CallFailed failure =
        placeWhile([this] { PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 0); });
    EXPECT_EQ(failure.result, DISP_E_EXCEPTION);
    EXPECT_THAT(ToUtf8(failure.description), HasSubstr("cancelled"));
    EXPECT_EQ(host->drawing().elements.size(), 2u);
}

TEST_F(PracticeHostWindow, ClosingCancelsAndEndsTheHost) {
    const CallFailed failure = placeWhile([this] { PostMessageW(window, WM_CLOSE, 0, 0); });
    EXPECT_THAT(ToUtf8(failure.description), HasSubstr("cancelled"));
    EXPECT_EQ(host->process().waitForEnd(), 0u);
}

TEST_F(PracticeHostWindow, TheMenuSwitchesTheStates) {
    const LateBound application = create(practice::ApplicationClass);
    const auto refusal = [&] { return refusalOf([&] { application.call(L"CheckAccess"); }); };
    SendMessageW(window, WM_COMMAND, IDC_STATE_MENU, 0);
    EXPECT_THAT(refusal(), HasSubstr("menue"));
    SendMessageW(window, WM_COMMAND, IDC_STATE_KVD, 0);
    EXPECT_THAT(refusal(), HasSubstr("any Kvd"));
    SendMessageW(window, WM_COMMAND, IDC_STATE_KVD, 0);
    EXPECT_EQ(refusal(), "");
}

// --- models -------------------------------------------------------------------------------------

const std::filesystem::path house = QUARTINO_SOURCE_DIR "/examples/haus/haus.ifc";

TEST_F(PracticeHost, AModelIsADrawingThatGoesBackIntoItsFileByteForByte) {
    const auto saved = folder() / L"Haus ö.ifc", shown = folder() / L"haus.json";
    start(L"--hidden --drawing \"" + house.wstring() + L"\" --save \"" + saved.wstring() + L"\"");
    EXPECT_EQ(host->drawing().project.name, L"Haus am Park");
    ASSERT_EQ(host->drawing().elements.size(), 9u);
    EXPECT_EQ(host->drawing().elements[1].function, L"Küche");
    service().call(L"ApplyChanges");
    EXPECT_EQ(readBytes(saved), readBytes(house));
    // Under the other kind's name it becomes a practice drawing; the way back is none.
    control.call(L"SaveDrawing", shown.wstring());
    EXPECT_EQ(LoadDrawing(shown).elements.size(), 9u);
    control.call(L"LoadDrawing", shown.wstring());
    EXPECT_THAT(refusalOf([&] { control.call(L"SaveDrawing", saved.wstring()); }),
                HasSubstr("nicht als Modell"));
    EXPECT_EQ(readBytes(saved), readBytes(house));
    control.call(L"LoadDrawing", house.wstring()); // which is what goes into --save at the end
}

TEST_F(PracticeHostWindow, AFileThatIsDroppedIsOpened) {
    ui::dropFile(window, house);
    ui::waitFor("the model", [&] { return ui::textOf(window) == L"Kalvero – Haus am Park"; });
    EXPECT_EQ(host->drawing().elements.size(), 9u);
    ui::dropFile(window, folder() / L"gibt es nicht.ifc");
    const HWND box = ui::waitForWindow("a message", host->process(), ui::isMessageBox);
    EXPECT_THAT(ToUtf8(ui::messageText(box)), HasSubstr("gibt es nicht.ifc"));
    ui::press(box, IDCANCEL);
    ui::waitUntilGone(box);
    EXPECT_EQ(ui::textOf(window), L"Kalvero – Haus am Park");
}

TEST_F(PracticeHostWindow, WhatAModelHasThatCannotBeReadIsSaid) {
    const auto strange = folder() / L"strange.ifc";
    std::string text = readBytes(house);
    text.replace(text.find("IFCGEOMETRICCURVESET"), 20, "IFCSPIRAL");
    writeBytes(strange, text);
    ui::dropFile(window, strange);
    const HWND box = ui::waitForWindow("a message", host->process(), ui::isMessageBox);
    EXPECT_THAT(ToUtf8(ui::messageText(box)), HasSubstr("nicht alles lesbar (1 Meldung):\nZeile "));
    ui::press(box, IDCANCEL);
    ui::waitUntilGone(box);
    EXPECT_EQ(host->drawing().elements.size(), 9u);
}

TEST_F(PracticeHostWindow, AModelIsShownOneStoreyAfterTheOtherOrWhole) {
    control.call(L"LoadDrawing", house.wstring());
    ui::waitFor("the model", [&] { return ui::textOf(window) == L"Kalvero – Haus am Park"; });
    const auto pictureAfter = [&](int command) {
        SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
        return ui::Picture::ofWindow(window);
    };
    const ui::Picture ground = ui::Picture::ofWindow(window);
    const ui::Picture upper = pictureAfter(IDC_NEXT_STOREY);
    const ui::Picture all = pictureAfter(IDC_ALL_STOREYS);
    EXPECT_FALSE(ground == upper);
    EXPECT_FALSE(upper == all);
    EXPECT_FALSE(ground == all);
    EXPECT_TRUE(pictureAfter(IDC_LAST_STOREY) == upper);
    EXPECT_TRUE(pictureAfter(IDC_LAST_STOREY) == ground);
    // The line of the second storey in the legend.
    RECT client{};
    GetClientRect(window, &client);
    ui::clickAt(window, client.right - 100, 140);
    ui::parkMouse();
    EXPECT_TRUE(ui::Picture::ofWindow(window) == upper);
}

// --- the program that it starts -----------------------------------------------------------------

constexpr const wchar_t* clientVariable = L"PRACTICE_HOST_CLIENT";
constexpr UINT clientExitCode = 7;

// A copy of this program is the host's client when the variable says so: it ends with its own code
// if the host answers it.
const bool actedAsClient = [] {
    if (GetEnvironmentVariableW(clientVariable, nullptr, 0) == 0)
        return false;
    UINT code = clientExitCode;
    try {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        LateBound::create(practice::ApplicationClass.programId).call(L"CheckAccess");
    } catch (const CallFailed&) {
        code = 9;
    }
    ExitProcess(code);
    return true;
}();

TEST_F(PracticeHost, StartsItsClientWithTheHandOverFileAndEndsWithIt) {
    ASSERT_FALSE(actedAsClient);
    std::array<wchar_t, MAX_PATH> self{};
    GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size()));
    const auto program = folder() / L"Quartino.exe";
    std::filesystem::copy_file(self.data(), program);

    SetEnvironmentVariableW(clientVariable, L"1");
    const DWORD code = hostWith(L"--hidden --quit-with-client --language deu --settings-key "
                                L"Software\\Probe --help-file \"C:\\Hilfe\\Übung.chm\" --start \"" +
                                program.wstring() + L"\"");
    SetEnvironmentVariableW(clientVariable, nullptr);
    EXPECT_EQ(code, clientExitCode);
    EXPECT_EQ(readBytes(folder() / L"kalvqtotemp"), "Kalvero practice host\r\nC:\\Hilfe\\\xDC"
                                                    "bung.kalvhelp\r\nSoftware\\Probe\r\ndeu\r\n");

    // Without being told, the manual beside the program, in the program's language if there is one.
    std::ofstream(folder() / L"Quartino_eng.chm").put('x');
    for (const auto& [language, manual] :
         {std::pair{L"eng", "Quartino_eng"}, {L"fra", "Quartino"}}) {
        SetEnvironmentVariableW(clientVariable, L"1");
        hostWith(L"--hidden --quit-with-client --language " + std::wstring(language) +
                 L" --start \"" + program.wstring() + L"\"");
        SetEnvironmentVariableW(clientVariable, nullptr);
        EXPECT_THAT(readBytes(folder() / L"kalvqtotemp"),
                    HasSubstr("\\" + std::string(manual) + ".kalvhelp\r\n"));
    }
}

} // namespace
} // namespace kalvrooms::testing
