// The practice host in a process of its own, called late bound as its clients do.

#include "drawing/DrawingFile.h"
#include "practice/driver/UiDriver.h"
#include "practice/host/ClassIds.h"
#include "practice/host/Commands.h"
#include "practice/host/SafeArrays.h"
#include "practice/server/Com.h"

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace kalvrooms::practice {
namespace {

using testing::HasSubstr;

// --- a late-bound client -------------------------------------------------------------------------

struct CallFailed : ComError {
    CallFailed() : CallFailed(S_OK, {}, {}) {}
    CallFailed(HRESULT outcome, std::wstring source_, std::wstring description_)
        : ComError(outcome), result(outcome), source(std::move(source_)),
          description(std::move(description_)) {}

    HRESULT result;
    std::wstring source;
    std::wstring description;
};

class Client {
  public:
    Client() = default;
    explicit Client(ComPtr<IDispatch> object) : object_(std::move(object)) {}

    static Client Create(const ServerClass& serverClass) {
        CLSID id{};
        Check(CLSIDFromProgID(serverClass.programId, &id));
        ComPtr<IDispatch> object;
        Check(CoCreateInstance(id, nullptr, CLSCTX_LOCAL_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(object.put())));
        return Client(std::move(object));
    }

    bool there() const { return static_cast<bool>(object_); }

    DISPID IdOf(const std::wstring& name) const {
        std::wstring copy = name;
        LPOLESTR text = copy.data();
        DISPID id = DISPID_UNKNOWN;
        const HRESULT result = object_->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
        if (FAILED(result))
            throw CallFailed{result, {}, {}};
        return id;
    }

    template <class... Values>
    Variant Call(const wchar_t* name, Values&&... values) const {
        return Invoke(name, DISPATCH_METHOD, Pack(std::forward<Values>(values)...));
    }
    Variant Get(const wchar_t* name) const { return Invoke(name, DISPATCH_PROPERTYGET, {}); }
    void Put(const wchar_t* name, Variant value) const {
        Invoke(name, DISPATCH_PROPERTYPUT, Pack(std::move(value)));
    }
    template <class... Values>
    Client Object(const wchar_t* name, Values&&... values) const {
        return From(Call(name, std::forward<Values>(values)...));
    }
    Client ObjectOf(const wchar_t* name) const { return From(Get(name)); }
    Variant AsArgument() const { return Variant(object_); }
    IDispatch* get() const { return object_.get(); }

    Variant Invoke(const wchar_t* name, WORD flags, std::vector<Variant> arguments) const {
        // They travel from the last to the first.
        std::vector<VARIANT> values;
        for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument)
            values.push_back(argument->raw());
        DISPID put = DISPID_PROPERTYPUT;
        DISPPARAMS parameters{values.data(), nullptr, static_cast<UINT>(values.size()), 0};
        if (flags == DISPATCH_PROPERTYPUT) {
            parameters.rgdispidNamedArgs = &put;
            parameters.cNamedArgs = 1;
        }
        Variant result;
        EXCEPINFO trouble{};
        UINT wrong = 0;
        const HRESULT outcome = object_->Invoke(
            IdOf(name), IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
            flags == DISPATCH_PROPERTYPUT ? nullptr : result.get(), &trouble, &wrong);
        const CallFailed failure{outcome, TextOf(trouble.bstrSource),
                                 TextOf(trouble.bstrDescription)};
        SysFreeString(trouble.bstrSource);
        SysFreeString(trouble.bstrDescription);
        SysFreeString(trouble.bstrHelpFile);
        if (FAILED(outcome))
            throw failure;
        return result;
    }

  private:
    static Client From(const Variant& value) {
        if (!value.ToObject())
            throw CallFailed{E_POINTER, {}, {}};
        return Client(ComPtr<IDispatch>(value.ToObject()));
    }
    template <class... Values>
    static std::vector<Variant> Pack(Values&&... values) {
        std::vector<Variant> packed;
        (packed.emplace_back(Packed(std::forward<Values>(values))), ...);
        return packed;
    }
    static Variant Packed(const Client& object) { return object.AsArgument(); }
    static Variant Packed(Variant value) { return value; }

    ComPtr<IDispatch> object_;
};

CallFailed FailureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const CallFailed& failure) {
        return failure;
    }
    return {};
}

Variant Cell(const Variant& array, std::vector<LONG> index) {
    Variant value;
    Check(SafeArrayGetElement(array.raw().parray, index.data(), value.get()));
    return value;
}

std::vector<LONG> Bounds(const Variant& array) {
    std::vector<LONG> bounds;
    for (UINT dimension = 1; dimension <= SafeArrayGetDim(array.raw().parray); ++dimension) {
        LONG lower = 0;
        LONG upper = 0;
        Check(SafeArrayGetLBound(array.raw().parray, dimension, &lower));
        Check(SafeArrayGetUBound(array.raw().parray, dimension, &upper));
        bounds.push_back(lower);
        bounds.push_back(upper);
    }
    return bounds;
}

// --- the host's process --------------------------------------------------------------------------

std::wstring HostProgram() {
    const std::wstring path = FromUtf8(KALVERO_PRACTICE);
    std::wstring windowsPath = path.starts_with(L"/") ? L"Z:" + path : path;
    for (wchar_t& letter : windowsPath)
        letter = letter == L'/' ? L'\\' : letter;
    return windowsPath;
}

