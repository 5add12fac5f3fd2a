#pragma once
// Whether the host lets clients in.

#include <string>
#include <utility>

namespace kalvrooms {

class HostState {
  public:
    // "", "menu" or "kvd"; raises a HostError for anything else.
    void Set(const std::wstring& name);
    const std::wstring& Name() const { return name_; }
    // Replaces the state's own words; empty: it does not.
    void CreationError(std::wstring description) { creationError_ = std::move(description); }

    // Raises a HostError that tells a client why it is not let in.
    void CheckAccess() const;
    // Raises one while the state itself keeps clients away from the drawing.
    void CheckDrawing() const;

  private:
    std::wstring name_;
    std::wstring creationError_;
};

} // namespace kalvrooms
