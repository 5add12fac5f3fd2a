#pragma once
// A refusal of the practice host: its description reaches the client as the host's own words.

#include "drawing/Text.h"

#include <exception>
#include <string>
#include <utility>

namespace kalvrooms::practice {

class HostError : public std::exception {
  public:
    explicit HostError(std::wstring description)
        : description_(std::move(description)), what_(ToUtf8(description_)) {}

    const std::wstring& description() const noexcept { return description_; }
    const char* what() const noexcept override { return what_.c_str(); }

  private:
    std::wstring description_;
    std::string what_;
};

} // namespace kalvrooms::practice
