#include "ifc/TroubleText.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "drawing/DrawingFile.h"
#include "model/Utf8.h"

namespace kalvrooms::ifc {
namespace {

using Words = std::pair<std::string_view, std::string_view>;

// Where a complaint begins.
constexpr Words beginnings[] = {{"line ", "Zeile "}, {"space #", "Raum #"}};

// What follows the words of a complaint: the value that it is about.
constexpr Words values[] = {{", not ", ", hier steht "}, {" and missing", " und fehlt"}};

// Where one stands within another, the longer one comes first.
constexpr Words kinds[] = {
    // The file.
    {"the file cannot be read", "die Datei ist nicht lesbar"},
    {"the text is no file after ISO 10303-21", "der Text ist keine Datei nach ISO 10303-21"},
    {"the file is no IFC model", "die Datei ist kein IFC-Modell"},
    {"the file ends within its data", "die Datei endet mitten in ihren Daten"},
    {"the file ends within a statement", "die Datei endet mitten in einer Anweisung"},
    {"a comment without an end", "ein Kommentar ohne Ende"},
    {"a text without an end", "ein Text ohne Ende"},
    {"lists nested too deep", "zu tief geschachtelte Listen"},
    {"a parenthesis too many", "eine Klammer zu viel"},
    {"a parenthesis without its end", "eine Klammer ohne Ende"},
    {"a number of an instance that cannot be one", "eine Instanznummer, die keine sein kann"},
    {"'=' is expected behind the number of the instance",
     "hinter der Instanznummer wird '=' erwartet"},
    {"the instance has no arguments", "die Instanz hat keine Argumente"},
    {"the instance stands there twice", "die Instanz steht zweimal da"},
    {"the instance is missing", "die Instanz fehlt"},
    {"neither an instance nor the beginning or end of a section",
     "weder eine Instanz noch Anfang oder Ende eines Abschnitts"},
    {"the file has no number left for an instance",
     "die Datei hat keine Nummer für eine weitere Instanz"},
    {"the model has nothing that a storey could be a part of",
     "das Modell hat nichts, zu dem ein Geschoss gehören könnte"},
    // Values.
    {"a reference to an instance is expected", "ein Verweis auf eine Instanz wird erwartet"},
    {"a number is expected", "eine Zahl wird erwartet"},
    {"a whole number is expected", "eine ganze Zahl wird erwartet"},
    {"a text is expected", "ein Text wird erwartet"},
    {"a word between dots is expected", "ein Wort zwischen Punkten wird erwartet"},
    {"a list is expected", "eine Liste wird erwartet"},
    {"at most three coordinates are expected", "höchstens drei Koordinaten werden erwartet"},
    {"coordinates are expected", "Koordinaten werden erwartet"},
    {"the index of a point is expected", "die Nummer eines Punkts wird erwartet"},
    // Units, places and properties.
    {"a prefix of a unit is expected", "ein Vorsatz einer Einheit wird erwartet"},
    {"a unit with a known size is expected", "eine Einheit bekannter Größe wird erwartet"},
    {"a unit is greater than 0", "eine Einheit ist größer als 0"},
    {"the unit is made of itself", "die Einheit besteht aus sich selbst"},
    {"the unit is made of too many others", "die Einheit besteht aus zu vielen anderen"},
    {"axes are expected", "Achsen werden erwartet"},
    {"a local placement is expected", "eine örtliche Lage wird erwartet"},
    {"the placement stands on itself", "die Lage bezieht sich auf sich selbst"},
    {"an operator of a mapped item is expected", "eine Abbildung wird erwartet"},
    {"the property is within itself", "die Eigenschaft enthält sich selbst"},
    {"the space has too many properties", "der Raum hat zu viele Eigenschaften"},
    // Shapes.
    {"a point is expected", "ein Punkt wird erwartet"},
    {"a direction is expected", "eine Richtung wird erwartet"},
    {"a kind of curve that is known is expected", "eine bekannte Art von Kurve wird erwartet"},
    {"a kind of profile that is known is expected", "eine bekannte Art von Profil wird erwartet"},
    {"a curve that can be trimmed is expected", "eine Kurve, die sich kürzen lässt, wird erwartet"},
    {"a trimming point is expected", "ein Punkt, an dem gekürzt wird, wird erwartet"},
    {"points are expected where a curve of several kinds is trimmed",
     "Punkte werden erwartet, wo eine Kurve aus mehreren Arten gekürzt wird"},
    {"a segment of a composite curve is expected",
     "ein Abschnitt einer zusammengesetzten Kurve wird erwartet"},
    {"a radius greater than 0 is expected", "ein Radius größer als 0 wird erwartet"},
    {"a degree from 1 to 24 is expected", "ein Grad von 1 bis 24 wird erwartet"},
    {"more points than the degree are expected", "mehr Punkte als der Grad werden erwartet"},
    {"a knot for each multiplicity is expected", "ein Knoten zu jeder Vielfachheit wird erwartet"},
    {"the knots do not fit the points", "die Knoten passen nicht zu den Punkten"},
    {"knots that grow are expected", "wachsende Knoten werden erwartet"},
    {"a weight greater than 0 for each point is expected",
     "ein Gewicht größer als 0 zu jedem Punkt wird erwartet"},
    {"a directrix with two points at least is expected",
     "eine Leitkurve mit mindestens zwei Punkten wird erwartet"},
    {"the profiles of both ends do not fit each other",
     "die Profile beider Enden passen nicht zueinander"},
    {"a face with a bound is expected", "eine Fläche mit einem Rand wird erwartet"},
    {"a vertex with a point is expected", "eine Ecke mit einem Punkt wird erwartet"},
    {"the shape is made of too many shapes within each other",
     "die Form besteht aus zu vielen Formen ineinander"},
    {"the shape has too many points", "die Form hat zu viele Punkte"},
    {"the shapes of the model have too many points",
     "die Formen des Modells haben zu viele Punkte"},
    // Rooms.
    {"it stands in no storey", "er steht in keinem Geschoss"},
    {"its ground has ", "sein Grundriss hat "},
    {" parts; the largest one is taken", " Teile; der größte wird genommen"},
    {"it has no shape that can be used", "er hat keine brauchbare Form"},
};

} // namespace

std::string InGerman(std::string trouble) {
    for (const auto& [english, german] : beginnings)
        if (trouble.starts_with(english))
            trouble.replace(0, english.size(), german);
    const auto translate = [&](const Words& kind) {
        const auto& [english, german] = kind;
        const std::size_t at = trouble.find(english);
        if (at == std::string::npos)
            return;
        trouble.replace(at, english.size(), german);
        const std::size_t behind = at + german.size();
        for (const auto& [before, here] : values)
            if (std::string_view(trouble).substr(behind).starts_with(before))
                trouble.replace(behind, before.size(), here);
    };
    std::for_each(std::begin(kinds), std::end(kinds), translate);
    std::for_each(DrawingTroubles.begin(), DrawingTroubles.end(), translate);
    return trouble;
}

std::wstring InGerman(const std::wstring& trouble) {
    return FromUtf8(InGerman(ToUtf8(trouble)));
}

} // namespace kalvrooms::ifc