class Process : public driver::Process {
  public:
    explicit Process(const std::wstring& arguments)
        : driver::Process(L"\"" + HostProgram() + L"\" " + arguments) {}

    bool Ended(DWORD milliseconds) const {
        return WaitForSingleObject(handle(), milliseconds) == WAIT_OBJECT_0;
    }
    int ExitCode() const {
        DWORD code = 0;
        GetExitCodeProcess(handle(), &code);
        return static_cast<int>(code);
    }
    // Its classes are offered before it waits for input the first time.
    void WaitUntilReady() const { WaitForInputIdle(handle(), 20000); }
};

int RunToItsEnd(const std::wstring& arguments) {
    const Process process(arguments);
    EXPECT_TRUE(process.Ended(20000));
    return process.ExitCode();
}

class TemporaryFolder {
  public:
    TemporaryFolder()
        : path_(std::filesystem::temp_directory_path() /
                ("practice-host-" + std::to_string(GetCurrentProcessId()))) {
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    std::filesystem::path operator/(const std::wstring& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

std::string Bytes(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

void WriteText(const std::filesystem::path& file, const std::string& text) {
    std::ofstream(file, std::ios::binary) << text;
}

const char* const School = R"({
 "project": {"name": "Schule Süd", "folder": "C:\\Projekte\\Schule", "number": 4711},
 "attributeNames": {"293": "Bodenfläche", "231": "Umschließungsart", "235": "Nutzen"},
 "elements": [
  {"componentId": 17, "fileNumber": 3, "fileId": "K3", "name": "Klasse 1", "function": "Unterricht",
   "storey": "EG", "colour": 255, "outline": [[0,0],[5,0],[5,2.5],[0,2.5]],
   "attributes": [{"name": "Bodenfläche", "value": 12.5}, {"name": "Nutzen", "value": "2 Büro"}]},
  {"componentId": 18, "fileNumber": 0, "fileId": "", "name": "Bestand", "storey": "OG"}
 ]})";

class PracticeHost : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        apartment_ = std::make_unique<ComApartment>();
        ASSERT_EQ(RunToItsEnd(L"--register"), 0);
    }
    static void TearDownTestSuite() { apartment_.reset(); }

    PracticeHost() { WriteText(folder / L"Schule.json", School); }
    // Never by force: Wine would keep handing out the classes of the killed process.
    ~PracticeHost() override {
        if (process && control.there() && !process->Ended(0)) {
            try {
                control.Call(L"Quit");
                process->Ended(10000);
            } catch (const ComError& error) {
                ADD_FAILURE() << error.what();
            }
        }
        control = Client();
        process.reset();
    }

    void Start(const std::wstring& more = L"--hidden") {
        process = std::make_unique<Process>(L"--drawing \"" + (folder / L"Schule.json").wstring() +
                                            L"\" " + more);
        process->WaitUntilReady();
        control = Client::Create(ControlClass);
        ASSERT_EQ(control.Get(L"ProcessId").ToLong(), static_cast<std::int32_t>(process->id()));
    }
    Client Service() const { return Client::Create(ApplicationClass).Object(L"GetDrawingService"); }
    Client Elements(const Client& service) const {
        const Client filter = Client::Create(RoomFilterClass);
        filter.Call(L"SelectRooms");
        return service.Object(L"GetElements", filter);
    }
    Client NewRoom(const Client& service, double width, double height) const {
        const Client room = service.Object(L"CreateRoomElement");
        room.Put(L"Outline", OutlineArray({{0, 0}, {width, 0}, {width, height}, {0, height}}));
        return room;
    }
    static Client ListOf(const Client& service, std::initializer_list<const Client*> rooms) {
        const Client list = service.Object(L"CreateElementList");
        for (const Client* room : rooms)
            list.Call(L"Add", *room);
        return list;
    }
    Drawing Saved() const { return ReadDrawing(ToUtf8(control.Get(L"DrawingText").ToText())); }

    TemporaryFolder folder;
    std::unique_ptr<Process> process;
    Client control;

  private:
    static inline std::unique_ptr<ComApartment> apartment_;
};

// --- registration and description ----------------------------------------------------------------

TEST_F(PracticeHost, RegistersItsClassesAndTakesThemBack) {
    CLSID id{};
    for (const ServerClass* serverClass : ServerClasses) {
        ASSERT_EQ(CLSIDFromProgID(serverClass->programId, &id), S_OK);
        EXPECT_TRUE(IsEqualCLSID(id, serverClass->id));
    }
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER,
                            L"Software\\Classes\\KALVCOMSERVERLib.KalvApplication\\CLSID", 0,
                            KEY_READ, &key),
              ERROR_SUCCESS);
    RegCloseKey(key);
    ITypeLib* library = nullptr;
    ASSERT_EQ(LoadRegTypeLib(TypeLibraryId, 1, 0, 0, &library), S_OK);
    library->Release();

    EXPECT_EQ(RunToItsEnd(L"--unregister"), 0);
    for (const ServerClass* serverClass : ServerClasses)
        EXPECT_NE(CLSIDFromProgID(serverClass->programId, &id), S_OK);
    EXPECT_NE(LoadRegTypeLib(TypeLibraryId, 1, 0, 0, &library), S_OK);
    EXPECT_EQ(RunToItsEnd(L"--unregister"), 0);
    EXPECT_EQ(RunToItsEnd(L"--register"), 0);
    EXPECT_EQ(CLSIDFromProgID(ControlClass.programId, &id), S_OK);
}

