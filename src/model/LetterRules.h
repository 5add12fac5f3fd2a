#pragma once
// Letter case and alphabetical order, as the user's system has them.

#include <functional>
#include <string>

namespace kalvrooms {

struct LetterRules {
    // The text with the differences of letter case taken away; the same for every user.
    std::function<std::wstring(const std::wstring& text)> Fold;
    // Bytes whose order is the user's alphabetical order of the texts.
    std::function<std::string(const std::wstring& text)> SortKey;

    // What stands in for a system: letter case by character, order by character code without
    // regard to case.
    static LetterRules Plain();
};

// The platform hands in its own; without any, or with empty ones, the plain ones are used.
void HandInLetterRules(LetterRules rules);

std::wstring FoldedCase(const std::wstring& text);
std::string SortKey(const std::wstring& text);

} // namespace kalvrooms
