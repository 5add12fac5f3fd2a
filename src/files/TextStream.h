#pragma once
// Text files of 8-bit lines, read and written one line at a time through a buffer, which goes
// through the code page as a whole.
//
// Errors on opening: InvalidProcedureCall for an empty name, BadFileName for one that the system
// cannot have, FileNotFound, PathNotFound for a missing folder, PermissionDenied for a folder of
// that name or a file that must not be touched. Errors afterwards: DeviceError.

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Platform.h"

namespace kalvrooms {

class TextReader {
  public:
    TextReader(const std::wstring& fileName, const AnsiCodec& codec,
               std::size_t longestLine = LongestLine);

    bool AtEnd();
    // A line without its end, which is LF or CR LF. Errors: InputPastEndOfFile at the end,
    // OutOfMemory for a line that no text could hold.
    // The view holds until the next line is read.
    std::wstring_view ReadLine();

    // Bytes of the longest line. A device that never ends a line stops here, not when the
    // machine's memory is used up.
    static constexpr std::size_t LongestLine = 64U * 1024 * 1024;

  private:
    void fill();
    bool readMore();

    const AnsiCodec& codec_;
    const std::size_t longestLine_;
    std::filebuf file_;
    std::string bytes_;    // read, but not decoded: the beginning of a line
    std::wstring lines_;   // decoded, as whole lines up to the end of the file
    std::size_t next_ = 0; // first character that was not handed out
    bool exhausted_ = false;
};

// What becomes of the file that is there already.
enum class OldFile { Emptied, KeptUntilClosed };

class TextWriter {
  public:
    // Creates the file. One that is to be kept stays as it is beside the new one, and goes when
    // that is closed; devices have nothing to keep.
    TextWriter(const std::wstring& fileName, const AnsiCodec& codec,
               OldFile oldFile = OldFile::Emptied);
    // Without Close, what was written so far is flushed if possible.
    ~TextWriter();
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    // There is a file that would be kept. Error: BadFileName.
    static bool IsOldFile(const std::wstring& fileName);

    // Ends the line with CR LF.
    void WriteLine(std::wstring_view line);
    // Errors: DeviceError when not everything reached the file, PermissionDenied when it cannot
    // take the old one's place.
    void Close();

  private:
    void flush();

    const AnsiCodec& codec_;
    // The file that is kept; empty without one.
    const std::filesystem::path kept_;
    std::filebuf file_;
    std::wstring buffer_;
};

} // namespace kalvrooms
