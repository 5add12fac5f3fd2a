#pragma once
// A refusal of the practice spreadsheet application, and its having to wait for its user.

#include "drawing/HostError.h"

#include <exception>
#include <string>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

// The number is what reaches the client as the runtime's error.
class SheetError : public HostError {
  public:
    static constexpr int ApplicationDefined = 1004;
    static constexpr int ObjectRequired = 424; // it went away with its workbook

    explicit SheetError(std::wstring description, int number = ApplicationDefined)
        : HostError(std::move(description)), number_(number) {}
    int number() const noexcept { return number_; }

  private:
    int number_;
};

// A dialog is open: nothing can be done until its user has answered.
class DialogOpen : public std::exception {
  public:
    const char* what() const noexcept override { return "a dialog is open"; }
};

} // namespace kalvrooms::practice::spreadsheet
