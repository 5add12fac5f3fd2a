#include "app/clsRegistry.h"

#include <gmock/gmock.h>

#include "headless/HeadlessSystem.h"

namespace kalvrooms::testing {
namespace {

using ::testing::ElementsAre;
using Operation = HeadlessRegistry::Operation;

class Settings : public ::testing::Test {
  protected:
    void get() {
        settings_.GetSettings(L"Software\\Host", noReport_, left_, top_, height_, width_, new_,
                              old_);
    }
    HeadlessRegistry registry_;
    clsRegistry settings_{registry_};
    bool noReport_ = true;
    std::int32_t left_ = -1, top_ = -2, height_ = -3, width_ = -4, new_ = -5, old_ = -6;
    const std::wstring key_ = L"Software\\Host\\QTO";
};

TEST_F(Settings, AreWrittenAsOneBlockInTheirOrder) {
    settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
    const auto& calls = registry_.Calls();
    ASSERT_GE(calls.size(), 9u);
    EXPECT_EQ(calls[0].What, Operation::Create);
    EXPECT_EQ(calls[0].Path, key_);
    EXPECT_EQ(calls[0].Class, L"0");
    EXPECT_EQ(calls[0].Options, 0u);
    EXPECT_EQ(calls[0].AccessMask, 0x4001Fu);
    std::vector<std::wstring> names;
    for (std::size_t i = 1; i <= 7; ++i) {
        EXPECT_EQ(calls[i].What, Operation::Set);
        EXPECT_EQ(calls[i].Type, HeadlessRegistry::TypeDword);
        names.push_back(calls[i].Name);
    }
    EXPECT_THAT(names, ElementsAre(L"Report", L"Height", L"Width", L"Top", L"Left", L"ColorOld",
                                   L"ColorNew"));
    EXPECT_EQ(calls[8].What, Operation::Close);
    EXPECT_EQ(registry_.Number(key_, L"Report"), 2);
    EXPECT_EQ(registry_.Number(key_, L"Left"), 1);
    EXPECT_EQ(registry_.Number(key_, L"Top"), 2);
    EXPECT_EQ(registry_.Number(key_, L"Height"), 3);
    EXPECT_EQ(registry_.Number(key_, L"Width"), 4);
    EXPECT_EQ(registry_.Number(key_, L"ColorNew"), 5);
    EXPECT_EQ(registry_.Number(key_, L"ColorOld"), 6);
}

TEST_F(Settings, AReportThatIsShownIsStoredAsOne) {
    settings_.SetSettings(L"Software\\Host", false, 1, 2, 3, 4, 5, 6);
    EXPECT_EQ(registry_.Number(key_, L"Report"), 1);
}

TEST_F(Settings, NothingIsWrittenWithoutTheKeyAndASingleFailureDoesNotStopTheRest) {
    registry_.FailCreate = true;
    settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
    EXPECT_FALSE(registry_.HasKey(key_));
    registry_.FailCreate = false;
    registry_.FailSet = true;
    registry_.ForgetCalls();
    settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
    EXPECT_EQ(registry_.Calls().size(), 9u);
    EXPECT_EQ(registry_.OpenKeys(), 0);
}

TEST_F(Settings, AreReadBack) {
    settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
    registry_.ForgetCalls();
    noReport_ = false;
    get();
    EXPECT_EQ(registry_.Calls()[0].AccessMask, 0x20019u);
    EXPECT_TRUE(noReport_);
    EXPECT_THAT((std::vector{left_, top_, height_, width_, new_, old_}),
                ElementsAre(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(registry_.OpenKeys(), 0);
}

TEST_F(Settings, OnlyTheValueTwoSwitchesTheReportOff) {
    settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
    for (const std::int32_t value : {0, 1, 3, -2}) {
        registry_.Put(key_, L"Report", value);
        noReport_ = true;
        get();
        EXPECT_FALSE(noReport_) << value;
    }
    registry_.Remove(key_, L"Report");
    noReport_ = true;
    get();
    EXPECT_FALSE(noReport_);
    EXPECT_EQ(height_, 3);
}

TEST_F(Settings, WithoutKeyHeightOrWidthTheGeometryIsZeroAndTheColoursStay) {
    get();
    EXPECT_FALSE(noReport_);
    EXPECT_THAT((std::vector{left_, top_, height_, width_, new_, old_}),
                ElementsAre(0, 0, 0, 0, -5, -6));
    for (const wchar_t* missing : {L"Height", L"Width"}) {
        settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
        registry_.Remove(key_, missing);
        left_ = top_ = height_ = width_ = 9;
        get();
        EXPECT_TRUE(noReport_);
        EXPECT_THAT((std::vector{left_, top_, height_, width_, new_, old_}),
                    ElementsAre(0, 0, 0, 0, -5, -6));
    }
}

TEST_F(Settings, APositionOrColourThatIsMissingLeavesTheCallersValue) {
    settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
    for (const wchar_t* missing : {L"Top", L"Left", L"ColorOld", L"ColorNew"})
        registry_.Remove(key_, missing);
    get();
    EXPECT_THAT((std::vector{left_, top_, height_, width_, new_, old_}),
                ElementsAre(-1, -2, 3, 4, -5, -6));
}

TEST_F(Settings, AValueOfAnotherTypeCountsAsMissing) {
    settings_.SetSettings(L"Software\\Host", true, 1, 2, 3, 4, 5, 6);
    registry_.Put(key_, L"Top", {HeadlessRegistry::TypeString, {'1', 0, 0, 0}});
    registry_.Put(key_, L"Left", {HeadlessRegistry::TypeDword, {1, 0, 0, 0, 0, 0, 0, 0}});
    get();
    EXPECT_EQ(top_, -2);
    EXPECT_EQ(left_, -1);
}

TEST_F(Settings, AnEmptyKeyPathStandsDirectlyBelowTheHive) {
    settings_.SetSettings(L"", true, 1, 2, 3, 4, 5, 6);
    EXPECT_EQ(registry_.Calls()[0].Path, L"\\QTO");
    settings_.GetSettings(L"", noReport_, left_, top_, height_, width_, new_, old_);
    EXPECT_EQ(height_, 3);
}

} // namespace
} // namespace kalvrooms::testing
