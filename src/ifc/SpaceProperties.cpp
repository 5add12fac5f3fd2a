#include "ifc/SpaceProperties.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "ifc/Names.h"
#include "model/Din277.h"

namespace kalvrooms::ifc {
namespace {

// Properties within properties, references to references.
constexpr int mostNested = 8;

constexpr int propertyRank = 10;
constexpr int plannedRank = 20;

template <std::size_t Count>
bool isOneOf(std::wstring_view name, const std::wstring_view (&names)[Count]) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

AreaFrom areaByName(std::wstring_view name) {
    constexpr std::wstring_view net[] = {L"netfloorarea",
                                         L"netarea",
                                         L"nettogrundflaeche",
                                         L"nettoflaeche",
                                         L"nettoraumflaeche",
                                         L"nettobodenflaeche",
                                         L"ngf",
                                         L"nrf"};
    constexpr std::wstring_view gross[] = {L"grossfloorarea",     L"grossarea",
                                           L"bruttogrundflaeche", L"bruttoflaeche",
                                           L"bruttobodenflaeche", L"bgf"};
    return isOneOf(name, net)     ? AreaFrom::Net
           : isOneOf(name, gross) ? AreaFrom::Gross
                                  : AreaFrom::Any;
}

bool isOfSomethingElse(std::wstring_view name) {
    for (const wchar_t* part : {L"wall", L"wand", L"ceiling", L"decke", L"window", L"fenster",
                                L"door", L"tuer", L"opening", L"oeffnung", L"roof", L"dach",
                                L"surface", L"side", L"mantel", L"fassade", L"facade"})
        if (name.find(part) != std::wstring_view::npos)
            return true;
    return false;
}

class Reader {
  public:
    Reader(const StepFile& file, const Units& units, std::vector<std::string>& troubles)
        : file_(file), units_(units), troubles_(troubles) {}

    SpaceProperties Run(const Relations& relations, InstanceId space) {
        for (const Attached& attached : relations.DefinitionsOf(space))
            attempt([&] { definition(attached); });
        for (const InstanceId reference : relations.ClassesOf(space))
            attempt([&] { classification(reference); });
        std::stable_sort(read_.areas.begin(), read_.areas.end(),
                         [](const SpaceArea& a, const SpaceArea& b) { return a.rank < b.rank; });
        return std::move(read_);
    }

  private:
    template <class Step>
    void attempt(Step step) {
        try {
            step();
        } catch (const StepError& error) {
            troubles_.push_back(error.what());
        }
    }

    void definition(const Attached& attached) {
        const Instance set = file_.Get(attached.definition);
        set_ = attached;
        own_ = set[2].IsText() && set[2].RawText() == OwnPropertySet;
        if (set.Is("IFCPROPERTYSET"))
            for (const Value member : set[4])
                attempt([&] { property(file_.Get(member), 0); });
        else if (set.Is("IFCELEMENTQUANTITY"))
            for (const Value member : set[5])
                attempt([&] { quantity(file_.Get(member), 0); });
    }

    void quantity(const Instance& quantity, int depth) {
        if (quantity.Is("IFCPHYSICALCOMPLEXQUANTITY") && depth < mostNested) {
            for (const Value member : quantity[2])
                this->quantity(file_.Get(member), depth + 1);
        } else if (quantity.Is("IFCQUANTITYAREA")) {
            const std::wstring name = PlainName(quantity[0].Text());
            addArea(quantity, name, quantity[3], quantity[2], 0);
        }
    }

    void property(const Instance& property, int depth) {
        if (property.Is("IFCCOMPLEXPROPERTY") && depth < mostNested) {
            for (const Value member : property[3])
                this->property(file_.Get(member), depth + 1);
            return;
        }
        const bool single = property.Is("IFCPROPERTYSINGLEVALUE");
        if (!single && !property.Is("IFCPROPERTYENUMERATEDVALUE") &&
            !property.Is("IFCPROPERTYLISTVALUE"))
            return;
        const std::wstring name = PlainName(property[0].Text());
        if (SpaceText* text = textNamed(name)) {
            if (own_ || (!text->own && text->text.empty()))
                *text = {valueText(property[2]), property.Id(), set_, own_};
        } else if (single && (property[2].Type() == "IFCAREAMEASURE" ||
                              (areaByName(name) != AreaFrom::Any && isNumber(property[2])))) {
            const bool planned = name.find(L"plan") != std::wstring::npos;
            addArea(property, name, property[2], property[3], planned ? plannedRank : propertyRank);
        }
    }

