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

  protected:
    HostError(long number, std::wstring description)
        : RuntimeError(number, std::move(description)) {}
};

// The user gave up placing rooms.
class PlacingCancelled : public HostError {
  public:
    PlacingCancelled() : HostError(DialogCancelled, L"Placing the rooms was cancelled.") {}
};

} // namespace kalvrooms
