#include "model/LetterRules.h"

#include <locale>
#include <stdexcept>
#include <utility>

#include "model/Utf8.h"

namespace kalvrooms {
namespace {

// The letters of all scripts where the C library knows them.
const std::locale& letters() {
    static const std::locale locale = [] {
        try {
            return std::locale("C.UTF-8");
        } catch (const std::runtime_error&) {
            return std::locale::classic();
        }
    }();
    return locale;
}

std::wstring plainFold(const std::wstring& text) {
    std::wstring folded = text;
    std::use_facet<std::ctype<wchar_t>>(letters()).toupper(folded.data(),
                                                           folded.data() + folded.size());
    return folded;
}

LetterRules& handedIn() {
    static LetterRules rules = LetterRules::Plain();
    return rules;
}

} // namespace

LetterRules LetterRules::Plain() {
    return {plainFold, [](const std::wstring& text) { return ToUtf8(plainFold(text)); }};
}

void HandInLetterRules(LetterRules rules) {
    handedIn() = rules.Fold && rules.SortKey ? std::move(rules) : LetterRules::Plain();
}

std::wstring FoldedCase(const std::wstring& text) {
    return handedIn().Fold(text);
}

std::string SortKey(const std::wstring& text) {
    return handedIn().SortKey(text);
}

} // namespace kalvrooms
