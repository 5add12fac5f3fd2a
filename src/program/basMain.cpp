#include "program/basMain.h"

#include "app/HandOverFile.h"
#include "host/HostApplication.h"
#include "model/NumberText.h"
#include "platform/Gui.h"
#include "platform/Program.h"
#include "ui/frmMain.h"

namespace kalvrooms {
namespace {

constexpr std::int32_t textTitle = 1;
constexpr std::int32_t textCloseKvdFiles = 76;

std::wstring textOr(const ProgramContext& context, std::int32_t number, const wchar_t* fallBack) {
    const std::wstring text = context.GetText(number);
    return Trim(text).empty() ? fallBack : text;
}

} // namespace

bool CanCreateHostServer(Platform& platform) {
    try {
        return platform.host.CreateHostApplication() != nullptr;
    } catch (const std::exception&) {
        return false;
    }
}

bool ProbeHostServer(ProgramContext& context) {
    Platform& platform = context.System();
    if (CanCreateHostServer(platform))
        return true;
    platform.desktop.ShowMessage(
        {textOr(context, textCloseKvdFiles,
                L"KVD-Dateien können mit dem Quartino nicht bearbeitet werden. Bitte schließen Sie "
                L"alle KVD-Dateien."),
         textOr(context, textTitle, L"Quartino")});
    return CanCreateHostServer(platform);
}

void RunProgram(Platform& platform) {
    frmMain main(platform);
    main.SetLang(L"");
    ReadHandOverFile(main);
    if (!ProbeHostServer(main))
        return;
    main.Show();
    platform.desktop.Run();
}

} // namespace kalvrooms
