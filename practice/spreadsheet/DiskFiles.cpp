#include "practice/spreadsheet/DiskFiles.h"

#include "practice/workbook/SheetError.h"
#include "practice/workbook/WorkbookFile.h"

#include <windows.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

namespace {

constexpr LONGLONG largestFile = 256LL * 1024 * 1024;

class DiskFile : public OpenFile {
  public:
    DiskFile(HANDLE file, bool readOnly) : file_(file), readOnly_(readOnly) {}
    DiskFile(const DiskFile&) = delete;
    DiskFile& operator=(const DiskFile&) = delete;
    ~DiskFile() override { CloseHandle(file_); }

    bool ReadOnly() const override { return readOnly_; }

    Workbook Read() override {
        LARGE_INTEGER size{};
        if (!GetFileSizeEx(file_, &size) || size.QuadPart > largestFile)
            throw SheetError(L"The file is too large.");
        toStart();
        std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
        DWORD read = 0;
        if (!ReadFile(file_, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
            throw SheetError(L"The file cannot be read.");
        bytes.resize(read);
        return ReadWorkbook(std::move(bytes));
    }
    void Write(const Workbook& workbook) override {
        const std::string bytes = WriteWorkbook(workbook);
        toStart();
        DWORD written = 0;
        if (!WriteFile(file_, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
            written != bytes.size() || !SetEndOfFile(file_) || !FlushFileBuffers(file_))
            throw SheetError(L"The file cannot be written.");
    }

  private:
    void toStart() { SetFilePointerEx(file_, {}, nullptr, FILE_BEGIN); }

    HANDLE file_;
    bool readOnly_;
};

bool isProtected(const std::wstring& name) {
    const DWORD attributes = GetFileAttributesW(name.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

HANDLE open(const std::wstring& name, DWORD access, DWORD share, DWORD disposition) {
    return CreateFileW(name.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

} // namespace

std::wstring DiskFiles::FullName(const std::wstring& name) const {
    std::error_code ignored;
    return std::filesystem::absolute(name, ignored).wstring();
}

bool DiskFiles::Exists(const std::wstring& fullName) const {
    return GetFileAttributesW(fullName.c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::unique_ptr<OpenFile> DiskFiles::Open(const std::wstring& fullName) {
    if (!isProtected(fullName)) {
        const HANDLE file =
            open(fullName, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, OPEN_EXISTING);
        if (file != INVALID_HANDLE_VALUE)
            return std::make_unique<DiskFile>(file, false);
    }
    const HANDLE file = open(fullName, GENERIC_READ,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (file == INVALID_HANDLE_VALUE)
        throw SheetError(L"The file cannot be opened: " + fullName);
    return std::make_unique<DiskFile>(file, true);
}

std::unique_ptr<OpenFile> DiskFiles::Create(const std::wstring& fullName) {
    const HANDLE file = isProtected(fullName) ? INVALID_HANDLE_VALUE
                                              : open(fullName, GENERIC_READ | GENERIC_WRITE,
                                                     FILE_SHARE_READ, CREATE_ALWAYS);
    if (file == INVALID_HANDLE_VALUE)
        throw SheetError(L"The file cannot be written: " + fullName);
    return std::make_unique<DiskFile>(file, false);
}

} // namespace kalvrooms::practice::spreadsheet