TEST_F(PracticeHost, RefusesWhatItCannotReadOrOpen) {
    EXPECT_EQ(RunToItsEnd(L"--moon"), 2);
    EXPECT_EQ(RunToItsEnd(L"--hidden --drawing Z:\\gibt\\es\\nicht.json"), 2);
    WriteText(folder / L"halb.json", "{\"elements\":[");
    EXPECT_EQ(RunToItsEnd(L"--hidden --drawing \"" + (folder / L"halb.json").wstring() + L"\""), 2);
}

TEST_F(PracticeHost, AnswersEveryMemberOfItsTypeLibrary) {
    Start();
    const Client application = Client::Create(ApplicationClass);
    const Client service = Service();
    const Client elements = Elements(service);
    const Client room = elements.Object(L"Item", Variant(1));
    const Client attributes = room.ObjectOf(L"Attributes");
    const std::map<std::wstring, Client> objects = {
        {L"IKalvApplication", application},
        {L"IKalvProject", application.Object(L"GetProject")},
        {L"IKalvRoomFilter", Client::Create(RoomFilterClass)},
        {L"IKalvAttributeCatalogue", Client::Create(AttributeCatalogueClass)},
        {L"IKalvDrawingService", service},
        {L"IKalvElementList", elements},
        {L"IKalvRoomElement", room},
        {L"IKalvAttributeList", attributes},
        {L"IKalvAttribute", attributes.Object(L"Item", Variant(1))},
        {L"IPracticeControl", control},
    };

    ComPtr<ITypeLib> library;
    ASSERT_EQ(LoadTypeLibEx(HostProgram().c_str(), REGKIND_NONE, library.put()), S_OK);
    Bstr name;
    ASSERT_EQ(library->GetDocumentation(-1, name.put(), nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(name.text(), L"KALVCOMSERVERLib");

    std::set<std::wstring> seen;
    std::set<std::wstring> classes;
    int members = 0;
    for (UINT type = 0; type < library->GetTypeInfoCount(); ++type) {
        ComPtr<ITypeInfo> info;
        ASSERT_EQ(library->GetTypeInfo(type, info.put()), S_OK);
        TYPEATTR* attributesOfType = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attributesOfType), S_OK);
        const TYPEATTR description = *attributesOfType;
        info->ReleaseTypeAttr(attributesOfType);
        ASSERT_EQ(info->GetDocumentation(MEMBERID_NIL, name.put(), nullptr, nullptr, nullptr),
                  S_OK);
        if (description.typekind == TKIND_COCLASS) {
            CLSID id{};
            classes.insert(name.text());
            ASSERT_EQ(CLSIDFromProgID((L"KALVCOMSERVERLib." + name.text()).c_str(), &id), S_OK);
            EXPECT_TRUE(IsEqualCLSID(id, description.guid)) << ToUtf8(name.text());
            continue;
        }
        ASSERT_EQ(description.typekind, TKIND_DISPATCH) << ToUtf8(name.text());
        const auto object = objects.find(name.text());
        ASSERT_NE(object, objects.end()) << ToUtf8(name.text());
        seen.insert(name.text());
        for (UINT member = 0; member < description.cFuncs; ++member) {
            FUNCDESC* function = nullptr;
            ASSERT_EQ(info->GetFuncDesc(member, &function), S_OK);
            const MEMBERID id = function->memid;
            info->ReleaseFuncDesc(function);
            ASSERT_EQ(info->GetDocumentation(id, name.put(), nullptr, nullptr, nullptr), S_OK);
            EXPECT_EQ(object->second.IdOf(name.text()), id) << ToUtf8(name.text());
            ++members;
        }
    }
    EXPECT_EQ(seen.size(), objects.size());
    EXPECT_EQ(classes.size(), ServerClasses.size());
    EXPECT_GT(members, 50);
}

// --- reading -------------------------------------------------------------------------------------

TEST_F(PracticeHost, TellsTheProject) {
    Start();
    const Client application = Client::Create(ApplicationClass);
    application.Call(L"CheckAccess");
    application.Call(L"UpdateProjectInfo");
    const Client project = application.Object(L"GetProject");
    EXPECT_EQ(project.Get(L"ProjectName").ToText(), L"Schule Süd");
    EXPECT_EQ(project.Get(L"ProjectFolder").ToText(), L"C:\\Projekte\\Schule");
    EXPECT_EQ(project.Get(L"ProjectNumber").type(), VT_I4);
    EXPECT_EQ(project.Get(L"ProjectNumber").ToLong(), 4711);
}

TEST_F(PracticeHost, NamesTheAttributesOfItsCatalogue) {
    Start();
    const Client catalogue = Client::Create(AttributeCatalogueClass);
    EXPECT_EQ(catalogue.Call(L"AttributeName", Variant(293)).ToText(), L"Bodenfläche");
    const CallFailed failure = FailureOf([&] { catalogue.Call(L"AttributeName", Variant(232)); });
    EXPECT_EQ(failure.result, DISP_E_EXCEPTION);
    EXPECT_EQ(failure.source, L"Kalvero");
    EXPECT_EQ(failure.description, L"The catalogue has no attribute 232.");
}

