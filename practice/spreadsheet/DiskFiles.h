#pragma once
// Workbooks on the disk. An open one is locked against writing by others, as users know it.

#include "practice/workbook/Application.h"

namespace kalvrooms::practice::spreadsheet {

class DiskFiles : public FileStore {
  public:
    std::wstring FullName(const std::wstring& name) const override;
    bool Exists(const std::wstring& fullName) const override;
    std::unique_ptr<OpenFile> Open(const std::wstring& fullName) override;
    std::unique_ptr<OpenFile> Create(const std::wstring& fullName) override;
};

} // namespace kalvrooms::practice::spreadsheet
