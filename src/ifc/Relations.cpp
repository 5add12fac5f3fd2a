#include "ifc/Relations.h"

#include <algorithm>

namespace kalvrooms::ifc {
namespace {

// Rooms in rooms in storeys in buildings in sites: nobody goes deeper.
constexpr int longestChain = 100;

// Every reference of a list, or the one that stands there without a list.
template <class Found>
void eachReference(const Value& value, Found found) {
    if (value.IsReference()) {
        found(value);
    } else if (!value.IsNull()) {
        for (const Value member : value)
            if (member.IsReference())
                found(member);
    }
}

} // namespace

Relations::Relations(const StepFile& file, const std::vector<InstanceId>& spaces)
    : file_(file), spaces_(spaces.begin(), spaces.end()) {
    readParts();
    readContents();
    readDefinitions();
    readTypes();
    readClasses();
}

template <class Read>
void Relations::each(const char* keyword, Read read) {
    for (const InstanceId id : file_.OfType(keyword)) {
        try {
            read(id, file_.Get(id));
        } catch (const StepError& error) {
            troubles_.push_back(error.what());
        }
    }
}

std::vector<InstanceId> Relations::spacesIn(const Value& list) const {
    std::vector<InstanceId> spaces;
    eachReference(list, [&](const Value& member) {
        if (spaces_.contains(member.Reference()))
            spaces.push_back(member.Reference());
    });
    return spaces;
}

std::vector<InstanceId> Relations::existing(const Value& references) {
    std::vector<InstanceId> instances;
    eachReference(references, [&](const Value& reference) {
        if (file_.Has(reference.Reference()))
            instances.push_back(reference.Reference());
        else
            troubles_.push_back(reference.Trouble("the instance is missing").what());
    });
    return instances;
}

void Relations::readParts() {
    each(
        "IFCRELAGGREGATES",
        [&](InstanceId id, const Instance& relation) {
            if (!relation[4].IsReference())
                return;
            const InstanceId whole = relation[4].Reference();
            eachReference(
                relation[5],
                [&](const Value& part) {
                    parents_.emplace(part.Reference(), Parent{whole, id});
                });
        });
}

// Some programs put spaces into their storey as they put walls.
void Relations::readContents() {
    each(
        "IFCRELCONTAINEDINSPATIALSTRUCTURE",
        [&](InstanceId id, const Instance& relation) {
            if (!relation[5].IsReference())
                return;
            for (const InstanceId space : spacesIn(relation[4]))
                parents_.emplace(space, Parent{relation[5].Reference(), id});
        });
}

void Relations::readDefinitions() {
    each(
        "IFCRELDEFINESBYPROPERTIES",
        [&](InstanceId id, const Instance& relation) {
            // A set of sets in IFC4.
            define(spacesIn(relation[4]), relation[5].Untyped(), {0, id, false});
        });
}

void Relations::readTypes() {
    each(
        "IFCRELDEFINESBYTYPE",
        [&](InstanceId id, const Instance& relation) {
            const std::vector<InstanceId> spaces = spacesIn(relation[4]);
            if (!spaces.empty() && relation[5].IsReference())
                define(spaces, relation.Follow(5)[5], {0, id, true});
        });
}

void Relations::define(const std::vector<InstanceId>& spaces, const Value& definitions,
                       Attached attached) {
    if (spaces.empty())
        return;
    for (const InstanceId definition : existing(definitions)) {
        attached.definition = definition;
        for (const InstanceId space : spaces)
            definitions_[space].push_back(attached);
    }
}

void Relations::readClasses() {
    each(
        "IFCRELASSOCIATESCLASSIFICATION",
        [&](InstanceId, const Instance& relation) {
            const std::vector<InstanceId> spaces = spacesIn(relation[4]);
            if (spaces.empty() || !relation[5].IsReference())
                return;
            for (const InstanceId reference : existing(relation[5]))
                for (const InstanceId space : spaces)
                    classes_[space].push_back(reference);
        });
}

std::vector<Attached> Relations::DefinitionsOf(InstanceId space) const {
    const auto found = definitions_.find(space);
    if (found == definitions_.end())
        return {};
    std::vector<Attached> definitions = found->second;
    std::stable_partition(definitions.begin(), definitions.end(),
                          [](const Attached& attached) { return !attached.ofType; });
    return definitions;
}

const std::vector<InstanceId>& Relations::ClassesOf(InstanceId space) const {
    static const std::vector<InstanceId> none;
    const auto found = classes_.find(space);
    return found == classes_.end() ? none : found->second;
}

Parent Relations::ParentOf(InstanceId element) const {
    const auto found = parents_.find(element);
    return found == parents_.end() ? Parent{} : found->second;
}

InstanceId Relations::StoreyOf(InstanceId space) const {
    InstanceId element = ParentOf(space).whole;
    for (int links = 0; element != 0 && links < longestChain; ++links) {
        if (!file_.Has(element))
            return 0;
        if (file_.Get(element).Is("IFCBUILDINGSTOREY"))
            return element;
        element = ParentOf(element).whole;
    }
    return 0;
}

} // namespace kalvrooms::ifc
