#include "files/TextStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "files/FilePath.h"
#include "model/RuntimeError.h"
#include "model/WholeFile.h"

namespace kalvrooms {

namespace {

constexpr std::size_t bufferSize = 64U * 1024;

std::filesystem::path pathOf(const std::wstring& fileName) {
    if (fileName.empty())
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    // The system would take such a name as one that ends there, and open another file.
    if (fileName.find(L'\0') != std::wstring::npos)
        throw RuntimeError(RuntimeError::BadFileName);
    try {
        return FilePath(fileName);
    } catch (const std::exception&) {
        throw RuntimeError(RuntimeError::BadFileName);
    }
}

bool folderIsThere(const std::filesystem::path& path) {
    const std::filesystem::path folder = path.parent_path();
    std::error_code ignored;
    return folder.empty() || std::filesystem::is_directory(folder, ignored);
}

RuntimeError openError(const std::filesystem::path& path, int systemError, bool reading) {
    if (!folderIsThere(path))
        return RuntimeError(RuntimeError::PathNotFound);
    switch (systemError) {
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
        return RuntimeError(RuntimeError::PermissionDenied);
    case ENOENT:
        return RuntimeError(reading ? RuntimeError::FileNotFound : RuntimeError::BadFileName);
    case EINVAL:
    case ENAMETOOLONG:
        return RuntimeError(RuntimeError::BadFileName);
    default:
        return RuntimeError(RuntimeError::DeviceError);
    }
}

void openFile(std::filebuf& file, const std::filesystem::path& path, std::ios::openmode mode) {
    errno = 0;
    const bool opened = file.open(path, mode | std::ios::binary) != nullptr;
    const int systemError = errno;
    const bool reading = (mode & std::ios::in) != 0;
    // Some systems open a folder for reading and only then refuse to read it. Looking whether a
    // name is a folder's costs as much as opening it, so it is not done for files that are written.
    if (!opened || reading) {
        std::error_code ignored;
        if (std::filesystem::is_directory(path, ignored)) {
            file.close();
            throw RuntimeError(RuntimeError::PermissionDenied);
        }
    }
    if (!opened)
        throw openError(path, systemError, reading);
}

// The file whose place the new one is to take; empty without one. Errors as on opening, when it
// must not be written.
std::filesystem::path fileToKeep(const std::wstring& fileName, OldFile oldFile) {
    std::error_code ignored;
    std::filesystem::path path = pathOf(fileName);
    if (oldFile == OldFile::Emptied || !TextWriter::IsOldFile(fileName))
        return {};
    std::filebuf writable;
    openFile(writable, path, std::ios::in | std::ios::out);
    // The new file must not take the place of a link to the old one.
    if (std::filesystem::is_symlink(path, ignored)) {
        std::error_code unknown;
        const std::filesystem::path target = std::filesystem::canonical(path, unknown);
        return unknown ? path : target;
    }
    return path;
}

} // namespace

TextReader::TextReader(const std::wstring& fileName, const AnsiCodec& codec,
                       std::size_t longestLine)
    : codec_(codec), longestLine_(longestLine) {
    openFile(file_, pathOf(fileName), std::ios::in);
}

// Appends what the file gives next; false at its end.
bool TextReader::readMore() {
    const std::size_t before = bytes_.size();
    bytes_.resize(before + bufferSize);
    std::streamsize count = 0;
    try {
        count = file_.sgetn(bytes_.data() + before, static_cast<std::streamsize>(bufferSize));
    } catch (const std::ios_base::failure&) {
        throw RuntimeError(RuntimeError::DeviceError);
    }
    bytes_.resize(before + static_cast<std::size_t>(std::max<std::streamsize>(count, 0)));
    return bytes_.size() > before;
}

void TextReader::fill() {
    if (exhausted_ || next_ < lines_.size())
        return;
    lines_.clear();
    next_ = 0;
    std::size_t whole = 0;
    while (whole == 0) {
        const std::size_t before = bytes_.size();
        exhausted_ = !readMore();
        const std::string_view fresh = std::string_view(bytes_).substr(before);
        if (before + std::min(fresh.find('\n'), fresh.size()) > longestLine_)
            throw RuntimeError(RuntimeError::OutOfMemory);
        const std::size_t end = fresh.rfind('\n');
        if (exhausted_) {
            whole = bytes_.size();
            break;
        }
        whole = end == std::string_view::npos ? 0 : before + end + 1;
    }
    // A line end is never a part of another character, whatever the code page.
    const std::string rest = bytes_.substr(whole);
    bytes_.resize(whole);
    lines_ = codec_.Decode(bytes_);
    bytes_ = rest;
}

bool TextReader::AtEnd() {
    fill();
    return next_ == lines_.size();
}

std::wstring_view TextReader::ReadLine() {
    if (AtEnd())
        throw RuntimeError(RuntimeError::InputPastEndOfFile);
    const std::wstring_view rest = std::wstring_view(lines_).substr(next_);
    std::wstring_view line = rest.substr(0, rest.find(L'\n'));
    next_ += std::min(line.size() + 1, rest.size());
    // A file that was cut off between CR and LF loses nothing of its last line either.
    if (line.ends_with(L'\r'))
        line.remove_suffix(1);
    return line;
}

TextWriter::TextWriter(const std::wstring& fileName, const AnsiCodec& codec, OldFile oldFile)
    : codec_(codec), kept_(fileToKeep(fileName, oldFile)) {
    openFile(file_, kept_.empty() ? pathOf(fileName) : UnfinishedName(kept_),
             std::ios::out | std::ios::trunc);
    buffer_.reserve(bufferSize);
}

TextWriter::~TextWriter() {
    if (!file_.is_open())
        return;
    try {
        flush();
    } catch (const std::exception&) {
        // Closing tells of errors; without it there was one already.
    }
}

bool TextWriter::IsOldFile(const std::wstring& fileName) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(pathOf(fileName), ignored);
}

void TextWriter::WriteLine(std::wstring_view line) {
    buffer_.append(line).append(L"\r\n");
    if (buffer_.size() >= bufferSize)
        flush();
}

void TextWriter::Close() {
    flush();
    bool closed = false;
    try {
        closed = file_.close() != nullptr;
    } catch (const std::ios_base::failure&) {
        closed = false;
    }
    if (!closed)
        throw RuntimeError(RuntimeError::DeviceError);
    std::error_code trouble;
    if (!kept_.empty())
        std::filesystem::rename(UnfinishedName(kept_), kept_, trouble);
    if (trouble)
        throw RuntimeError(RuntimeError::PermissionDenied);
}

void TextWriter::flush() {
    const std::string bytes = codec_.Encode(buffer_);
    const auto size = static_cast<std::streamsize>(bytes.size());
    std::streamsize written = 0;
    try {
        written = file_.sputn(bytes.data(), size);
    } catch (const std::ios_base::failure&) {
        written = -1;
    }
    buffer_.clear();
    if (written != size)
        throw RuntimeError(RuntimeError::DeviceError);
}

} // namespace kalvrooms
