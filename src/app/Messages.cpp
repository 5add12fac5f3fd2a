#include "app/Messages.h"

#include <cstddef>

#include "app/TextNumbers.h"
#include "model/NumberText.h"

namespace kalvrooms {
namespace {

struct Message {
    std::int32_t number;
    const wchar_t* german;
};

// clang-format off
constexpr Message germanMessages[] = {
    {TextNumber::Title, L"Quartino"},
    {TextNumber::CloseKvdFiles, L"KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte schließen Sie alle KVD-Dateien."},
    {TextNumber::RuntimeErrorTitle, L"Laufzeitfehler %1:"},
    {TextNumber::WithControl, L"Strg+%1"},
    {TextNumber::WithControlAndShift, L"Strg+Umschalt+%1"},
    {TextNumber::InsertKey, L"Einfg"},
    {TextNumber::DeleteKey, L"Entf"},
    {TextNumber::EnterKey, L"Eingabe"},
    {TextNumber::UpKey, L"Nach oben"},
    {TextNumber::DownKey, L"Nach unten"},
    {TextNumber::UnsavedRooms, L"Die Raumliste ist noch nicht gespeichert."},
};
// clang-format on

} // namespace

std::wstring GermanMessage(std::int32_t number) {
    for (const Message& message : germanMessages)
        if (message.number == number)
            return message.german;
    return {};
}

std::wstring MessageText(const Texts& texts, std::int32_t number,
                         const std::vector<std::wstring>& parts) {
    std::wstring pattern = texts.GetText(number);
    if (Trim(pattern).empty())
        pattern = GermanMessage(number);
    std::wstring message;
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        const std::size_t part = at + 1 < pattern.size() && pattern[at] == L'%'
                                     ? static_cast<std::size_t>(pattern[at + 1] - L'1')
                                     : parts.size();
        if (part < parts.size()) {
            message += parts[part];
            ++at;
        } else {
            message += pattern[at];
        }
    }
    return message;
}

} // namespace kalvrooms
