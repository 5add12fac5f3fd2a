#pragma once
// The entries of a server's classes in the registry: programmatic identifiers, classes, program.

#include <windows.h>

#include <filesystem>
#include <span>
#include <string>

namespace kalvrooms::practice {

// This program's own file.
std::filesystem::path OwnProgram();
// One line with its name on the standard error; false where there is none.
bool Say(const std::string& words);

struct ServerClass {
    const wchar_t* programId;
    const wchar_t* description;
    CLSID id;
};

// This program for the current user, or for the machine where COM looks at its classes alone. Both
// raise a HostError when the registry refuses. Nothing of another program is touched: where one has
// a class's name, registering raises a HostError, and unregistering leaves it there.
void RegisterClasses(std::span<const ServerClass* const> classes);
void UnregisterClasses(std::span<const ServerClass* const> classes);

// Makes the classes known while at least one process has such an object.
class KnownWhileRunning {
  public:
    explicit KnownWhileRunning(std::span<const ServerClass* const> classes);
    KnownWhileRunning(const KnownWhileRunning&) = delete;
    KnownWhileRunning& operator=(const KnownWhileRunning&) = delete;
    ~KnownWhileRunning();

  private:
    std::span<const ServerClass* const> classes_;
    // A name that every process with such an object holds.
    HANDLE running_;
};

} // namespace kalvrooms::practice
