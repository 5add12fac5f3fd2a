#include "app/clsText.h"

#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

struct DefaultText {
    std::int32_t number;
    const wchar_t* text;
};

// clang-format off
constexpr DefaultText germanTexts[] = {
    {1, L" Quartino"},
    {2, L" OK"},
    {3, L" Abbrechen"},
    {4, L" &Datei"},
    {5, L" &Neu ..."},
    {6, L" Öffnen ..."},
    {7, L" &Speichern"},
    {8, L" Speichern &unter"},
    {9, L" Räume &aus dem Teilbild lesen"},
    {10, L" Räume im Teilbild erzeugen"},
    {11, L" Beenden"},
    {12, L" &Bearbeiten"},
    {13, L" Raum &hinzufügen ..."},
    {14, L" Raum &modifizieren ..."},
    {15, L" Raum löschen"},
    {16, L" Aufsteigend sortieren"},
    {17, L" Absteigend sortieren"},
    {18, L" &Extras"},
    {19, L" Optionen ..."},
    {20, L" Bezeichnung "},
    {21, L" Funktion"},
    {22, L" Fläche in qm"},
    {23, L" Geschoss"},
    {24, L" Umschließungsart"},
    {25, L" Nutzungsart"},
    {26, L" Flächenart"},
    {27, L" Raumattribute"},
    {28, L" Geschoss Kurzbezeichnung:"},
    {29, L" Es wurde"},
    {30, L" Geometrie"},
    {31, L" Bezeichnung:"},
    {32, L" Funktion:"},
    {33, L" Fläche in qm:"},
    {34, L" Grundflächen Geometrie"},
    {35, L" Geometrie ..."},
    {36, L" Umschließungsart:"},
    {37, L" Nutzungsart:"},
    {38, L" "},
    {39, L" Anzahl:"},
    {40, L" Geometrie durch Definition der Ausdehnung in X-Richtung festlegen"},
    {41, L" Geometrie durch Definition der Ausdehnung in Y-Richtung festlegen"},
    {42, L" Geometrie aus dem Verhältnis dx zu dy berechnen"},
    {43, L" dx in m:"},
    {44, L" dy in m:"},
    {45, L" dx/dy:"},
    {46, L" Geometrie aus Excel importieren"},
    {47, L" Anordnung"},
    {48, L" Anordnung neuer Räume im Teilbild"},
    {49, L" Neue Räume einzeln absetzen"},
    {50, L" Neue Räume als Block absetzen"},
    {51, L" Abstand in X-Richtung in m:"},
    {52, L" Abstand in Y-Richtung in m:"},
    {53, L" Darstellung"},
    {54, L" Räume deren Koordinaten bekannt sind"},
    {55, L" Räume die am Fadenkreuz abgesetzt werden"},
    {56, L" Aktualisierungsbericht anzeigen"},
    {57, L" Es wurden"},
    {58, L" Raum aktualisiert"},
    {59, L" Räume aktualisiert"},
    {60, L" neuer Raum lagerichtig erzeugt"},
    {61, L" neue Räume lagerichtig erzeugt"},
    {62, L" neuer Raum abgesetzt"},
    {63, L" neue Räume abgesetzt"},
    {64, L" Diese Meldung nicht mehr anzeigen."},
    {65, L" Sie können diese Meldung unter Optionen aktivieren."},
    {66, L" Sollen Ihre Änderungen gespeichert werden?"},
    {67, L" Ihre Raumliste besteht aus mehr als 150 Räumen. Bitte beachten Sie, mit dem Quatrinoen"},
    {68, L" können maximal 150 Räume bearbeitet werden."},
    {69, L" Bitte geben Sie eine Geschoss Kurzbezeichung ein."},
    {70, L" Räume aus KVD-Dateien können nicht gelesen werden."},
    {71, L" Im Quartinoen wurden noch keine Räume eingeben."},
    {72, L" Die Raumliste besteht aus mehr als 150 Räumen. Es können maximal 150 Räume übertragen werden."},
    {73, L" Exceldateien können nur gelesen werden, wenn Excel installiert ist."},
    {74, L" Abstände müssen größer als Null sein."},
    {76, L" KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte schließen Sie alle KVD-Dateien."},
    {77, L" Für die Raumbezeichnung können nur 32 Zeichen übernommen werden."},
    {78, L" Für die Geschoss Kurzbezeichnung können nur 32 Zeichen übernommen werden."},
    {79, L" Für die Funktion können nur 32 Zeichen übernommen werden."},
    {80, L" Bitte beenden Sie die Menüaktion."},
    {81, L" TF"},
    {82, L" VF"},
    {83, L" HNF"},
    {84, L" NNF"},
    {85, L" FF"},
    {86, L" NF"},
    {87, L" Flächenart:"},
    {88, L" N"},
    {89, L" M"},
    {90, L" L"},
    {91, L" kein Eintrag"},
    {92, L" Nutzen"},
    {93, L" Flächenart_DIN277"},
    {94, L" Länge (Dx)"},
    {95, L" Breite(Dy)"},
    {96, L" Raum-ID"},
    {97, L" Raum hinzufügen "},
    {98, L" Raum modifizieren "},
};
// clang-format on

// Characters with which a code would name another folder or no file at all.
constexpr const wchar_t* notInFileNames = L"\\/:*?\"<>|";

} // namespace

clsText::clsText(ResourceLibraries& libraries, const Environment& environment)
    : libraries_(libraries), environment_(environment) {
    for (const DefaultText& entry : germanTexts)
        texts_[static_cast<std::size_t>(entry.number)] = entry.text;
}

void clsText::SetLanguage(const std::wstring& code) {
    if (code.size() == 3 && code != L"xxx")
        LoadLanguageDll(L"zorvinta_" + code + L".dll");
}

std::wstring clsText::GetText(std::int32_t number) const {
    if (number < 0 || number > LastText)
        throw RuntimeError(RuntimeError::SubscriptOutOfRange);
    return texts_[static_cast<std::size_t>(number)];
}

std::wstring clsText::GetTextWithoutDot(std::int32_t number) const {
    std::wstring text = GetText(number);
    const std::size_t dots = text.find(L"...");
    if (dots != std::wstring::npos && dots > 0)
        text.resize(dots);
    return text;
}

void clsText::LoadLanguageDll(const std::wstring& fileName) {
    if (fileName.find_first_of(notInFileNames) != std::wstring::npos ||
        fileName.find(L'\0') != std::wstring::npos)
        return;
    std::wstring path = environment_.ExecutableFolder();
    if (path.empty() || path.back() != L'\\')
        path += L'\\';
    const auto library = libraries_.Load(path + fileName);
    if (!library)
        return;
    for (std::int32_t number = 1; number <= LastText; ++number) {
        std::wstring text = library->String(static_cast<std::uint32_t>(number) + FirstResource);
        if (!text.empty())
            texts_[static_cast<std::size_t>(number)] = std::move(text);
    }
}

} // namespace kalvrooms
