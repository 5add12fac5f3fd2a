// The bridge against a server that answers as other automation libraries do: the practice host's
// objects in this process, behind a class that gives the same values in other forms.

#include <gmock/gmock.h>

#include <deque>
#include <filesystem>
#include <fstream>
#include <limits>

#include "host/clsKalvero.h"
#include "practice/driver/UiDriver.h"
#include "practice/host/ClassIds.h"
#include "practice/host/HostObjects.h"
#include "practice/server/ClassFactory.h"
#include "support/BridgeContext.h"
#include "support/Drawings.h"
#include "support/RoomForTest.h"
#include "support/TemporaryFolder.h"
#include "win32/ComHostServer.h"

namespace kalvrooms::testing {
namespace {

using practice::Counted;
using practice::HostProcess;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct Forms {
    bool unknownObjects = false; // VT_UNKNOWN for objects
    bool references = false;     // VT_BYREF
    bool variants = false;       // VT_BYREF to a variant with the value
    VARTYPE elements = VT_R8;    // of outlines, with other lower bounds
    bool eitherKind = false;     // knows members only by a call that asks for method and property
    bool errorObjects = false;   // tells errors by IErrorInfo alone
    Variant count;               // for every Count, when there is one
    bool withoutFile = false;    // records of rooms do not tell the number of the file
    // What references refer to, for as long as the server lives.
    std::deque<Variant> kept;
};

// The outline as an array of another type that begins elsewhere.
Variant otherArray(const Variant& outline, VARTYPE type) {
    const ArrayView from(outline, 2);
    Variant array = NewArray(type, {{2, -3}, {static_cast<ULONG>(from.columns()), 7}});
    for (LONG row = 0; row < 2; ++row) {
        for (LONG column = 0; column < static_cast<LONG>(from.columns()); ++column) {
            const Variant value =
                from.Copy(static_cast<std::size_t>(row), static_cast<std::size_t>(column));
            LONG place[] = {row - 3, column + 7};
            Variant element =
                type == VT_VARIANT ? value.As(VT_BSTR, LOCALE_USER_DEFAULT) : value.As(type);
            Check(SafeArrayPutElement(array.raw().parray, place,
                                      type == VT_VARIANT ? static_cast<void*>(element.get())
                                                         : &element.get()->lVal));
        }
    }
    return array;
}

class OtherObject : public Counted<IDispatch> {
  public:
    OtherObject(IDispatch* inner, Forms& forms) : inner_(inner), forms_(forms) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const HRESULT result = Counted::QueryInterface(iid, object);
        // The practice host knows its own objects.
        return SUCCEEDED(result) ? result : inner_->QueryInterface(iid, object);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override {
        const HRESULT result = inner_->GetIDsOfNames(iid, names, count, locale, ids);
        if (SUCCEEDED(result) && std::wstring(names[0]) == L"Count")
            countMember_ = ids[0];
        return result;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* answer, EXCEPINFO* trouble,
                                     UINT* argument) override {
        constexpr WORD both = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
        if (forms_.eitherKind && (flags & DISPATCH_PROPERTYPUT) == 0 && (flags & both) != both)
            return DISP_E_MEMBERNOTFOUND;
        const HRESULT result =
            inner_->Invoke(id, iid, locale, flags, parameters, answer, trouble, argument);
        if (result == DISP_E_EXCEPTION && forms_.errorObjects)
            return asErrorObject(*trouble);
        if (SUCCEEDED(result) && answer)
            reshape(*answer, id == countMember_);
        return result;
    }

