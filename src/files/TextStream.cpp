#include "files/TextStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "files/FilePath.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

namespace {

constexpr std::size_t bufferSize = 64U * 1024;

std::filesystem::path pathOf(const std::wstring& fileName) {
    if (fileName.empty()) {
        throw RuntimeError(RuntimeError::InvalidProcedureCall);
    }
    // The system would take such a name as one that ends there, and open another file.
    if (fileName.find(L'\0') != std::wstring::npos) {
        throw RuntimeError(RuntimeError::BadFileName);
    }
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
    if (!folderIsThere(path)) {
        return RuntimeError(RuntimeError::PathNotFound);
    }
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

void openFile(std::filebuf& file, const std::wstring& fileName, std::ios::openmode mode) {
    const std::filesystem::path path = pathOf(fileName);
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
    if (!opened) {
        throw openError(path, systemError, reading);
    }
}

} // namespace

TextReader::TextReader(const std::wstring& fileName, const AnsiCodec& codec)
    : codec_(codec), buffer_(bufferSize) {
    openFile(file_, fileName, std::ios::in);
}

void TextReader::fill() {
    if (exhausted_ || next_ < end_) {
        return;
    }
    next_ = 0;
    end_ = 0;
    try {
        const std::streamsize count =
            file_.sgetn(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
        end_ = static_cast<std::size_t>(std::max<std::streamsize>(count, 0));
    } catch (const std::ios_base::failure&) {
        throw RuntimeError(RuntimeError::DeviceError);
    }
    exhausted_ = end_ == 0;
}

bool TextReader::AtEnd() {
    fill();
    return next_ == end_;
}

std::wstring TextReader::ReadLine() {
    if (AtEnd()) {
        throw RuntimeError(RuntimeError::InputPastEndOfFile);
    }
    line_.clear();
    bool ended = false;
    while (!ended && !AtEnd()) {
        const char* const begin = buffer_.data() + next_;
        const void* const found = std::memchr(begin, '\n', end_ - next_);
        ended = found != nullptr;
        const std::size_t count =
            ended ? static_cast<std::size_t>(static_cast<const char*>(found) - begin)
                  : end_ - next_;
        if (count > LongestLine - line_.size()) {
            throw RuntimeError(RuntimeError::OutOfMemory);
        }
        line_.append(begin, count);
        next_ += count + (ended ? 1 : 0);
    }
    // A file that was cut off between CR and LF loses nothing of its last line either.
    if (!line_.empty() && line_.back() == '\r') {
        line_.pop_back();
    }
    return codec_.Decode(line_);
}

TextWriter::TextWriter(const std::wstring& fileName, const AnsiCodec& codec) : codec_(codec) {
    openFile(file_, fileName, std::ios::out | std::ios::trunc);
    buffer_.reserve(bufferSize);
}

TextWriter::~TextWriter() {
    if (!file_.is_open()) {
        return;
    }
    try {
        flush();
    } catch (const std::exception&) {
        // Whoever did not come to closing has an error already.
    }
}

void TextWriter::WriteLine(const std::wstring& line) {
    buffer_ += codec_.Encode(line);
    buffer_ += "\r\n";
    if (buffer_.size() >= bufferSize) {
        flush();
    }
}

void TextWriter::Close() {
    flush();
    bool closed = false;
    try {
        closed = file_.close() != nullptr;
    } catch (const std::ios_base::failure&) {
        closed = false;
    }
    if (!closed) {
        throw RuntimeError(RuntimeError::DeviceError);
    }
}

void TextWriter::flush() {
    const auto size = static_cast<std::streamsize>(buffer_.size());
    std::streamsize written = 0;
    try {
        written = file_.sputn(buffer_.data(), size);
    } catch (const std::ios_base::failure&) {
        written = -1;
    }
    buffer_.clear();
    if (written != size) {
        throw RuntimeError(RuntimeError::DeviceError);
    }
}

} // namespace kalvrooms
