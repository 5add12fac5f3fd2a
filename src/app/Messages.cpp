#include "app/Messages.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

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
    {TextNumber::ListNotSaved, L"Die Raumliste wurde nicht gespeichert."},
    {TextNumber::ListNotRead, L"Die Raumliste konnte nicht gelesen werden."},
    {TextNumber::ListNotReadWhole, L"Die Raumliste wurde nicht ganz gelesen: Zeile %1 und alles danach fehlt."},
    {TextNumber::FileLine, L"Datei: %1"},
    {TextNumber::ReasonLine, L"Grund: %1"},
    {TextNumber::RoomLine, L"Raum: \"%1\" im Geschoss \"%2\""},
    {TextNumber::OldFileIsThere, L"Die bisherige Liste ist unverändert erhalten: %1"},
    {TextNumber::FileChanged, L"Die Datei wurde inzwischen von jemand anderem geändert. Soll sie trotzdem überschrieben werden?"},
    {TextNumber::SpreadsheetIsBusy, L"Das Programm für Excel-Dateien ist gerade beschäftigt. Bitte beenden Sie dort Ihre Eingabe und versuchen Sie es noch einmal."},
    {TextNumber::RoomWithNegativeArea, L"Der Raum \"%1\" im Geschoss \"%2\" hat eine negative Fläche."},
    {TextNumber::NegativeArea, L"Bitte geben Sie eine Fläche ein, die nicht negativ ist."},
    {TextNumber::RoomsReadInPart, L"Räume, die nicht vollständig gelesen werden konnten: %1. Was fehlt, bleibt im Teilbild erhalten; Umschließung, Nutzung und Flächenart dieser Räume werden nicht ins Teilbild geschrieben, solange Quartino läuft."},
    {TextNumber::NoProjectFolder, L"Der Projektordner ist nicht bekannt. Die Räume wurden ohne ihre Umrisse gelesen."},
    {TextNumber::HostIsGone, L"Die CAD-Anwendung antwortet nicht mehr. Gelesene Räume: %1 von %2."},
    {TextNumber::ReadingGivenUp, L"Zu viele Räume hintereinander konnten nicht gelesen werden. Gelesene Räume: %1 von %2."},
    {TextNumber::ReadingEnded, L"Das Lesen wurde beendet. Gelesene Räume: %1 von %2."},
    {TextNumber::WritingEnded, L"Das Erzeugen wurde beendet. Erzeugte oder aktualisierte Räume: %1 von %2."},
    {TextNumber::PlacingFailed, L"Die Räume konnten nicht abgesetzt werden: %1"},
    {TextNumber::ReadingProgress, L"Raum %1 von %2 wird gelesen (Esc beendet)"},
    {TextNumber::WritingProgress, L"Raum %1 von %2 wird erzeugt (Esc beendet)"},
    {TextNumber::DrawingNotRead, L"Das Teilbild konnte nicht gelesen werden: %1"},
    {TextNumber::WithControl, L"Strg+%1"},
    {TextNumber::WithControlAndShift, L"Strg+Umschalt+%1"},
    {TextNumber::InsertKey, L"Einfg"},
    {TextNumber::DeleteKey, L"Entf"},
    {TextNumber::EnterKey, L"Eingabe"},
    {TextNumber::UpKey, L"Nach oben"},
    {TextNumber::DownKey, L"Nach unten"},
    {TextNumber::UnsavedRooms, L"Die Raumliste ist noch nicht gespeichert."},
    {TextNumber::TooManyAtOnce, L"Bitte geben Sie als Anzahl höchstens 99999 ein."},
    {TextNumber::OutlinesNotStored, L"Umrisse, die nicht gespeichert werden konnten: %1. Im Teilbild bleiben sie erhalten. Bitte prüfen Sie, ob in den Projektordner geschrieben werden kann, und lesen Sie die Räume dann noch einmal."},
};
// clang-format on

// The errors whose descriptions are texts from FirstDescription on. The last stands for all others.
constexpr long describedErrors[] = {
    RuntimeError::InvalidProcedureCall, RuntimeError::Overflow,
    RuntimeError::OutOfMemory,          RuntimeError::SubscriptOutOfRange,
    RuntimeError::DivisionByZero,       RuntimeError::TypeMismatch,
    RuntimeError::BadFileName,          RuntimeError::FileNotFound,
    RuntimeError::DeviceError,          RuntimeError::InputPastEndOfFile,
    RuntimeError::PermissionDenied,     RuntimeError::PathNotFound,
    RuntimeError::ObjectVariableNotSet, RuntimeError::CannotCreateObject,
    RuntimeError::KeyAlreadyInUse,      RuntimeError::ServerUnavailable,
    RuntimeError::DialogCancelled,      RuntimeError::AutomationError};
constexpr std::int32_t countOfDescriptions = std::size(describedErrors);

} // namespace

std::wstring GermanMessage(std::int32_t number) {
    for (const Message& message : germanMessages)
        if (message.number == number)
            return message.german;
    const std::int32_t described = number - TextNumber::FirstDescription;
    if (described >= 0 && described < countOfDescriptions)
        return RuntimeError(describedErrors[described]).description();
    return {};
}

std::wstring DescriptionText(const Texts& texts, const RuntimeError& error) {
    if (!error.hasOwnDescription())
        return error.description();
    const long* const found =
        std::find(std::begin(describedErrors), std::end(describedErrors) - 1, error.number());
    return MessageText(texts, TextNumber::FirstDescription +
                                  static_cast<std::int32_t>(found - std::begin(describedErrors)));
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
