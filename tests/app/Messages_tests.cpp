#include "app/Messages.h"

#include <gtest/gtest.h>

#include "app/clsText.h"
#include "headless/HeadlessSystem.h"

namespace kalvrooms::testing {
namespace {

class Messages : public ::testing::Test {
  protected:
    HeadlessResourceLibraries libraries_;
    HeadlessEnvironment environment_;
    clsText texts_{libraries_, environment_};
};

// The numbers of the runtime in the order of their texts.
const std::vector<long> described = {5,  6,  7,  9,  11,  13,  52,  53,    57,
                                     62, 70, 76, 91, 429, 457, 462, 32755, 440};

TEST_F(Messages, ADescriptionOfTheRuntimeIsGermanUntilALibraryGivesIt) {
    for (const long number : described)
        EXPECT_EQ(DescriptionText(texts_, RuntimeError(number)),
                  RuntimeError(number).description());
    std::map<std::uint32_t, std::wstring> strings;
    for (std::size_t i = 0; i < described.size(); ++i)
        strings[static_cast<std::uint32_t>(200 + i)] = L"text " + std::to_wstring(100 + i);
    libraries_.Put(L"C:\\Quartino\\zorvinta_eng.dll", strings);
    texts_.SetLanguage(L"eng");
    for (std::size_t i = 0; i < described.size(); ++i)
        EXPECT_EQ(DescriptionText(texts_, RuntimeError(described[i])),
                  L"text " + std::to_wstring(100 + i));
    EXPECT_EQ(DescriptionText(texts_, RuntimeError(-2147352567)), L"text 117") << "unknown";
    EXPECT_EQ(DescriptionText(texts_, RuntimeError(13, L"Teilbild ist gesperrt")),
              L"Teilbild ist gesperrt")
        << "a server's own";
}

} // namespace
} // namespace kalvrooms::testing
