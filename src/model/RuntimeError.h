#pragma once
// The one exception type of the program. It carries what the automation runtime reports of a
// failure: its number and its description.

#include <exception>
#include <string>

namespace kalvrooms {

class RuntimeError : public std::exception {
  public:
    // Numbers of the runtime, named after what they mean.
    enum Number : long {
        InvalidProcedureCall = 5,
        Overflow = 6,
        OutOfMemory = 7,
        SubscriptOutOfRange = 9,
        DivisionByZero = 11,
        TypeMismatch = 13,
        BadFileName = 52,
        FileNotFound = 53,
        DeviceError = 57,
        InputPastEndOfFile = 62,
        PermissionDenied = 70,
        PathNotFound = 76,
        ObjectVariableNotSet = 91,
        CannotCreateObject = 429,
        AutomationError = 440,
        KeyAlreadyInUse = 457,
        ServerUnavailable = 462, // the automation server's process is gone
        DialogCancelled = 32755, // a common dialog that was asked to report its cancelling
    };

    // With the runtime's own German description of the number.
    explicit RuntimeError(long number);
    // With the description that a server delivered; an empty one gets the runtime's own.
    RuntimeError(long number, std::wstring description);

    long number() const noexcept { return number_; }
    const std::wstring& description() const noexcept { return description_; }
    // Whether the description is the runtime's own and not a server's.
    bool hasOwnDescription() const noexcept { return ownDescription_; }
    // A server rejected the call because it was in the middle of something else.
    virtual bool IsBusy() const noexcept { return false; }
    // Plain ASCII rendering for test output and debuggers.
    const char* what() const noexcept override { return what_.c_str(); }

  private:
    long number_;
    bool ownDescription_;
    std::wstring description_;
    std::string what_;
};

} // namespace kalvrooms