TEST_F(PracticeHost, ListsRoomsOnlyThroughAPreparedFilter) {
    Start();
    const Client service = Service();
    const Client filter = Client::Create(RoomFilterClass);
    EXPECT_EQ(service.Object(L"GetElements", filter).Get(L"Count").ToLong(), 0);
    filter.Call(L"SelectRooms");
    EXPECT_EQ(service.Object(L"GetElements", filter).Get(L"Count").ToLong(), 2);
}

TEST_F(PracticeHost, BringsTheIdentitiesOfAListTogether) {
    Start();
    const Client service = Service();
    const Variant table = Elements(service).Get(L"IdentityTable");
    EXPECT_EQ(table.type(), VT_ARRAY | VT_VARIANT);
    EXPECT_THAT(Bounds(table), testing::ElementsAre(1, 2, 1, 3));
    EXPECT_EQ(Cell(table, {1, 1}).ToLong(), 17);
    EXPECT_EQ(Cell(table, {1, 2}).ToLong(), 3);
    EXPECT_EQ(Cell(table, {1, 3}).ToText(), L"K3");
    EXPECT_EQ(Cell(table, {2, 1}).ToLong(), 18);
    EXPECT_EQ(Cell(table, {2, 2}).ToLong(), 0);
    EXPECT_TRUE(service.Object(L"CreateElementList").Get(L"IdentityTable").empty());
}

TEST_F(PracticeHost, TellsEverythingOfARoom) {
    Start();
    const Client room = Elements(Service()).Object(L"Item", Variant(1));
    EXPECT_EQ(room.Get(L"ComponentID").ToLong(), 17);
    EXPECT_EQ(room.Get(L"FileNumber").ToLong(), 3);
    EXPECT_EQ(room.Get(L"FileID").ToText(), L"K3");
    EXPECT_EQ(room.Get(L"RoomName").ToText(), L"Klasse 1");
    EXPECT_EQ(room.Get(L"RoomFunction").ToText(), L"Unterricht");
    EXPECT_EQ(room.Get(L"StoreyCode").ToText(), L"EG");
    EXPECT_EQ(room.Get(L"Colour").ToLong(), 255);

    const Variant record = room.Get(L"RoomRecord");
    EXPECT_THAT(Bounds(record), testing::ElementsAre(0, 5));
    EXPECT_EQ(Cell(record, {0}).ToLong(), 17);
    EXPECT_EQ(Cell(record, {1}).ToLong(), 3);
    EXPECT_EQ(Cell(record, {2}).ToText(), L"K3");
    EXPECT_EQ(Cell(record, {3}).ToText(), L"Klasse 1");
    EXPECT_EQ(Cell(record, {4}).ToText(), L"Unterricht");
    EXPECT_EQ(Cell(record, {5}).ToText(), L"EG");
}

TEST_F(PracticeHost, OutlinesComeWithTheirFirstPointRepeated) {
    Start();
    const Client elements = Elements(Service());
    const Variant outline = elements.Object(L"Item", Variant(1)).Get(L"Outline");
    EXPECT_EQ(outline.type(), VT_ARRAY | VT_R8);
    EXPECT_THAT(Bounds(outline), testing::ElementsAre(0, 1, 0, 4));
    double value = 0.0;
    std::array<LONG, 2> index{0, 1};
    Check(SafeArrayGetElement(outline.raw().parray, index.data(), &value));
    EXPECT_EQ(value, 5.0);
    index = {1, 2};
    Check(SafeArrayGetElement(outline.raw().parray, index.data(), &value));
    EXPECT_EQ(value, 2.5);
    index = {1, 4};
    Check(SafeArrayGetElement(outline.raw().parray, index.data(), &value));
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(elements.Object(L"Item", Variant(2)).Get(L"Outline").empty());
}

TEST_F(PracticeHost, TellsAttributesOneByOneAndTogether) {
    Start();
    const Client elements = Elements(Service());
    const Client attributes = elements.Object(L"Item", Variant(1)).ObjectOf(L"Attributes");
    EXPECT_EQ(attributes.Get(L"Count").ToLong(), 2);
    const Client area = attributes.Object(L"Item", Variant(1));
    EXPECT_EQ(area.Get(L"Name").ToText(), L"Bodenfläche");
    EXPECT_EQ(area.Get(L"NumberValue").type(), VT_R8);
    EXPECT_EQ(area.Get(L"NumberValue").ToNumber(), 12.5);
    EXPECT_EQ(area.Get(L"TextValue").ToText(), L"12.5");
    const Variant table = attributes.Get(L"AttributeTable");
    EXPECT_THAT(Bounds(table), testing::ElementsAre(1, 2, 1, 3));
    EXPECT_EQ(Cell(table, {1, 2}).ToNumber(), 12.5);
    EXPECT_EQ(Cell(table, {2, 1}).ToText(), L"Nutzen");
    EXPECT_EQ(Cell(table, {2, 2}).ToNumber(), 0.0);
    EXPECT_EQ(Cell(table, {2, 3}).ToText(), L"2 Büro");
    EXPECT_TRUE(elements.Object(L"Item", Variant(2))
                    .ObjectOf(L"Attributes")
                    .Get(L"AttributeTable")
                    .empty());
}

