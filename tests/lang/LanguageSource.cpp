#include "lang/LanguageSource.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "model/Utf8.h"

namespace kalvrooms::testing {

std::map<std::int32_t, std::wstring> TranslationsOf(const std::filesystem::path& path) {
    static const std::regex entry(R"re(([0-9]+) = "((?:[^"]|"")*)"\s*)re");
    std::map<std::int32_t, std::wstring> texts;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        std::smatch parts;
        if (!std::regex_match(line, parts, entry))
            continue;
        const std::wstring text =
            FromUtf8(std::regex_replace(parts[2].str(), std::regex(R"("")"), std::string("\"")));
        EXPECT_TRUE(texts.emplace(std::stoi(parts[1].str()), text).second) << line;
    }
    return texts;
}

} // namespace kalvrooms::testing
