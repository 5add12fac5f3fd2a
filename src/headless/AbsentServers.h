#pragma once
// The host and the spreadsheet application of a machine that has neither.

#include "files/SpreadsheetApplication.h"
#include "host/HostApplication.h"
#include "model/RuntimeError.h"

namespace kalvrooms {

class AbsentHostServer final : public HostServer {
  public:
    std::unique_ptr<HostApplication> CreateHostApplication() override { throw Missing(); }
    std::unique_ptr<HostRoomSelection> CreateRoomFilter() override { throw Missing(); }
    std::unique_ptr<HostAttributeCatalogue> CreateAttributeCatalogue() override { throw Missing(); }

  private:
    static RuntimeError Missing() { return RuntimeError(RuntimeError::CannotCreateObject); }
};

class AbsentSpreadsheetServer final : public SpreadsheetServer {
  public:
    std::unique_ptr<SpreadsheetApplication> AttachRunning() override { return nullptr; }
    std::unique_ptr<SpreadsheetApplication> CreateInstance() override {
        throw RuntimeError(RuntimeError::CannotCreateObject);
    }
};

} // namespace kalvrooms
