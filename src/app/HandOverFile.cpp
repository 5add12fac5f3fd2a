#include "app/HandOverFile.h"

#include <filesystem>
#include <fstream>

#include "model/RuntimeError.h"

namespace kalvrooms {
namespace {

constexpr const wchar_t* fileName = L"kalvqtotemp";
// The ending of the help file's name that the program replaces by its own.
constexpr std::size_t helpEnding = 8;

// A line without its end (CR LF, LF or CR); false at the end of the file.
bool readLine(std::istream& file, std::string& line) {
    line.clear();
    std::streambuf& bytes = *file.rdbuf();
    int c = bytes.sbumpc();
    if (c == EOF)
        return false;
    for (; c != EOF && c != '\n' && c != '\r'; c = bytes.sbumpc())
        line.push_back(static_cast<char>(c));
    if (c == '\r' && bytes.sgetc() == '\n')
        bytes.sbumpc();
    return true;
}

// The host's own line is passed over without keeping it, however long it is.
bool skipLine(std::istream& file) {
    std::streambuf& bytes = *file.rdbuf();
    int c = bytes.sbumpc();
    if (c == EOF)
        return false;
    while (c != EOF && c != '\n' && c != '\r')
        c = bytes.sbumpc();
    if (c == '\r' && bytes.sgetc() == '\n')
        bytes.sbumpc();
    return true;
}

} // namespace

void ReadHandOverFile(const Environment& environment, const AnsiCodec& ansi, StartValues& values) {
    try {
        const std::wstring path = environment.ExecutableFolder() + L"\\" + fileName;
        std::ifstream file(std::filesystem::path(path), std::ios::binary);
        std::string line;
        if (!file || !skipLine(file))
            return;
        if (!readLine(file, line))
            return;
        const std::wstring help = ansi.Decode(line);
        if (help.size() < helpEnding)
            throw RuntimeError(RuntimeError::InvalidProcedureCall);
        values.HelpFile(help.substr(0, help.size() - helpEnding) + L"chm");
        if (!readLine(file, line))
            return;
        values.SetRegKey(ansi.Decode(line));
        if (!readLine(file, line))
            return;
        values.SetLang(ansi.Decode(line));
    } catch (const std::exception&) {
        // What was applied stays; the host is the only one who could do anything about the file.
    }
}

} // namespace kalvrooms