  private:
    static HRESULT asErrorObject(EXCEPINFO& trouble) {
        ComPtr<ICreateErrorInfo> error;
        ComPtr<IErrorInfo> told;
        Check(CreateErrorInfo(&error));
        Check(error->SetDescription(trouble.bstrDescription));
        Check(error.As(&told));
        SetErrorInfo(0, told.Get());
        SysFreeString(trouble.bstrSource);
        SysFreeString(trouble.bstrDescription);
        trouble = {};
        return E_FAIL;
    }
    void reshape(VARIANT& answer, bool isCount) {
        Variant value;
        std::swap(*value.get(), answer);
        if (isCount && !forms_.count.empty())
            value = Variant::CopyOf(forms_.count.raw());
        if (const auto object = value.ToObject()) {
            value = Variant(practice::Make<OtherObject>(object.Get(), forms_));
            if (forms_.unknownObjects)
                value.get()->vt = VT_UNKNOWN;
        } else if (value.type() == (VT_ARRAY | VT_VARIANT) && forms_.withoutFile &&
                   SafeArrayGetDim(value.raw().parray) == 1) {
            LONG place = 1;
            Check(SafeArrayPutElement(value.raw().parray, &place, Variant().get()));
        } else if (value.type() == (VT_ARRAY | VT_R8) && forms_.elements != VT_R8) {
            value = otherArray(value, forms_.elements);
        }
        if ((forms_.references || forms_.variants) && !value.empty()) {
            Variant& kept = forms_.kept.emplace_back(std::move(value));
            answer.vt = forms_.variants ? VT_BYREF | VT_VARIANT
                                        : static_cast<VARTYPE>(VT_BYREF | kept.type());
            answer.byref = forms_.variants ? static_cast<void*>(kept.get()) : &kept.get()->lVal;
            return;
        }
        answer = value.detach();
    }

    ComPtr<IDispatch> inner_;
    Forms& forms_;
    DISPID countMember_ = DISPID_UNKNOWN;
};

class Answers : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        driver::runToItsEnd(L"KalveroPractice.exe", L"--register");
    }
    static void TearDownTestSuite() { CoUninitialize(); }

    Answers() {
        process_.AddUse();
        offer(practice::ApplicationClass, &practice::NewApplication);
        offer(practice::RoomFilterClass, &practice::NewRoomFilter);
        offer(practice::AttributeCatalogueClass, &practice::NewAttributeCatalogue);
        Element first = roomElement(17, 3, L"A");
        first.outline = {{0, 0}, {4, 0}, {4, -3}, {0, -3}};
        process_.session.drawing =
            drawingOf({first, roomElement(18, 3, L"B")}, folder_.path().wstring());
        process_.session.placing.At({100, 0});
    }
    ~Answers() override {
        bridge_.reset();
        forms_.kept.clear();
        for (const DWORD cookie : cookies_)
            CoRevokeClassObject(cookie);
    }
    void offer(const practice::ServerClass& serverClass, IDispatch* (*create)(HostProcess&)) {
        const auto factory = practice::Make<practice::ClassFactory>(
            [this, create]() -> IDispatch* {
                if (process_.plain)
                    process_.session.state.CheckAccess();
                const auto inner = practice::TakeOver(create(process_));
                return new OtherObject(inner.Get(), forms_);
            },
            [](bool) {});
        DWORD cookie = 0;
        Check(CoRegisterClassObject(serverClass.id, factory.Get(), CLSCTX_LOCAL_SERVER,
                                    REGCLS_MULTIPLEUSE, &cookie));
        cookies_.push_back(cookie);
    }
    void read() {
        if (!bridge_)
            bridge_ = context_.bridge();
        floors_ = clsFloors();
        bridge_->GetProjectName();
        bridge_->ImportFloorsFromKalvero(floors_);
    }
    clsRoom room(std::int32_t index) const { return roomAt(floors_, index); }
    std::string pointFile() const { return readBytes(room(1).Geometry->FileName()); }
    // Reads the drawing, changes a room, adds one, and writes it back.
    void expectToBeServed() {
        read();
        ASSERT_EQ(floors_.GetCountOfRooms(), 2);
        EXPECT_EQ(room(1).Name(), L"A");
        EXPECT_EQ(room(1).GetRoomID(), L"17-K3");
        EXPECT_EQ(room(1).ProjectNumber(), 4711);
        EXPECT_EQ(room(1).Geometry->Area(), 13.5);
        EXPECT_EQ(room(1).Occupancy(), L"HNF 2");
        EXPECT_EQ(pointFile(), "4\r\n0\t0\r\n4\t0\r\n4\t-3\r\n0\t-3\r\nend\r\n");
        std::shared_ptr<clsRoom> stored;
        floors_.GetRoomByID(L"EG", 2, stored);
        stored->Name(L"umbenannt");
        stored->Occupancy(L"HNF 4");
        clsRoom square;
        floors_.AddRooms(square, 1);
        const ExportCounts counts = writeTo(*bridge_, floors_);
        EXPECT_EQ(counts.updated, 2);
        EXPECT_EQ(counts.placed, 1);
        const auto& elements = process_.session.drawing.elements;
        ASSERT_EQ(elements.size(), 3u);
        EXPECT_EQ(elements[0].name, L"umbenannt");
        EXPECT_EQ(elements[0].attributes[1].TextValue(), L"HNF 4");
        EXPECT_EQ(elements[0].outline, (Outline{{0, 0}, {4, 0}, {4, -3}, {0, -3}}));
        EXPECT_EQ(elements[2].outline[0].x, 100);
        EXPECT_THAT(context_.prompts(), IsEmpty());
    }

