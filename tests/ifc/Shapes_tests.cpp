#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "ifc/Building.h"
#include "ifc/JoinOutlines.h"
#include "ifc/Samples.h"

namespace kalvrooms::ifc {
namespace {

class ShapeSamples : public ::testing::TestWithParam<Sample> {};

TEST_P(ShapeSamples, HaveTheirAreaAndTheirBox) {
    const Sample& sample = GetParam();
    const StepFile file(sample.model.Text());
    const Building building(file);
    for (const std::string& trouble : building.Troubles())
        ADD_FAILURE() << trouble;
    ASSERT_EQ(building.Rooms().size(), 1u);
    const Outline& outline = building.Rooms()[0].outline;
    ASSERT_GE(outline.size(), 3u);
    // Arcs are met within 5 mm.
    EXPECT_NEAR(SignedArea(outline), sample.area, std::max(1e-6, 0.005 * sample.area));
    EXPECT_EQ(building.Rooms()[0].areaFrom, AreaFrom::Outline);
    const auto [left, right] = std::minmax_element(
        outline.begin(), outline.end(), [](const Point& a, const Point& b) { return a.x < b.x; });
    const auto [bottom, top] = std::minmax_element(
        outline.begin(), outline.end(), [](const Point& a, const Point& b) { return a.y < b.y; });
    EXPECT_NEAR(left->x, sample.box.left, 0.005);
    EXPECT_NEAR(right->x, sample.box.right, 0.005);
    EXPECT_NEAR(bottom->y, sample.box.bottom, 0.005);
    EXPECT_NEAR(top->y, sample.box.top, 0.005);
}

std::string nameOf(const ::testing::TestParamInfo<Sample>& info) {
    std::string name = info.param.name;
    std::erase_if(name, [](char c) { return c == '-'; });
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}
INSTANTIATE_TEST_SUITE_P(Every, ShapeSamples, ::testing::ValuesIn(Samples()), nameOf);

} // namespace
} // namespace kalvrooms::ifc
