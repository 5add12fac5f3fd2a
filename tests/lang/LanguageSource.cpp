#include "lang/LanguageSource.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

namespace kalvrooms::testing {
namespace {

std::wstring fromUtf8(const std::string& bytes) {
    std::wstring text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i++]);
        const int more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : 2;
        std::uint32_t code = more == 0 ? lead : lead & (more == 1 ? 0x1Fu : 0x0Fu);
        for (int k = 0; k < more && i < bytes.size(); ++k)
            code = code << 6 | (static_cast<unsigned char>(bytes[i++]) & 0x3Fu);
        text.push_back(static_cast<wchar_t>(code));
    }
    return text;
}

} // namespace

std::map<std::int32_t, std::wstring> TranslationsOf(const std::filesystem::path& path) {
    static const std::regex entry(R"re(([0-9]+) = "((?:[^"]|"")*)"\s*)re");
    std::map<std::int32_t, std::wstring> texts;
    std::ifstream file(path, std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        std::smatch parts;
        if (!std::regex_match(line, parts, entry))
            continue;
        const std::wstring text =
            fromUtf8(std::regex_replace(parts[2].str(), std::regex(R"("")"), std::string("\"")));
        EXPECT_TRUE(texts.emplace(std::stoi(parts[1].str()), text).second) << line;
    }
    return texts;
}

} // namespace kalvrooms::testing
