#include "app/clsWait.h"

#include <gtest/gtest.h>

#include <optional>

#include "headless/HeadlessDesktop.h"

namespace kalvrooms::testing {
namespace {

class BusyIndicator : public ::testing::Test {
  protected:
    HeadlessDesktop desktop_;
    std::int16_t pointer() const { return desktop_.MousePointer(); }
};

TEST_F(BusyIndicator, ShowsTheHourglassAndRestoresWhatWasThere) {
    desktop_.MousePointer(2);
    {
        clsWait wait(desktop_);
        EXPECT_EQ(pointer(), 2);
        wait.StartWait();
        EXPECT_EQ(pointer(), Gui::HourglassPointer);
    }
    EXPECT_EQ(pointer(), 2);
}

TEST_F(BusyIndicator, TheInnerOfTwoGuardsEndsTheHourglassTheOuterRestoresItsOwn) {
    desktop_.MousePointer(3);
    std::optional<clsWait> outer(std::in_place, desktop_);
    outer->StartWait();
    {
        clsWait inner(desktop_);
        inner.StartWait();
        EXPECT_EQ(pointer(), Gui::HourglassPointer);
    }
    EXPECT_EQ(pointer(), Gui::DefaultPointer);
    outer.reset();
    EXPECT_EQ(pointer(), 3);
}

TEST_F(BusyIndicator, BreaksForTheUserAndContinues) {
    clsWait wait(desktop_);
    wait.StartWait();
    wait.BreakWait();
    EXPECT_EQ(pointer(), Gui::DefaultPointer);
    wait.ContinueWait();
    EXPECT_EQ(pointer(), Gui::HourglassPointer);
}

TEST_F(BusyIndicator, ContinuingWithoutABreakShowsTheDefault) {
    clsWait wait(desktop_);
    wait.StartWait();
    wait.ContinueWait();
    EXPECT_EQ(pointer(), Gui::DefaultPointer);
}

TEST_F(BusyIndicator, AReleaseInABreakRestoresAndOneWithoutStartLeavesTheDefault) {
    desktop_.MousePointer(2);
    {
        clsWait wait(desktop_);
        wait.StartWait();
        wait.BreakWait();
    }
    EXPECT_EQ(pointer(), 2);
    { clsWait neverStarted(desktop_); }
    EXPECT_EQ(pointer(), Gui::DefaultPointer);
}

} // namespace
} // namespace kalvrooms::testing