    HostProcess process_;
    Forms forms_;
    std::vector<DWORD> cookies_;
    const TemporaryFolder folder_;
    std::unique_ptr<HostServer> server_ = MakeComHostServer();
    BridgeContext context_{*server_};
    std::unique_ptr<clsKalvero> bridge_;
    clsFloors floors_;
};

TEST_F(Answers, ObjectsMayBeUnknown) {
    forms_.unknownObjects = true;
    expectToBeServed();
}

TEST_F(Answers, ValuesMayBeReferences) {
    forms_.references = true;
    expectToBeServed();
}

TEST_F(Answers, ValuesMayBeWrappedInVariants) {
    forms_.variants = true;
    forms_.unknownObjects = true;
    expectToBeServed();
}

TEST_F(Answers, MembersMayBeMethodsOrProperties) {
    forms_.eitherKind = true;
    expectToBeServed();
}

TEST_F(Answers, OutlinesMayBeArraysOfOtherTypesAndBounds) {
    for (const VARTYPE type : {VT_R4, VT_I4, VT_VARIANT}) {
        forms_.elements = type;
        forms_.references = type == VT_I4;
        process_.session.drawing.elements[0].outline = {{0, 0}, {4, 0}, {4, -3}, {0, -3}};
        read();
        ASSERT_EQ(floors_.GetCountOfRooms(), 2);
        EXPECT_EQ(pointFile(), "4\r\n0\t0\r\n4\t0\r\n4\t-3\r\n0\t-3\r\nend\r\n") << type;
    }
    process_.session.drawing.elements[1].outline = process_.session.drawing.elements[0].outline;
    expectToBeServed();
}

TEST_F(Answers, ARecordWithoutTheFileLeadsToTheSingleCalls) {
    forms_.withoutFile = true;
    expectToBeServed();
}

TEST_F(Answers, MembersOfOurOwnInventionMayBeUnknown) {
    process_.plain = true;
    expectToBeServed();
    // Each of them is asked for once in all.
    EXPECT_THAT(process_.calls.Report(), ::testing::Not(HasSubstr(L"Table")));
    EXPECT_THAT(process_.calls.Report(), ::testing::Not(HasSubstr(L"CheckAccess")));
}

TEST_F(Answers, ARoomThatDoesNotTellItsIdentityIsNotMadeAgain) {
    process_.plain = true;
    for (const wchar_t* member : {L"FileID", L"ComponentID"}) {
        process_.calls.FailMember(member, {});
        read();
        process_.calls.ClearFaults();
        ASSERT_EQ(floors_.GetCountOfRooms(), 2) << member;
        EXPECT_THAT(context_.prompts().back(), HasSubstr(L"gelesen werden konnten: 1."));
        clsRoom square;
        square.Occupancy(L"HNF 4");
        floors_.AddRooms(square, 1);
        const std::size_t before = process_.session.drawing.elements.size();
        const ExportCounts counts = writeTo(*bridge_, floors_);
        EXPECT_EQ(counts.updated, 1);
        EXPECT_EQ(counts.atPosition, 0);
        ASSERT_EQ(process_.session.drawing.elements.size(), before + 1);
        // New rooms have no identity either, and get all that they are to have.
        EXPECT_EQ(process_.session.drawing.elements[before].attributes[2].TextValue(), L"HNF 4");
        process_.session.drawing.elements.resize(2);
    }
    // Nor when it does not tell it at the writing.
    for (const wchar_t* member : {L"Item", L"FileID", L"FileNumber", L"ComponentID"}) {
        read();
        process_.calls.FailMember(member, {});
        const ExportCounts counts = writeTo(*bridge_, floors_);
        process_.calls.ClearFaults();
        EXPECT_EQ(counts.updated, 1) << member;
        EXPECT_EQ(counts.atPosition + counts.placed, 0) << member;
        EXPECT_EQ(process_.session.drawing.elements.size(), 2u) << member;
        EXPECT_EQ(context_.prompts().back(), L"Das Erzeugen wurde beendet. Erzeugte oder "
                                             L"aktualisierte Räume: 1 von 2.");
    }
}