TEST_F(PracticeHost, RefusesCallsThatDoNotFit) {
    Start();
    const Client service = Service();
    const Client elements = Elements(service);
    EXPECT_EQ(FailureOf([&] { elements.Call(L"Dance"); }).result, DISP_E_UNKNOWNNAME);
    EXPECT_EQ(FailureOf([&] { elements.Put(L"Count", Variant(1)); }).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(FailureOf([&] { elements.Call(L"Count"); }).result, DISP_E_MEMBERNOTFOUND);
    EXPECT_EQ(FailureOf([&] { elements.Call(L"Item"); }).result, DISP_E_BADPARAMCOUNT);
    EXPECT_EQ(FailureOf([&] { elements.Call(L"Item", Variant(L"eins")); }).result,
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(FailureOf([&] { elements.Call(L"Item", Variant(0)); }).description,
              L"There is no item 0 in the list.");
    EXPECT_EQ(FailureOf([&] { elements.Call(L"Item", Variant(3)); }).result, DISP_E_EXCEPTION);
    EXPECT_EQ(FailureOf([&] { elements.Call(L"Add", service); }).result, DISP_E_TYPEMISMATCH);
    EXPECT_EQ(FailureOf([&] { service.Call(L"GetElements", Variant()); }).result,
              DISP_E_TYPEMISMATCH);
    const Client room = elements.Object(L"Item", Variant(1));
    EXPECT_EQ(FailureOf([&] { room.Put(L"Outline", Variant(L"rund")); }).result,
              DISP_E_TYPEMISMATCH);
    std::vector<Variant> values;
    values.emplace_back(1.0);
    EXPECT_EQ(FailureOf([&] { room.Put(L"Outline", RecordArray(values)); }).result,
              DISP_E_BADINDEX);
    EXPECT_EQ(elements.Invoke(L"count", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {}).ToLong(), 2);
}

// --- writing -------------------------------------------------------------------------------------

TEST_F(PracticeHost, ChangesReachTheDrawingWithApply) {
    Start();
    const Client service = Service();
    const Client elements = Elements(service);
    const Client room = elements.Object(L"Item", Variant(1));
    room.Put(L"RoomName", Variant(L"Klasse 2"));
    room.Put(L"RoomFunction", Variant(L"Fachraum"));
    room.Put(L"StoreyCode", Variant(L"OG"));
    room.Put(L"Colour", Variant(65280));
    room.Put(L"Outline", OutlineArray({{0, 0}, {4, 0}, {4, 2}, {0, 2}}));
    const Client attributes = room.ObjectOf(L"Attributes");
    attributes.Object(L"Item", Variant(2)).Put(L"TextValue", Variant(L"Flur"));
    EXPECT_EQ(FailureOf([&] {
                  attributes.Object(L"Item", Variant(1)).Put(L"TextValue", Variant(L"1"));
              }).result,
              DISP_E_EXCEPTION);
    EXPECT_EQ(attributes.Object(L"Item", Variant(1)).Get(L"NumberValue").ToNumber(), 8.0);

    service.Call(L"ChangeElements", ListOf(service, {&room}));
    EXPECT_EQ(Saved().elements[0].name, L"Klasse 1");
    service.Call(L"ApplyChanges");
    const Element changed = Saved().elements[0];
    EXPECT_EQ(changed.componentId, 17);
    EXPECT_EQ(changed.name, L"Klasse 2");
    EXPECT_EQ(changed.function, L"Fachraum");
    EXPECT_EQ(changed.storey, L"OG");
    EXPECT_EQ(changed.colour, 65280);
    EXPECT_EQ(changed.outline, (Outline{{0, 0}, {4, 0}, {4, 2}, {0, 2}}));
    EXPECT_EQ(changed.attributes[0].NumberValue(), 8.0);
    EXPECT_EQ(changed.attributes[1].TextValue(), L"Flur");
    EXPECT_EQ(Saved().elements.size(), 2u);
}

TEST_F(PracticeHost, NewRoomsGetTheirIdentityWithApply) {
    Start();
    const Client service = Service();
    const Client room = NewRoom(service, 3, 2);
    EXPECT_EQ(room.Get(L"ComponentID").ToLong(), -1);
    service.Call(L"AddElements", ListOf(service, {&room}));
    service.Call(L"ApplyChanges");
    EXPECT_EQ(room.Get(L"ComponentID").ToLong(), 19);
    EXPECT_EQ(room.Get(L"FileNumber").ToLong(), 3);
    EXPECT_EQ(room.Get(L"FileID").ToText(), L"K3");
    const Drawing drawing = Saved();
    ASSERT_EQ(drawing.elements.size(), 3u);
    EXPECT_EQ(drawing.elements[2].attributes[0].NumberValue(), 6.0);
    EXPECT_TRUE(drawing.placements.empty());
}

TEST_F(PracticeHost, AServiceThatIsReleasedChangesNothing) {
    Start();
    {
        const Client service = Service();
        const Client room = NewRoom(service, 3, 2);
        service.Call(L"AddElements", ListOf(service, {&room}));
    }
    EXPECT_EQ(Saved().elements.size(), 2u);
}

TEST_F(PracticeHost, PlacesUnattendedAndWritesItsFilesAtEveryApply) {
    const auto saved = folder / L"nachher.json";
    const auto svg = folder / L"nachher.svg";
    Start(L"--hidden --place 100.5,-20 --save \"" + saved.wstring() + L"\" --svg \"" +
          svg.wstring() + L"\"");
    EXPECT_FALSE(std::filesystem::exists(saved));
    const Client service = Service();
    const Client first = NewRoom(service, 4, 2);
    const Client second = NewRoom(service, 3, 2);
    service.Call(L"PlaceElements", ListOf(service, {&first}), Variant(10));
    service.Call(L"PlaceElements", ListOf(service, {&second}), Variant(10));
    service.Call(L"ApplyChanges");
    const Drawing drawing = LoadDrawing(saved);
    ASSERT_EQ(drawing.placements.size(), 2u);
    EXPECT_EQ(drawing.placements[0].at, (Point{100.5, -20}));
    EXPECT_EQ(drawing.placements[1].at, (Point{105.5, -20}));
    EXPECT_THAT(drawing.placements[1].componentIds, testing::ElementsAre(20));
    EXPECT_EQ(drawing.elements[3].outline[0], (Point{105.5, -20}));
    EXPECT_THAT(Bytes(svg), HasSubstr("</svg>"));

    std::filesystem::remove(saved);
    control.Call(L"Quit");
    EXPECT_TRUE(process->Ended(10000));
    EXPECT_EQ(process->ExitCode(), 0);
    EXPECT_EQ(LoadDrawing(saved).elements.size(), 4u);
}

TEST_F(PracticeHost, TheControlLoadsSavesAndPlaces) {
    Start();
    WriteText(folder / L"leer ö.json", R"({"project":{"name":"Leer"}})");
    control.Call(L"LoadDrawing", Variant((folder / L"leer ö.json").wstring()));
    EXPECT_EQ(Saved().project.name, L"Leer");
    const CallFailed failure =
        FailureOf([&] { control.Call(L"LoadDrawing", Variant(L"Z:\\gibt\\es\\nicht")); });
    EXPECT_THAT(ToUtf8(failure.description), HasSubstr("cannot be opened"));
    EXPECT_EQ(Saved().project.name, L"Leer");

    const Client service = Service();
    const Client lonely = NewRoom(service, 4, 2);
    const Client list = ListOf(service, {&lonely});
    EXPECT_THAT(
        ToUtf8(FailureOf([&] { service.Call(L"PlaceElements", list, Variant(10)); }).description),
        HasSubstr("no window"));
    control.Call(L"PlaceAt", Variant(1.5), Variant(2));
    service.Call(L"PlaceElements", list, Variant(10));
    service.Call(L"ApplyChanges");
    EXPECT_EQ(Saved().placements.at(0).at, (Point{1.5, 2}));
    control.Call(L"PlaceByClick");
    const Client next = NewRoom(service, 4, 2);
    EXPECT_EQ(FailureOf([&] {
                  service.Call(L"PlaceElements", ListOf(service, {&next}), Variant(10));
              }).result,
              DISP_E_EXCEPTION);

    control.Call(L"SaveDrawing", Variant((folder / L"kopie.json").wstring()));
    EXPECT_EQ(LoadDrawing(folder / L"kopie.json").elements.size(), 1u);
    control.Call(L"ExportSvg", Variant((folder / L"kopie.svg").wstring()));
    EXPECT_THAT(Bytes(folder / L"kopie.svg"), HasSubstr("<polygon"));
}

// --- states, counting, faults --------------------------------------------------------------------

TEST_F(PracticeHost, ForbidsAccessInItsStates) {
    Start(L"--hidden --state menu");
    const Client application = Client::Create(ApplicationClass);
    const auto refusal = [&] {
        return FailureOf([&] { application.Call(L"CheckAccess"); }).description;
    };
    EXPECT_EQ(refusal(), L"Please terminate the menue interaction first.");
    control.Call(L"SetState", Variant(L"kvd"));
    EXPECT_EQ(refusal(), L"Access denied: any Kvd or free plan is open.");
    control.Call(L"SetCreationError", Variant(L"any Kvd or free plan"));
    EXPECT_EQ(refusal(), L"any Kvd or free plan");
    control.Call(L"SetCreationError", Variant(L""));
    control.Call(L"SetState", Variant(L""));
    EXPECT_EQ(refusal(), L"");
    EXPECT_EQ(FailureOf([&] { control.Call(L"SetState", Variant(L"moon")); }).result,
              DISP_E_EXCEPTION);
}

TEST_F(PracticeHost, CountsTheCallsOfItsObjectsButNotOfTheControl) {
    Start();
    control.Call(L"ResetCallCount");
    const Client elements = Elements(Service());
    elements.Get(L"Count");
    elements.Get(L"Count");
    EXPECT_EQ(control.Get(L"CallCount").ToLong(), 5);
    EXPECT_EQ(control.Get(L"CallReport").ToText(), L"KalvApplication.GetDrawingService=1\n"
                                                   L"KalvDrawingService.GetElements=1\n"
                                                   L"KalvElementList.Count=2\n"
                                                   L"KalvRoomFilter.SelectRooms=1\n");
    control.Call(L"ResetCallCount");
    EXPECT_EQ(control.Get(L"CallCount").ToLong(), 0);
    EXPECT_EQ(control.Get(L"CallReport").ToText(), L"");
}

TEST_F(PracticeHost, ObjectsAreGoneWhenTheirClientsLetGo) {
    Start();
    {
        const Client service = Service();
        const Client elements = Elements(service);
        const Client attribute = elements.Object(L"Item", Variant(1))
                                     .ObjectOf(L"Attributes")
                                     .Object(L"Item", Variant(1));
        const Client fresh = NewRoom(service, 1, 1);
        const Client list = ListOf(service, {&fresh});
        service.Call(L"AddElements", list);
        EXPECT_EQ(control.Get(L"LiveObjects").ToLong(), 5);
    }
    EXPECT_EQ(control.Get(L"LiveObjects").ToLong(), 0);
    EXPECT_FALSE(process->Ended(300));
}

TEST_F(PracticeHost, FailsAtTheNthCall) {
    Start();
    const Client elements = Elements(Service());
    control.Call(L"FailAt", Variant(2), Variant(L"fail"), Variant(L"kaputt: ä"));
    EXPECT_EQ(elements.Get(L"Count").ToLong(), 2);
    const CallFailed failure = FailureOf([&] { elements.Get(L"Count"); });
    EXPECT_EQ(failure.result, DISP_E_EXCEPTION);
    EXPECT_EQ(failure.source, L"Kalvero");
    EXPECT_EQ(failure.description, L"kaputt: ä");
    EXPECT_EQ(elements.Get(L"Count").ToLong(), 2);
}

TEST_F(PracticeHost, FailsAtTheCallThatItsCommandLineNames) {
    Start(L"--hidden --fail-at \"2:fail:hier nicht\"");
    const Client application = Client::Create(ApplicationClass);
    application.Call(L"CheckAccess");
    EXPECT_EQ(FailureOf([&] { application.Call(L"CheckAccess"); }).description, L"hier nicht");
}

TEST_F(PracticeHost, GivesAnEmptyResultAndDoesNothing) {
    Start();
    const Client service = Service();
    const Client fresh = NewRoom(service, 1, 1);
    service.Call(L"AddElements", ListOf(service, {&fresh}));
    control.Call(L"FailMember", Variant(L"ApplyChanges"), Variant(L"empty"), Variant());
    EXPECT_TRUE(service.Call(L"ApplyChanges").empty());
    EXPECT_EQ(Saved().elements.size(), 2u);
    service.Call(L"ApplyChanges");
    EXPECT_EQ(Saved().elements.size(), 3u);
    control.Call(L"FailMember", Variant(L"KalvApplication.GetProject"), Variant(L"empty"),
                 Variant(L""));
    EXPECT_TRUE(Client::Create(ApplicationClass).Call(L"GetProject").empty());
}

TEST_F(PracticeHost, RejectsAsOftenAsItWasTold) {
    Start();
    const Client elements = Elements(Service());
    control.Call(L"FailAt", Variant(1), Variant(L"reject"), Variant(2));
    EXPECT_EQ(FailureOf([&] { elements.Get(L"Count"); }).result, RPC_E_CALL_REJECTED);
    EXPECT_EQ(FailureOf([&] { elements.Get(L"Count"); }).result, RPC_E_CALL_REJECTED);
    EXPECT_EQ(elements.Get(L"Count").ToLong(), 2);
    control.Call(L"FailMember", Variant(L"Count"), Variant(L"later"), Variant());
    EXPECT_EQ(FailureOf([&] { elements.Get(L"Count"); }).result, RPC_E_SERVERCALL_RETRYLATER);
    EXPECT_EQ(elements.Get(L"Count").ToLong(), 2);
    control.Call(L"FailAt", Variant(1), Variant(L"later"), Variant(3));
    control.Call(L"ClearFaults");
    EXPECT_EQ(elements.Get(L"Count").ToLong(), 2);
    EXPECT_EQ(
        FailureOf([&] { control.Call(L"FailAt", Variant(1), Variant(L"moon"), Variant()); }).result,
        DISP_E_EXCEPTION);
}

TEST_F(PracticeHost, StallsAndThenAnswers) {
    Start();
    const Client elements = Elements(Service());
    control.Call(L"FailAt", Variant(1), Variant(L"stall"), Variant(700));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(elements.Get(L"Count").ToLong(), 2);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(650));
}

TEST_F(PracticeHost, GoesAwayInTheMiddle) {
    Start();
    const Client elements = Elements(Service());
    control.Call(L"FailAt", Variant(1), Variant(L"exit"), Variant());
    const HRESULT result = FailureOf([&] { elements.Get(L"Count"); }).result;
    EXPECT_TRUE(FAILED(result)) << std::hex << result;
    EXPECT_TRUE(process->Ended(5000));
    EXPECT_EQ(process->ExitCode(), 3);
}

// --- lifetime ------------------------------------------------------------------------------------

TEST_F(PracticeHost, StartedByTheSystemItEndsWithItsLastObject) {
    control = Client::Create(ControlClass);
    const auto id = static_cast<DWORD>(control.Get(L"ProcessId").ToLong());
    HANDLE host = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, id);
    ASSERT_NE(host, nullptr);
    {
        const Client application = Client::Create(ApplicationClass);
        application.Call(L"CheckAccess");
        EXPECT_EQ(control.Get(L"LiveObjects").ToLong(), 1);
        control = Client();
        EXPECT_EQ(WaitForSingleObject(host, 400), static_cast<DWORD>(WAIT_TIMEOUT));
        application.Call(L"CheckAccess");
    }
    EXPECT_EQ(WaitForSingleObject(host, 10000), WAIT_OBJECT_0);
    CloseHandle(host);
}

