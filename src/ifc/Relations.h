#pragma once
// What relates the spaces of a model to storeys, property sets, types and classes.

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ifc/StepFile.h"

namespace kalvrooms::ifc {

// A property set or a set of quantities, and what attaches it.
struct Attached {
    InstanceId definition = 0;
    InstanceId relation = 0;
    // By way of the space's type.
    bool ofType = false;
    // Of a member: the complex ones between it and the set, the outermost first.
    std::vector<InstanceId> within{};
};

struct Parent {
    InstanceId whole = 0;
    InstanceId relation = 0;
};

class Relations {
  public:
    Relations(const StepFile& file, const std::vector<InstanceId>& spaces);

    // The space's own ones first, then its type's.
    std::vector<Attached> DefinitionsOf(InstanceId space) const;
    const std::vector<InstanceId>& ClassesOf(InstanceId space) const;
    // What an element is a part of, or stands in; 0 where it is the outermost.
    Parent ParentOf(InstanceId element) const;
    // The storey that a space is a part of through any chain; 0 where there is none.
    InstanceId StoreyOf(InstanceId space) const;
    // Relations that cannot be read are passed over.
    const std::vector<std::string>& Troubles() const { return troubles_; }

  private:
    void readParts();
    void readContents();
    void readDefinitions();
    void readTypes();
    void readClasses();
    void define(const std::vector<InstanceId>& spaces, const Value& definitions, Attached attached);
    template <class Read>
    void each(const char* keyword, Read read);
    std::vector<InstanceId> spacesIn(const Value& list) const;
    // What a relation leads to; what the file lacks is passed over.
    std::vector<InstanceId> existing(const Value& references);

    const StepFile& file_;
    std::unordered_set<InstanceId> spaces_;
    std::unordered_map<InstanceId, Parent> parents_;
    std::unordered_map<InstanceId, std::vector<Attached>> definitions_;
    std::unordered_map<InstanceId, std::vector<InstanceId>> classes_;
    std::vector<std::string> troubles_;
};

} // namespace kalvrooms::ifc
