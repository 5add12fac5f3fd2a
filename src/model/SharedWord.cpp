#include "model/SharedWord.h"

#include <functional>
#include <set>

namespace kalvrooms {

const std::wstring* SharedWord(std::wstring_view word) {
    static std::set<std::wstring, std::less<>> words;
    const auto known = words.find(word);
    return &*(known != words.end() ? known : words.emplace(word).first);
}

} // namespace kalvrooms
