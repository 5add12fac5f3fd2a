#include "practice/host/ShownStorey.h"

#include <gmock/gmock.h>

namespace kalvrooms::practice {
namespace {

TEST(ShownStorey, IsOneAfterTheOtherAndThenAll) {
    Scene scene;
    scene.storeys = {{L"EG"}, {L"OG"}};
    ShownStorey shown;
    EXPECT_EQ(shown.In(scene), std::nullopt);
    for (const std::optional<std::size_t> expected :
         {std::optional<std::size_t>(0), std::optional<std::size_t>(1), {}}) {
        shown.Step(scene, true);
        EXPECT_EQ(shown.In(scene), expected);
    }
    shown.Step(scene, false);
    EXPECT_EQ(shown.In(scene), 1u);
    // A storey that goes and comes back is shown again.
    EXPECT_EQ(shown.In({}), std::nullopt);
    EXPECT_EQ(shown.In(scene), 1u);
    shown.ShowAll();
    shown.Show(L"EG");
    EXPECT_EQ(shown.In(scene), 0u);
}

} // namespace
} // namespace kalvrooms::practice
