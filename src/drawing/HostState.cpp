#include "drawing/HostState.h"

#include "drawing/HostError.h"

namespace kalvrooms::practice {

void HostState::Set(const std::wstring& name) {
    if (!name.empty() && name != L"menu" && name != L"kvd")
        throw HostError(L"There is no state \"" + name + L"\".");
    name_ = name;
}

std::wstring HostState::Refusal() const {
    if (!creationError_.empty())
        return creationError_;
    // Clients know the states by words that stand somewhere behind the beginning.
    if (name_ == L"menu")
        return L"Please terminate the menue interaction first.";
    if (name_ == L"kvd")
        return L"Access denied: any Kvd or free plan is open.";
    return {};
}

} // namespace kalvrooms::practice
