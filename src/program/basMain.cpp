#include "program/basMain.h"

#include "app/HandOverFile.h"
#include "app/Messages.h"
#include "app/TextNumbers.h"
#include "ui/frmMain.h"

namespace kalvrooms {
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
        {MessageText(texts, TextNumber::CloseKvdFiles), MessageText(texts, TextNumber::Title)});
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
