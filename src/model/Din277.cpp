#include "model/Din277.h"

namespace kalvrooms {
namespace {

struct Word {
    std::wstring_view text;
    int highest; // 0: never with a number
};

constexpr Word words[] = {{L"NUF", 7}, {L"NF", 7}, {L"HNF", 6}, {L"NNF", 0},
                          {L"TF", 0},  {L"VF", 0}, {L"FF", 0}};

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

std::wstring_view withoutBlanks(std::wstring_view text) {
    while (!text.empty() && text.front() == L' ')
        text.remove_prefix(1);
    return text;
}

// The letters at the beginning, in capitals.
std::wstring takeWord(std::wstring_view& text) {
    std::wstring word;
    while (!text.empty()) {
        const wchar_t c = text.front();
        const bool small = c >= L'a' && c <= L'z';
        if (!small && (c < L'A' || c > L'Z'))
            break;
        word += small ? static_cast<wchar_t>(c - L'a' + L'A') : c;
        text.remove_prefix(1);
    }
    return word;
}

// A single digit; 0 where there is none or more than one.
int takeNumber(std::wstring_view text) {
    if (text.empty() || !isDigit(text.front()) || (text.size() > 1 && isDigit(text[1])))
        return 0;
    return text.front() - L'0';
}

} // namespace

std::wstring Din277Use::Text() const {
    return number == 0 ? word : word + L" " + std::to_wstring(number);
}

std::optional<Din277Use> ParseDin277Use(std::wstring_view text) {
    text = withoutBlanks(text);
    const std::wstring word = takeWord(text);
    for (const Word& known : words) {
        if (word != known.text)
            continue;
        const std::wstring_view rest = withoutBlanks(text);
        const int number = takeNumber(rest);
        if (number > known.highest || (number == 0 && !rest.empty() && isDigit(rest.front())))
            return std::nullopt;
        return Din277Use{word, number};
    }
    return std::nullopt;
}

std::optional<Din277Use> Din277UseByNumber(std::wstring_view text) {
    const int number = takeNumber(withoutBlanks(text));
    if (number == 0)
        return std::nullopt;
    if (number <= 7)
        return Din277Use{L"NUF", number};
    return Din277Use{number == 8 ? L"TF" : L"VF", 0};
}

} // namespace kalvrooms