TEST_F(Answers, WhatWasReadGoesBackBitByBit) {
    auto& elements = process_.session.drawing.elements;
    elements[0].outline = {{-0.365, 6.1E-17}, {1.0 / 3.0, 1.8E-15}, {1E20, -0.5}};
    const Outline before = elements[0].outline;
    read();
    const ExportCounts counts = writeTo(*bridge_, floors_);
    EXPECT_EQ(counts.updated, 2);
    EXPECT_EQ(elements[0].outline, before);
}

TEST_F(Answers, GivingUpAtTheCrossHairKeepsWhatWasPlaced) {
    int clicks = 0;
    process_.session.placing.ByClick();
    process_.session.placing.OnClick([&](const std::vector<Outline>&) {
        if (++clicks == 2)
            throw PlacingCancelled();
        return Point();
    });
    bridge_ = context_.bridge();
    clsRoom square;
    floors_.AddRooms(square, 3);
    const ExportCounts counts = writeTo(*bridge_, floors_, false);
    EXPECT_EQ(clicks, 2);
    EXPECT_EQ(counts.placed, 1);
    EXPECT_EQ(process_.session.drawing.elements.size(), 3u);
    EXPECT_THAT(context_.prompts(), IsEmpty());
}

TEST_F(Answers, ErrorsMayBeToldByErrorObjects) {
    forms_.errorObjects = true;
    process_.session.state.Set(L"menu");
    read();
    EXPECT_THAT(context_.prompts(), ElementsAre(L" Bitte beenden Sie die Menüaktion."));
}

TEST_F(Answers, TheCreationItselfMayBeRefused) {
    process_.plain = true;
    process_.session.state.Set(L"kvd");
    read();
    EXPECT_THAT(context_.prompts(), ElementsAre(HasSubstr(L"KVD-Dateien")));
    process_.session.state.Set(L"");
    read();
    EXPECT_EQ(floors_.GetCountOfRooms(), 2);
}

TEST_F(Answers, ACountThatCannotBeTrueEnds) {
    for (const bool isNumber : {true, false}) {
        forms_.count = isNumber ? Variant(std::numeric_limits<std::int32_t>::max())
                                : Variant(std::numeric_limits<double>::quiet_NaN());
        process_.calls.ResetCount();
        read();
        EXPECT_LE(floors_.GetCountOfRooms(), 2);
        EXPECT_LT(process_.calls.Count(), 60);
        // The attributes' own count as well.
        process_.plain = true;
        read();
        EXPECT_LE(floors_.GetCountOfRooms(), 2);
        clsRoom known;
        known.SetRoomID(L"17-K3");
        known.Geometry->SetTypeAndValue(CalculationByFile, L"missing.txt");
        floors_.AddRooms(known, 1);
        const auto single = MakeComHostServer(std::make_shared<ComSession>(),
                                              HostBulkMembers{nullptr, nullptr, nullptr});
        BridgeContext context(*single);
        EXPECT_THROW(writeTo(*context.bridge(), floors_), RuntimeError);
        EXPECT_EQ(process_.session.drawing.elements.size(), 2u);
        process_.plain = false;
    }
}

} // namespace
} // namespace kalvrooms::testing
