// The bridge and the practice host in processes of their own: what goes beside the host's calls.

#include <filesystem>

#include "bench/windows/Figure.h"
#include "practice/PracticeHostProcess.h"
#include "support/BridgeContext.h"
#include "support/Drawings.h"
#include "win32/ComHostServer.h"

namespace kalvrooms::testing {
namespace {

// Where the machine has a memory disk: how fast its disk is says nothing about the program.
std::filesystem::path projectFolder() {
    std::filesystem::path folder = L"Z:\\dev\\shm";
    if (!std::filesystem::is_directory(folder))
        folder = std::filesystem::temp_directory_path();
    folder /= L"quartino-bench";
    std::filesystem::create_directories(folder);
    return folder;
}

void measure() {
    constexpr int elements = 5000;
    PracticeHostProcess host;
    const auto session = std::make_shared<ComSession>();
    const std::unique_ptr<HostServer> server = MakeComHostServer(session);
    BridgeContext context(*server);
    const std::unique_ptr<clsKalvero> bridge = context.bridge();
    const std::filesystem::path folder = projectFolder();
    const auto inCalls = [&](const char* name, const auto& operation) {
        double outside = 1e9, calls = 1e9;
        for (int turn = 0; turn < 2; ++turn) {
            const auto before = session->TimeInCalls();
            const double all = bench::milliseconds(operation);
            const double spent =
                std::chrono::duration<double, std::milli>(session->TimeInCalls() - before).count();
            if (all - spent < outside) {
                outside = all - spent;
                calls = spent;
            }
        }
        bench::figure(name, outside, "ms", "time in the host's calls", calls);
    };

    std::vector<Element> standing;
    for (int i = 1; i <= elements; ++i)
        standing.push_back(roomElement(i, 3, L"A"));
    host.load(drawingOf(standing, folder.wstring()));
    bridge->GetProjectName();
    clsFloors floors;
    inCalls("reading 5000 elements, outside the host's calls", [&] {
        floors = clsFloors();
        bridge->ImportFloorsFromKalvero(floors);
    });
    if (floors.GetCountOfRooms() != elements)
        throw driver::WaitFailed("not all elements were read");

    floors = clsFloors();
    clsRoom room;
    floors.AddRooms(room, 150);
    std::int32_t atPosition = 0, updated = 0, placed = 0;
    inCalls("writing 150 rooms, outside the host's calls", [&] {
        host.load(drawingOf({}, folder.wstring()));
        bridge->ExportFloorsToKalvero(floors, true, true, 1, 1, atPosition, updated, placed);
    });
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace kalvrooms::testing

int wmain() {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int result = 0;
    try {
        kalvrooms::testing::measure();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        result = 1;
    }
    CoUninitialize();
    return result;
}