// --- its window ----------------------------------------------------------------------------------

class PracticeHostWindow : public PracticeHost {
  protected:
    void SetUp() override {
        Start(L"");
        window = FindWindowW(L"KalveroPracticeHost", L"Kalvero – Schule Süd");
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(IsWindowVisible(window));
    }
    // Sends the messages while the call waits for its user.
    std::thread User(std::function<void()> actions) const {
        return std::thread([actions = std::move(actions)] {
            Sleep(500);
            actions();
        });
    }
    CallFailed PlaceWhile(std::function<void()> actions) {
        const Client service = Service();
        const Client room = NewRoom(service, 4, 2);
        const Client list = ListOf(service, {&room});
        std::thread user = User(std::move(actions));
        const CallFailed failure =
            FailureOf([&] { service.Call(L"PlaceElements", list, Variant(10)); });
        user.join();
        if (SUCCEEDED(failure.result))
            service.Call(L"ApplyChanges");
        return failure;
    }

    HWND window = nullptr;
};

TEST_F(PracticeHostWindow, AClickSetsRoomsDown) {
    const CallFailed failure = PlaceWhile([this] {
        PostMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(200, 200));
        PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(300, 250));
    });
    EXPECT_EQ(failure.result, S_OK);
    const Drawing drawing = Saved();
    ASSERT_EQ(drawing.placements.size(), 1u);
    const Point at = drawing.placements[0].at;
    EXPECT_EQ(drawing.elements[2].outline[0], at);
    EXPECT_NEAR(drawing.elements[2].outline[2].x, at.x + 4, 1e-9);
    // Somewhere in or near the drawing, whose rooms span 5 m.
    EXPECT_LT(std::abs(at.x), 30);
    EXPECT_LT(std::abs(at.y), 30);
}

