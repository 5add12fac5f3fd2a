#pragma once
// What is to become of a file: arguments of its instances that are written anew, and instances that
// are new. Everything else stays byte for byte.

#include <map>
#include <string>

#include "ifc/StepFile.h"

namespace kalvrooms::ifc {

class StepChanges {
  public:
    explicit StepChanges(const StepFile& file) : file_(file), nextId_(file.HighestId()) {}

    // `text` as the file is to have it.
    void Set(InstanceId instance, std::size_t argument, std::string text);
    // `text` is KEYWORD(arguments); returns the number that the instance gets.
    InstanceId Add(const std::string& text);
    bool Empty() const { return changed_.empty() && added_.empty(); }

    // An argument as it is by now.
    std::string Argument(InstanceId instance, std::size_t argument) const;
    std::string Text() const;

  private:
    using Arguments = std::map<std::size_t, std::string>;
    void appendChanged(std::string& text, std::size_t& copied, const Instance& instance,
                       const Arguments& arguments) const;

    const StepFile& file_;
    InstanceId nextId_;
    std::map<InstanceId, Arguments> changed_;
    std::map<InstanceId, std::string> added_;
};

// #12
std::string Reference(InstanceId id);

} // namespace kalvrooms::ifc
