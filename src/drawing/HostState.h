#pragma once
// Whether the host lets clients in.

#include <string>

namespace kalvrooms::practice {

class HostState {
  public:
    // "", "menu" or "kvd"; raises a HostError for anything else.
    void Set(const std::wstring& name);
    const std::wstring& Name() const { return name_; }
    // Goes before the state's own description; empty: none.
    void CreationError(std::wstring description) { creationError_ = std::move(description); }

    // What a client that wants in is told; empty while it is let in.
    std::wstring Refusal() const;

  private:
    std::wstring name_;
    std::wstring creationError_;
};

} // namespace kalvrooms::practice
