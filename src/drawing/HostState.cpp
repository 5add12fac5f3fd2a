#include "drawing/HostState.h"

#include "drawing/HostError.h"

namespace kalvrooms {

void HostState::Set(const std::wstring& name) {
    if (!name.empty() && name != L"menu" && name != L"kvd")
        throw HostError(L"There is no state \"" + name + L"\".");
    name_ = name;
}

void HostState::CheckAccess() const {
    if (!creationError_.empty())
        throw HostError(creationError_);
    CheckDrawing();
}

void HostState::CheckDrawing() const {
    // Clients know the states by words that stand somewhere behind the beginning.
    if (name_ == L"menu")
        throw HostError(L"Please terminate the menue interaction first.");
    if (name_ == L"kvd")
        throw HostError(L"Access denied: any Kvd or free plan is open.");
}

} // namespace kalvrooms
