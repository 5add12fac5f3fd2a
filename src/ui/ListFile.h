#pragma once
// The file of the main window's list: reads and writes it, tells the user in one message what went
// wrong, and guards it against being overwritten unawares.

#include <cstdint>
#include <string>
#include <vector>

#include "files/FileOutcome.h"
#include "files/FileServices.h"
#include "files/FileState.h"
#include "model/RuntimeError.h"
#include "model/clsFloors.h"

namespace kalvrooms {

class ListFile {
  public:
    explicit ListFile(const FileServices& services) : services_(services) {}

    FileOutcome Read(const std::wstring& fileName, clsFloors& floors);
    void TellOfReading(const std::wstring& fileName, const FileOutcome& outcome) const;
    // False when the list was not saved; the user knows why then.
    bool Write(const std::wstring& fileName, const clsFloors& floors);

    // False when the list was not read whole: it must not take the place of the whole one.
    bool IsWhole() const { return whole_; }
    // Asks when somebody else has changed the file since it was last read or written here.
    bool MayBeOverwritten(const std::wstring& fileName) const;
    // The list has no file any more.
    void Forget() { whole_ = true; }

    // The error with the name of the room that it comes from, if it comes from one whose sides
    // cannot be computed.
    RuntimeError NamingTheRoom(const RuntimeError& error, const clsFloors& floors) const;

  private:
    std::wstring reason(const RuntimeError& error, const clsRoom* room) const;
    // Lines that follow the first, each with the break before it.
    std::wstring reasonLines(const std::wstring& fileName, const FileOutcome& outcome) const;
    std::wstring line(std::int32_t number, const std::vector<std::wstring>& parts) const;
    void tell(const std::wstring& prompt) const;

    const FileServices services_;
    FileState state_;
    bool whole_ = true;
};

} // namespace kalvrooms
