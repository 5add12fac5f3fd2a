#include "model/WholeFile.h"

#include <gtest/gtest.h>

#include <system_error>

#include "support/TemporaryFolder.h"

namespace kalvrooms {
namespace {

TEST(WholeFile, IsWholeOrAsItWas) {
    const TemporaryFolder folder;
    WriteWhole(folder / "a.txt", "first");
    WriteWhole(folder / "a.txt", "two");
    EXPECT_EQ(readBytes(folder / "a.txt"), "two");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);

    std::filesystem::create_directories(folder / "taken" / "in");
    EXPECT_THROW(WriteWhole(folder / "taken", "x"), std::system_error);
    EXPECT_THROW(WriteWhole(folder / "missing" / "a.txt", "x"), std::system_error);
    EXPECT_FALSE(std::filesystem::exists(UnfinishedName(folder / "taken")));
}

} // namespace
} // namespace kalvrooms
