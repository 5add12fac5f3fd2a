#include "model/WholeFile.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <system_error>

#include "support/TemporaryFolder.h"

namespace kalvrooms {
namespace {

TEST(WholeFile, IsWholeOrAsItWas) {
    const auto folder = testing::temporaryFolder("whole-file");
    std::filesystem::create_directories(folder);
    WriteWhole(folder / "a.txt", "first");
    WriteWhole(folder / "a.txt", "two");
    std::ifstream file(folder / "a.txt", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "two");
    file.close();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1);

    std::filesystem::create_directories(folder / "taken" / "in");
    EXPECT_THROW(WriteWhole(folder / "taken", "x"), std::system_error);
    EXPECT_THROW(WriteWhole(folder / "missing" / "a.txt", "x"), std::system_error);
    EXPECT_FALSE(std::filesystem::exists(UnfinishedName(folder / "taken")));
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace kalvrooms