TEST_F(PracticeHostWindow, EscapeCancels) {
    const CallFailed failure =
        PlaceWhile([this] { PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 0); });
    EXPECT_EQ(failure.result, DISP_E_EXCEPTION);
    EXPECT_EQ(failure.description, L"Setting the rooms down was cancelled.");
    EXPECT_EQ(Saved().elements.size(), 2u);
}

TEST_F(PracticeHostWindow, ClosingCancelsAndEndsTheHost) {
    const CallFailed failure = PlaceWhile([this] { PostMessageW(window, WM_CLOSE, 0, 0); });
    EXPECT_EQ(failure.description, L"Setting the rooms down was cancelled.");
    EXPECT_TRUE(process->Ended(10000));
    EXPECT_EQ(process->ExitCode(), 0);
}

TEST_F(PracticeHostWindow, TheMenuSwitchesTheStates) {
    const Client application = Client::Create(ApplicationClass);
    const auto refusal = [&] {
        return FailureOf([&] { application.Call(L"CheckAccess"); }).description;
    };
    SendMessageW(window, WM_COMMAND, IDC_STATE_MENU, 0);
    EXPECT_THAT(ToUtf8(refusal()), HasSubstr("menue"));
    SendMessageW(window, WM_COMMAND, IDC_STATE_KVD, 0);
    EXPECT_THAT(ToUtf8(refusal()), HasSubstr("any Kvd"));
    SendMessageW(window, WM_COMMAND, IDC_STATE_KVD, 0);
    EXPECT_EQ(refusal(), L"");
}

