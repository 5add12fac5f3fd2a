#pragma once
// A refusal of the host: its description reaches the client as the host's own words.

#include "model/RuntimeError.h"

#include <string>
#include <utility>

namespace kalvrooms {

class HostError : public RuntimeError {
  public:
    explicit HostError(std::wstring description)
        : RuntimeError(AutomationError, std::move(description)) {}
};

} // namespace kalvrooms
