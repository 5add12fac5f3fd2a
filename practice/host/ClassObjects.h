#pragma once
// Offers the server's classes to the system while it lives.

#include "practice/host/HostProcess.h"

#include <vector>

namespace kalvrooms::practice {

class ClassObjects {
  public:
    // Raises a HostError when the system does not take them.
    explicit ClassObjects(HostProcess& process);
    ClassObjects(const ClassObjects&) = delete;
    ClassObjects& operator=(const ClassObjects&) = delete;
    ~ClassObjects();

  private:
    void Revoke();

    HostProcess& process_;
    std::vector<DWORD> cookies_;
};

} // namespace kalvrooms::practice