TEST_F(PracticeHostWindow, ClosingEndsTheHost) {
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_TRUE(process->Ended(10000));
}

// --- the program that it starts ------------------------------------------------------------------

constexpr const wchar_t* ClientVariable = L"PRACTICE_HOST_CLIENT";
constexpr int ClientExitCode = 7;

// A copy of this program is the host's client when the variable says so: it ends with its own code
// if the host answers it.
const bool actedAsClient = [] {
    if (GetEnvironmentVariableW(ClientVariable, nullptr, 0) == 0)
        return false;
    int code = 8;
    try {
        const ComApartment apartment;
        Client::Create(ApplicationClass).Call(L"CheckAccess");
        code = ClientExitCode;
    } catch (const ComError&) {
        code = 9;
    }
    ExitProcess(static_cast<UINT>(code));
    return true;
}();

TEST_F(PracticeHost, StartsItsClientWithTheHandOverFileAndEndsWithIt) {
    ASSERT_FALSE(actedAsClient);
    std::array<wchar_t, 4096> self{};
    GetModuleFileNameW(nullptr, self.data(), static_cast<DWORD>(self.size()));
    const auto program = folder / L"Quartino.exe";
    std::filesystem::copy_file(std::filesystem::path(self.data()), program);

    SetEnvironmentVariableW(ClientVariable, L"1");
    const int code =
        RunToItsEnd(L"--hidden --quit-with-client --language deu --settings-key "
                    L"Software\\Probe --help-file \"C:\\Hilfe\\Übung.chm\" --start \"" +
                    program.wstring() + L"\"");
    SetEnvironmentVariableW(ClientVariable, nullptr);
    EXPECT_EQ(code, ClientExitCode);
    EXPECT_EQ(Bytes(folder / L"kalvqtotemp"), "Kalvero practice host\r\nC:\\Hilfe\\\xDC"
                                              "bung.kalvhelp\r\nSoftware\\Probe\r\ndeu\r\n");
    EXPECT_EQ(RunToItsEnd(L"--hidden --quit-with-client --start Z:\\gibt\\es\\nicht.exe"), 2);
}

} // namespace
} // namespace kalvrooms::practice
