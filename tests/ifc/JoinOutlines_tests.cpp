#include "ifc/JoinOutlines.h"

#include <gtest/gtest.h>

#include <cmath>

namespace kalvrooms::ifc {
namespace {

Outline rectangle(double left, double bottom, double right, double top) {
    return {{left, bottom}, {right, bottom}, {right, top}, {left, top}};
}

TEST(JoinOutlines, TrianglesOfAFloorBecomeItsOutline) {
    const std::vector<Outline> joined = JoinOutlines({{{0, 0}, {2, 0}, {2, 3}},
                                                      {{0, 0}, {2, 3}, {0, 3}},
                                                      {{2, 0}, {4, 3}, {2, 3}},
                                                      {{2, 0}, {4, 0}, {4, 3}}},
                                                     {});
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_EQ(joined[0], rectangle(0, 0, 4, 3)) << "no point is left where the triangles met";
}

TEST(JoinOutlines, AClockwiseOutlineIsTurned) {
    const std::vector<Outline> joined = JoinOutlines({{{0, 0}, {0, 1}, {1, 1}, {1, 0}}}, {});
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_EQ(joined[0], rectangle(0, 0, 1, 1));
}

TEST(JoinOutlines, PiecesThatCrossOrOnlyTouchWithAPartOfAnEdge) {
    EXPECT_NEAR(SignedArea(JoinOutlines({rectangle(0, 0, 4, 2), rectangle(1, -1, 2, 3)}, {})[0]),
                10.0, 1e-9);
    const std::vector<Outline> touching =
        JoinOutlines({rectangle(0, 0, 4, 2), rectangle(1, 2, 2, 3)}, {});
    ASSERT_EQ(touching.size(), 1u);
    EXPECT_NEAR(SignedArea(touching[0]), 9.0, 1e-9);
    EXPECT_EQ(touching[0].size(), 8u);
    EXPECT_EQ(JoinOutlines({rectangle(0, 0, 4, 2), rectangle(0, 0, 4, 2)}, {}).size(), 1u);
}

TEST(JoinOutlines, WhatIsNearIsOne) {
    const std::vector<Outline> joined =
        JoinOutlines({rectangle(0, 0, 2, 2), rectangle(2.0001, 0.0001, 4, 2)}, {});
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_NEAR(SignedArea(joined[0]), 8.0, 0.01);
}

TEST(JoinOutlines, HolesAndWhatLiesInThemAreLeftOut) {
    const std::vector<Outline> joined =
        JoinOutlines({rectangle(0, 0, 6, 1), rectangle(0, 5, 6, 6), rectangle(0, 1, 1, 5),
                      rectangle(5, 1, 6, 5), rectangle(2, 2, 3, 3)},
                     {});
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_EQ(joined[0], rectangle(0, 0, 6, 6));
}

TEST(JoinOutlines, PartsThatMeetInACornerAreTwo) {
    const std::vector<Outline> joined =
        JoinOutlines({rectangle(0, 0, 1, 1), rectangle(1, 1, 3, 3)}, {});
    ASSERT_EQ(joined.size(), 2u);
    EXPECT_EQ(joined[0], rectangle(1, 1, 3, 3)) << "the largest first";
}

TEST(JoinOutlines, LinesEncloseTogetherAndLooseEndsAreCut) {
    const std::vector<Outline> joined = JoinOutlines(
        {}, {{{0, 0}, {2, 0}}, {{2, 2}, {2, 0}}, {{2, 2}, {0, 2}, {0, 0}}, {{2, 2}, {3, 3}}});
    ASSERT_EQ(joined.size(), 1u);
    EXPECT_EQ(joined[0], rectangle(0, 0, 2, 2));
    EXPECT_TRUE(JoinOutlines({}, {{{0, 0}, {2, 0}, {2, 2}}}).empty());
}

TEST(JoinOutlines, TakesAnyNumberOfLoopsAtOnePoint) {
    std::vector<Outline> petals;
    for (int i = 0; i < 20'000; ++i) {
        const double angle = i * 3e-4;
        petals.push_back({{0, 0},
                          {100 * std::cos(angle), 100 * std::sin(angle)},
                          {100 * std::cos(angle + 1e-4), 100 * std::sin(angle + 1e-4)},
                          {0, 0}});
    }
    EXPECT_FALSE(JoinOutlines({}, petals).empty());
}

TEST(JoinOutlines, FarFromTheOriginAndWithPointsMirroredAboutIt) {
    EXPECT_NEAR(SignedArea(JoinOutlines({rectangle(4.5e6, 5.8e6, 4.5e6 + 4, 5.8e6 + 5)}, {})[0]),
                20.0, 1e-6);
    const Outline z{{-.5, -2.5}, {3.5, -2.5}, {3.5, -1.5}, {.5, -1.5},
                    {.5, 2.5},   {-3.5, 2.5}, {-3.5, 1.5}, {-.5, 1.5}};
    EXPECT_NEAR(SignedArea(JoinOutlines({z}, {})[0]), 11.0, 1e-9);
}

} // namespace
} // namespace kalvrooms::ifc
