#include "files/PointArray.h"

#include "FileContext.h"

namespace kalvrooms {
namespace {

TEST(PointArray, StartsUnset) {
    const PointArray points;
    EXPECT_FALSE(points.IsSet());
    EXPECT_EQ(points.Count(), 0);
    EXPECT_EQ(errorOf([&] { points.X(0); }), RuntimeError::SubscriptOutOfRange);
}

TEST(PointArray, IsDimensionedWithZeroes) {
    PointArray points;
    points.Add(1.0, 2.0);
    points.Dimension(3);
    EXPECT_TRUE(points.IsSet());
    EXPECT_EQ(points.Count(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(points.X(i), 0.0);
        EXPECT_EQ(points.Y(i), 0.0);
    }
    points.Set(1, 5.0, 6.0);
    EXPECT_EQ(points.X(0), 0.0);
    EXPECT_EQ(points.X(1), 5.0);
    EXPECT_EQ(points.Y(1), 6.0);
    EXPECT_EQ(points.Y(2), 0.0);
}

TEST(PointArray, RefusesImpossibleShapesAndIndices) {
    PointArray points;
    points.Add(1.0, 2.0);
    EXPECT_EQ(errorOf([&] { points.Dimension(0); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { points.Dimension(-1); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { points.Dimension(2'000'000'000); }), RuntimeError::OutOfMemory);
    EXPECT_EQ(points.Count(), 1);
    EXPECT_EQ(points.Y(0), 2.0);
    EXPECT_EQ(errorOf([&] { points.X(-1); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { points.Y(1); }), RuntimeError::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { points.Set(1, 0.0, 0.0); }), RuntimeError::SubscriptOutOfRange);
}

TEST(PointArray, TakesNoMemoryForAPromise) {
    PointArray points;
    points.Dimension(PointArray::MostPoints);
    EXPECT_EQ(points.Count(), PointArray::MostPoints);
    EXPECT_EQ(points.X(PointArray::MostPoints - 1), 0.0);
    EXPECT_EQ(errorOf([&] { points.Add(0.0, 0.0); }), RuntimeError::OutOfMemory);
}

TEST(PointArray, GrowsByAdding) {
    PointArray points;
    points.Dimension(2);
    points.Add(7.0, 8.0);
    EXPECT_EQ(points.Count(), 3);
    EXPECT_EQ(points.X(1), 0.0);
    EXPECT_EQ(points.X(2), 7.0);
}

} // namespace
} // namespace kalvrooms
