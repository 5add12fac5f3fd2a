#include "ui/ShortcutText.h"

#include "app/Messages.h"
#include "app/TextNumbers.h"

namespace kalvrooms {
namespace {

std::wstring nameOf(int key, const Texts& texts) {
    switch (key) {
    case Gui::KeyEnter:
        return MessageText(texts, TextNumber::EnterKey);
    case Gui::KeyUpArrow:
        return MessageText(texts, TextNumber::UpKey);
    case Gui::KeyDownArrow:
        return MessageText(texts, TextNumber::DownKey);
    case Gui::KeyInsert:
        return MessageText(texts, TextNumber::InsertKey);
    case Gui::KeyDelete:
        return MessageText(texts, TextNumber::DeleteKey);
    case Gui::KeyF2:
        return L"F2";
    default:
        return std::wstring(1, static_cast<wchar_t>(key));
    }
}

std::wstring textOf(const Gui::KeyStroke& stroke, const Texts& texts) {
    const std::wstring name = nameOf(stroke.key, texts);
    if (!stroke.control)
        return name;
    return MessageText(
        texts, stroke.shift ? TextNumber::WithControlAndShift : TextNumber::WithControl, {name});
}

} // namespace

std::wstring ShortcutText(const std::vector<Gui::KeyStroke>& keys, const Texts& texts) {
    std::wstring shown;
    for (const Gui::KeyStroke& key : keys)
        shown += (shown.empty() ? L"" : L", ") + textOf(key, texts);
    return shown;
}

} // namespace kalvrooms
