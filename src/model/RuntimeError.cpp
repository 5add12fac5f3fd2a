#include "model/RuntimeError.h"

#include <utility>

namespace kalvrooms {

namespace {

std::wstring descriptionOf(long number) {
    switch (number) {
    case RuntimeError::InvalidProcedureCall:
        return L"Unzulässiger Aufruf oder unzulässiges Argument";
    case RuntimeError::Overflow:
        return L"Überlauf";
    case RuntimeError::OutOfMemory:
        return L"Der Speicher reicht nicht aus";
    case RuntimeError::SubscriptOutOfRange:
        return L"Index außerhalb der Grenzen";
    case RuntimeError::DivisionByZero:
        return L"Division durch Null";
    case RuntimeError::TypeMismatch:
        return L"Typen unverträglich";
    case RuntimeError::BadFileName:
        return L"Dateiname ist unbrauchbar";
    case RuntimeError::FileNotFound:
        return L"Datei wurde nicht gefunden";
    case RuntimeError::DeviceError:
        return L"Fehler beim Lesen oder Schreiben";
    case RuntimeError::InputPastEndOfFile:
        return L"Über das Dateiende hinaus gelesen";
    case RuntimeError::PermissionDenied:
        return L"Zugriff wurde verweigert";
    case RuntimeError::PathNotFound:
        return L"Pfad wurde nicht gefunden";
    case RuntimeError::ObjectVariableNotSet:
        return L"Objektvariable ist nicht belegt";
    case RuntimeError::CannotCreateObject:
        return L"Die Komponente kann kein Objekt erzeugen";
    case RuntimeError::KeyAlreadyInUse:
        return L"Der Schlüssel ist schon vergeben";
    case RuntimeError::ServerUnavailable:
        return L"Der Server ist nicht mehr erreichbar";
    case RuntimeError::DialogCancelled:
        return L"Der Dialog wurde abgebrochen";
    default:
        return L"Automatisierungsfehler";
    }
}

std::string asciiForm(const std::wstring& text) {
    std::string ascii;
    ascii.reserve(text.size());
    for (const wchar_t c : text) {
        switch (c) {
        case L'ä':
            ascii += "ae";
            break;
        case L'ö':
            ascii += "oe";
            break;
        case L'ü':
            ascii += "ue";
            break;
        case L'Ä':
            ascii += "Ae";
            break;
        case L'Ö':
            ascii += "Oe";
            break;
        case L'Ü':
            ascii += "Ue";
            break;
        case L'ß':
            ascii += "ss";
            break;
        default:
            ascii += (c >= L' ' && c <= L'~') ? static_cast<char>(c) : '?';
        }
    }
    return ascii;
}

} // namespace

RuntimeError::RuntimeError(long number) : RuntimeError(number, std::wstring()) {}

RuntimeError::RuntimeError(long number, std::wstring description)
    : number_(number), ownDescription_(description.empty()),
      description_(description.empty() ? descriptionOf(number) : std::move(description)),
      what_("runtime error " + std::to_string(number) + ": " + asciiForm(description_)) {}

} // namespace kalvrooms
