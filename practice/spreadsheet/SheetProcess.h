#pragma once
// One instance: what all of its automation objects share, and how long it has to live.

#include "practice/server/CallLog.h"
#include "practice/server/DispatchObject.h"
#include "practice/spreadsheet/DiskFiles.h"
#include "practice/workbook/Application.h"
#include "practice/workbook/Settings.h"

#include <functional>
#include <map>
#include <string>

namespace kalvrooms::practice::spreadsheet {

class SheetProcess : public CallGate {
  public:
    // In its user's hands an instance stays until somebody quits it; otherwise it goes with the
    // last reference that a client holds.
    SheetProcess(Settings settings, bool inUsersHands);
    SheetProcess(const SheetProcess&) = delete;
    SheetProcess& operator=(const SheetProcess&) = delete;
    ~SheetProcess() override;

    const Settings settings;
    Application application;

    // Counts a call and lets its fault strike; while a dialog is open every call is put off.
    bool Enter(std::wstring_view object, std::wstring_view member) override;
    // The locale that a call carries.
    void Speaks(LCID locale) { ++locales_[locale]; }
    void Created() override;
    void Gone() override;

    // What takes the instance out of the system's lists; it is done once, before the end.
    std::function<void()> withdraw;
    // Nobody uses the instance any more.
    std::function<void()> unused;

    // The instance ends as soon as the last reference has gone.
    void Quit();
    bool MayEnd() const { return uses_ == 0 && (quitting_ || !inUsersHands_); }
    int Calls() const { return calls_.Count(); }
    void WriteReport() const;

  private:
    void Withdraw();
    void CheckUse();

    DiskFiles files_;
    CallLog calls_;
    std::map<LCID, int> locales_;
    bool inUsersHands_;
    bool quitting_ = false;
    int uses_ = 0;
};

} // namespace kalvrooms::practice::spreadsheet
