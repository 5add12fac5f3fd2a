#include "practice/spreadsheet/SheetProcess.h"

#include "drawing/DrawingFile.h"
#include "drawing/Text.h"
#include "practice/server/FaultEffect.h"
#include "practice/workbook/SheetError.h"

#include <cwchar>
#include <utility>

namespace kalvrooms::practice::spreadsheet {

SheetProcess::SheetProcess(Settings settings_, bool inUsersHands)
    : settings(std::move(settings_)), application(files_), inUsersHands_(inUsersHands) {
    Arm(calls_, settings.faults);
    application.version = static_cast<int>(std::wcstol(settings.version.c_str(), nullptr, 10));
    if (!settings.dialog.empty())
        application.OpenDialog(settings.dialog);
}

SheetProcess::~SheetProcess() {
    Withdraw();
}

bool SheetProcess::Enter(std::wstring_view object, std::wstring_view member) {
    const auto fault = calls_.Enter(object, member);
    if (!application.dialog().empty())
        throw ComError(RPC_E_SERVERCALL_RETRYLATER);
    return !fault || Suffer<SheetError>(*fault, [this] {
        Withdraw();
        WriteReport();
    });
}

void SheetProcess::Created() {
    ++uses_;
}

void SheetProcess::Gone() {
    --uses_;
    CheckUse();
}

void SheetProcess::Quit() {
    quitting_ = true;
    Withdraw();
    CheckUse();
}

void SheetProcess::CheckUse() {
    if (MayEnd() && unused)
        unused();
}

void SheetProcess::Withdraw() {
    if (withdraw)
        std::exchange(withdraw, nullptr)();
}

void SheetProcess::WriteReport() const {
    if (settings.report.empty())
        return;
    std::string report = ToUtf8(calls_.Report());
    for (const auto& [locale, count] : locales_)
        report += "locale." + std::to_string(locale) + "=" + std::to_string(count) + "\n";
    report += "opened with macros=" + std::to_string(application.opensWithMacros) + "\n";
    SaveText(settings.report, report + "calls=" + std::to_string(calls_.Count()) + "\n");
}

} // namespace kalvrooms::practice::spreadsheet
