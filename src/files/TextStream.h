#pragma once
// Text files of 8-bit lines, read and written one line at a time through a fixed buffer.
//
// Errors on opening: InvalidProcedureCall for an empty name, BadFileName for one that the system
// cannot have, FileNotFound, PathNotFound for a missing folder, PermissionDenied for a folder of
// that name or a file that must not be touched. Errors afterwards: DeviceError.

#include <cstddef>
#include <fstream>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace kalvrooms {

class TextReader {
  public:
    TextReader(const std::wstring& fileName, const AnsiCodec& codec);

    bool AtEnd();
    // A line without its end, which is LF or CR LF. Errors: InputPastEndOfFile at the end,
    // OutOfMemory for a line that no text could hold.
    std::wstring ReadLine();

    // Bytes of the longest line. A device that never ends a line stops here, not when the
    // machine's memory is used up.
    static constexpr std::size_t LongestLine = 64U * 1024 * 1024;

  private:
    void fill();

    const AnsiCodec& codec_;
    std::filebuf file_;
    std::vector<char> buffer_;
    std::size_t next_ = 0; // first byte of the buffer that was not handed out
    std::size_t end_ = 0;  // behind the last byte that was read into it
    bool exhausted_ = false;
    std::string line_;
};

class TextWriter {
  public:
    // Creates the file or empties the one that is there.
    TextWriter(const std::wstring& fileName, const AnsiCodec& codec);
    // Without Close, what was written so far goes to the disk as far as it can be had there.
    ~TextWriter();
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    // Ends the line with CR LF.
    void WriteLine(const std::wstring& line);
    // Error: DeviceError when not everything reached the file.
    void Close();

  private:
    void flush();

    const AnsiCodec& codec_;
    std::filebuf file_;
    std::string buffer_;
};

} // namespace kalvrooms
