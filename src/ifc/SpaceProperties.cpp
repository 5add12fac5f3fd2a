#include "ifc/SpaceProperties.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "ifc/Names.h"
#include "model/Din277.h"

namespace kalvrooms::ifc {
namespace {

// Properties within properties, references to references.
constexpr std::size_t mostNested = 8;
// No space has so many.
constexpr std::size_t mostMembers = 5000;

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
            members(set[4], &Reader::property);
        else if (set.Is("IFCELEMENTQUANTITY"))
            members(set[5], &Reader::quantity);
    }

    using Member = void (Reader::*)(const Instance&);
    void members(const Value& list, Member read) {
        for (const Value member : list) {
            if (members_ == mostMembers)
                return;
            attempt([&] {
                set_.within.clear();
                this->member(member, read);
            });
        }
    }
    void member(const Value& member, Member read) {
        if (++members_ == mostMembers)
            member.Refuse("the space has too many properties");
        (this->*read)(file_.Get(member));
    }
    // The members of a complex property or quantity.
    void inner(const Instance& complex, const Value& list, Member read) {
        std::vector<InstanceId>& within = set_.within;
        if (std::find(within.begin(), within.end(), complex.Id()) != within.end())
            complex.Refuse("the property is within itself");
        if (within.size() == mostNested)
            return;
        within.push_back(complex.Id());
        for (const Value member : list)
            this->member(member, read);
        within.pop_back();
    }

    void quantity(const Instance& quantity) {
        if (quantity.Is("IFCPHYSICALCOMPLEXQUANTITY")) {
            inner(quantity, quantity[2], &Reader::quantity);
        } else if (quantity.Is("IFCQUANTITYAREA")) {
            const std::wstring name = PlainName(quantity[0].Text());
            addArea(quantity, name, quantity[3], quantity[2], 0);
        }
    }

    void property(const Instance& property) {
        if (property.Is("IFCCOMPLEXPROPERTY"))
            return inner(property, property[3], &Reader::property);
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
        Instance reference = file_.Get(id);
        for (std::size_t links = 0; links < mostNested; ++links) {
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
            if (source || !reference[3].IsReference())
                break;
            reference = reference.Follow(3);
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
    std::size_t members_ = 0;
    bool own_ = false;
};

} // namespace

SpaceProperties ReadSpaceProperties(const StepFile& file, const Units& units,
                                    const Relations& relations, InstanceId space,
                                    std::vector<std::string>& troubles) {
    return Reader(file, units, troubles).Run(relations, space);
}

} // namespace kalvrooms::ifc
