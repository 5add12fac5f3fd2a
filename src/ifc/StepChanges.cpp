#include "ifc/StepChanges.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace kalvrooms::ifc {

std::string Reference(InstanceId id) {
    std::string reference = "#";
    return reference.append(std::to_string(id));
}

void StepChanges::Set(InstanceId instance, std::size_t argument, std::string text) {
    changed_[instance][argument] = std::move(text);
}

InstanceId StepChanges::Add(const std::string& text) {
    if (nextId_ == std::numeric_limits<InstanceId>::max())
        throw std::runtime_error("the file has no number left for an instance");
    added_[++nextId_] = text;
    return nextId_;
}

std::string StepChanges::Argument(InstanceId instance, std::size_t argument) const {
    const auto changed = changed_.find(instance);
    if (changed != changed_.end()) {
        const auto found = changed->second.find(argument);
        if (found != changed->second.end())
            return found->second;
    }
    const std::string_view raw = file_.Get(instance)[argument].Raw();
    return raw.empty() ? "$" : std::string(raw);
}

std::string StepChanges::Text() const {
    std::vector<Instance> changed;
    for (const auto& [id, arguments] : changed_)
        changed.push_back(file_.Get(id));
    std::sort(changed.begin(), changed.end(), [](const Instance& a, const Instance& b) {
        return a.Arguments().Raw().data() < b.Arguments().Raw().data();
    });

    const std::string& original = file_.Text();
    std::string text;
    text.reserve(original.size() + 200 * added_.size() + 200);
    std::size_t copied = 0;
    for (const Instance& instance : changed)
        appendChanged(text, copied, instance, changed_.at(instance.Id()));
    text.append(original, copied, file_.InsertPosition() - copied);
    const std::size_t line = original.find('\n');
    const bool returns = line != std::string::npos && line > 0 && original[line - 1] == '\r';
    for (const auto& [id, instance] : added_)
        text += Reference(id) + "=" + instance + (returns ? ";\r\n" : ";\n");
    return text.append(original, file_.InsertPosition());
}

void StepChanges::appendChanged(std::string& text, std::size_t& copied, const Instance& instance,
                                const Arguments& arguments) const {
    const std::string& original = file_.Text();
    const auto copyTo = [&](const char* position) {
        const auto end = static_cast<std::size_t>(position - original.data());
        text.append(original, copied, end - copied);
        copied = end;
    };
    std::size_t index = 0;
    for (const Value value : instance.Arguments()) {
        const auto changed = arguments.find(index++);
        if (changed == arguments.end())
            continue;
        copyTo(value.Raw().data());
        text += changed->second;
        copied += value.Raw().size();
    }
    // The arguments that the instance lacks.
    for (auto changed = arguments.lower_bound(index); changed != arguments.end(); ++changed) {
        copyTo(instance.Arguments().Raw().data() + instance.Arguments().Raw().size() - 1);
        for (; index <= changed->first; ++index)
            text +=
                std::string(index ? "," : "") + (index == changed->first ? changed->second : "$");
    }
}

} // namespace kalvrooms::ifc
