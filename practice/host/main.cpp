#include "drawing/Text.h"
#include "ifc/TroubleText.h"
#include "practice/host/ClassIds.h"
#include "practice/host/ClassObjects.h"
#include "practice/host/ClientProgram.h"
#include "practice/host/CommandLine.h"
#include "practice/host/HostProcess.h"
#include "practice/host/HostWindow.h"
#include "practice/server/ServerApartment.h"
#include "win32/Win32LetterRules.h"

#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace kalvrooms;
using namespace kalvrooms::practice;

constexpr int TroubleCode = 2;

// On the console, or in a message box when there is none.
void Tell(const std::wstring& trouble) {
    const std::wstring german = ifc::InGerman(trouble);
    if (!Say(ToUtf8(german)))
        MessageBoxW(nullptr, german.c_str(), L"Kalvero", MB_OK | MB_ICONWARNING);
}

void WriteOutputs(const HostProcess& process, const CommandLine& line) {
    if (!line.save.empty())
        process.Save(line.save);
    if (!line.svg.empty())
        process.SaveSvg(line.svg);
}

void Prepare(HostProcess& process, const CommandLine& line) {
    if (!line.drawing.empty())
        process.Open(line.drawing);
    // Nobody may be there who could close a message box.
    if (const std::wstring passedOver = process.PassedOver(); !passedOver.empty())
        Say(ToUtf8(passedOver));
    if (!line.projectFolder.empty())
        process.session.drawing.project.folder = line.projectFolder;
    if (line.place)
        process.session.placing.At(*line.place);
    process.session.state.Set(line.state);
    process.plain = line.plain;
    for (const auto& [n, fault] : line.faults)
        process.calls.FailAt(n, fault);
}

int RunHost(const CommandLine& line) {
    // Storeys are told apart as in the program.
    HandInLetterRules(Win32LetterRules());
    // Outlives everything else: clients may hold objects until the process ends.
    HostProcess process;
    const ServerApartment apartment;
    Prepare(process, line);
    std::optional<KnownWhileRunning> known;
    if (line.knownWhileRunning)
        known.emplace(ServerClasses);

    ClientProgram client;
    const auto startClient = [&] {
        client.Start(line.start.empty() ? OwnProgram().replace_filename(L"Quartino.exe").wstring()
                                        : line.start,
                     line.handOver);
    };
    HostWindow window(process, {line.hidden, line.embedding}, startClient);
    process.session.applied = [&] {
        process.reactions.drawingChanged();
        WriteOutputs(process, line);
    };
    // A host that was started by hand stays without clients too.
    if (!line.embedding)
        process.AddUse();

    int exitCode = 0;
    {
        const ClassObjects classes(process);
        if (!line.embedding)
            window.Show();
        if (!line.start.empty()) {
            startClient();
            if (line.quitWithClient)
                client.TellWhenEnded(window.handle(), HostWindow::EndMessage);
        }
        exitCode = window.Run();
    }
    WriteOutputs(process, line);
    return exitCode;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    // As in the program: anybody may have put a file beside this one.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    try {
        const CommandLine line = CommandLine::From({__wargv + 1, __wargv + __argc});
        if (line.registerServer || line.unregisterServer) {
            const ComApartment apartment;
            line.unregisterServer ? UnregisterClasses(ServerClasses)
                                  : RegisterClasses(ServerClasses);
            return 0;
        }
        return RunHost(line);
    } catch (const HostError& error) {
        Tell(error.description());
    } catch (const std::exception& error) {
        Tell(FromUtf8(error.what()));
    }
    return TroubleCode;
}
