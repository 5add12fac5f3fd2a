#include "console/Din277.h"

#include <algorithm>

#include "model/Din277.h"
#include "model/Utf8.h"

namespace kalvrooms::Din277 {

std::string UseOf(std::string_view text) {
    const std::optional<Din277Use> use = ParseDin277Use(FromUtf8(text));
    return use ? ToUtf8(use->Text()) : std::string();
}

const std::vector<std::string>& Uses() {
    static const std::vector<std::string> uses = [] {
        std::vector<std::string> all;
        for (const char* word : {"NF", "HNF", "NNF", "FF", "NUF", "TF", "VF"}) {
            all.emplace_back(word);
            for (int number = 1; IsUse(word + std::to_string(number)); ++number)
                all.push_back(UseOf(word + std::to_string(number)));
        }
        return all;
    }();
    return uses;
}

bool IsUse(std::string_view word) {
    return !UseOf(word).empty();
}

bool IsOldUsefulArea(std::string_view word) {
    const std::string use = UseOf(word);
    return use.starts_with("NF") || use.starts_with("HNF") || use == "NNF";
}

bool IsUsefulArea(std::string_view word) {
    return UseOf(word).starts_with("NUF");
}

bool IsEnclosure(std::string_view word) {
    return word == "a" || word == "b" || word == "c" || word == "bc";
}

bool IsAreaType(std::string_view word) {
    constexpr std::string_view others[] = {"N", "M", "L", "NGF", "NRF", "BGF", "KGF"};
    return IsUse(word) || std::find(std::begin(others), std::end(others), word) != std::end(others);
}

} // namespace kalvrooms::Din277
