#include "program/basMain.h"

#include "app/HandOverFile.h"
#include "app/TextNumbers.h"
#include "model/NumberText.h"
#include "ui/frmMain.h"

namespace kalvrooms {
namespace {

std::wstring textOr(const Texts& texts, std::int32_t number, const wchar_t* fallBack) {
    const std::wstring text = texts.GetText(number);
    return Trim(text).empty() ? fallBack : text;
}

} // namespace

bool CanCreateHostServer(HostServer& host) {
    try {
        return host.CreateHostApplication() != nullptr;
    } catch (const std::exception&) {
        return false;
    }
}

bool ProbeHostServer(HostServer& host, Gui::Desktop& desktop, const Texts& texts) {
    if (CanCreateHostServer(host))
        return true;
    desktop.ShowMessage(
        {textOr(texts, TextNumber::CloseKvdFiles,
                L"KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte schließen Sie "
                L"alle KVD-Dateien."),
         textOr(texts, TextNumber::Title, L"Quartino")});
    return CanCreateHostServer(host);
}

void RunProgram(Platform& platform, HostServer& host, SpreadsheetServer& spreadsheets) {
    frmMain main(platform, host, spreadsheets);
    main.SetLang(L"");
    ReadHandOverFile(platform.environment, platform.ansi, main);
    if (!ProbeHostServer(host, platform.desktop, main))
        return;
    main.Show();
    platform.desktop.Run();
}

} // namespace kalvrooms