    SpaceText* textNamed(std::wstring_view name) {
        if (name == L"umschliessungsart")
            return &read_.enclosure;
        if (name == L"nutzen")
            return &read_.occupancy;
        if (name == L"flaechenart277" || name == L"flaechenartdin277")
            return &read_.areaType;
        return nullptr;
    }

    static bool isNumber(const Value& value) {
        const std::string_view raw = value.Untyped().Raw();
        return !raw.empty() && (raw.front() == '-' || (raw.front() >= '0' && raw.front() <= '9'));
    }

    // The members of a list one behind the other; a number as the file has it.
    static std::wstring valueText(const Value& value) {
        if (value.IsNull())
            return {};
        if (value.IsList()) {
            std::wstring text;
            for (const Value member : value)
                text += (text.empty() ? L"" : L", ") + valueText(member);
            return text;
        }
        const Value plain = value.Untyped();
        if (plain.IsText())
            return plain.Text();
        std::string_view raw = plain.Raw();
        if (raw.ends_with('.') && isNumber(plain))
            raw.remove_suffix(1);
        return {raw.begin(), raw.end()};
    }

    void addArea(const Instance& instance, std::wstring_view name, const Value& value,
                 const Value& unit, int rank) {
        if (isOfSomethingElse(name) || value.IsNull())
            return;
        SpaceArea area;
        area.unit = unit.IsReference() ? UnitFactor(file_.Get(unit)) : units_.area;
        area.squareMetres = value.Untyped().Number() * area.unit;
        if (!(area.squareMetres > 0.0) || !std::isfinite(area.squareMetres))
            return;
        area.from = areaByName(name);
        area.instance = instance.Id();
        area.set = set_;
        area.rank = own_ ? -1 : rank + static_cast<int>(area.from);
        read_.areas.push_back(area);
    }

    void classification(InstanceId id) {
        bool din277 = false;
        std::vector<std::wstring> words;
        for (int links = 0; id != 0 && links < mostNested; ++links) {
            const Instance reference = file_.Get(id);
            const bool source = reference.Is("IFCCLASSIFICATION");
            if (!source && !reference.Is("IFCCLASSIFICATIONREFERENCE"))
                return;
            for (const std::size_t index : {1, 2, 3}) {
                if (!reference[index].IsText())
                    continue;
                const std::wstring text = reference[index].Text();
                din277 = din277 || text.find(L"277") != std::wstring::npos;
                if (links == 0 && !source)
                    words.push_back(text);
            }
            id = !source && reference[3].IsReference() ? reference[3].Reference() : 0;
        }
        for (const std::wstring& word : words)
            takeClass(word, din277);
    }

    // What a class of DIN 277 says, where no property says it.
    void takeClass(const std::wstring& word, bool din277) {
        auto use = ParseDin277Use(word);
        if (!use && din277)
            use = Din277UseByNumber(word);
        const auto take = [](SpaceText& text, const std::wstring& value) {
            if (text.property == 0 && text.text.empty())
                text.text = value;
        };
        if (use) {
            take(read_.occupancy, use->Text());
            take(read_.areaType, use->Text());
        } else if (din277 && (word == L"a" || word == L"b" || word == L"c" || word == L"bc")) {
            take(read_.enclosure, word);
        }
    }

    const StepFile& file_;
    const Units& units_;
    std::vector<std::string>& troubles_;
    SpaceProperties read_;
    Attached set_;
    bool own_ = false;
};

} // namespace

SpaceProperties ReadSpaceProperties(const StepFile& file, const Units& units,
                                    const Relations& relations, InstanceId space,
                                    std::vector<std::string>& troubles) {
    return Reader(file, units, troubles).Run(relations, space);
}

} // namespace kalvrooms::ifc
