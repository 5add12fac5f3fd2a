#include "soak/Resources.h"

#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace kalvrooms::testing {
namespace {

// Lists of the system that have no header of their own.
constexpr auto everyHandle = static_cast<SYSTEM_INFORMATION_CLASS>(64);
struct HandleEntry {
    void* object;
    ULONG_PTR process, value;
    ULONG access;
    USHORT trace, type;
    ULONG attributes, reserved;
};
struct HandleList {
    ULONG_PTR count, reserved;
    HandleEntry entries[1];
};

struct GdiEntry {
    std::uint64_t object;
    std::uint32_t owner;
    std::uint16_t unique;
    std::uint8_t type; // 0: free
    std::uint8_t flags;
    std::uint64_t user;
};
constexpr std::size_t gdiEntries = 0x4000;
constexpr std::size_t gdiTableInBlock = 0xF8; // of a 64-bit process's environment block

// A count of nothing would pass for one that does not rise.
void require(bool answered, const char* what) {
    if (!answered)
        throw std::runtime_error(std::string("the system does not tell ") + what);
}

void readMemory(HANDLE process, const void* from, void* to, std::size_t bytes) {
    require(ReadProcessMemory(process, from, to, bytes, nullptr) != FALSE,
            "what stands in a process's memory");
}

} // namespace

double privateBytes(HANDLE process) {
    PROCESS_MEMORY_COUNTERS counters{};
    require(GetProcessMemoryInfo(process, &counters, sizeof counters) != FALSE,
            "the memory of a process");
    return static_cast<double>(counters.PagefileUsage);
}

double kernelHandles(HANDLE process) {
    std::vector<ULONG_PTR> memory(1 << 16);
    ULONG needed = 0;
    const auto bytes = [&] { return static_cast<ULONG>(memory.size() * sizeof(ULONG_PTR)); };
    while (NtQuerySystemInformation(everyHandle, memory.data(), bytes(), &needed) != 0) {
        require(memory.size() < 1 << 24, "the handles of all processes");
        memory.resize(memory.size() * 2);
    }
    const auto& list = *reinterpret_cast<const HandleList*>(memory.data());
    return static_cast<double>(std::count_if(
        list.entries, list.entries + list.count,
        [id = GetProcessId(process)](const HandleEntry& entry) { return entry.process == id; }));
}

double gdiObjects(HANDLE process) {
    if (const DWORD said = GetGuiResources(process, GR_GDIOBJECTS))
        return said;
    // Wine keeps the table that Windows has too, one for each process.
    PROCESS_BASIC_INFORMATION information{};
    require(NtQueryInformationProcess(process, ProcessBasicInformation, &information,
                                      sizeof information, nullptr) == 0,
            "where a process's environment block is");
    void* table = nullptr;
    readMemory(process, reinterpret_cast<const char*>(information.PebBaseAddress) + gdiTableInBlock,
               &table, sizeof table);
    std::vector<GdiEntry> entries(gdiEntries);
    readMemory(process, table, entries.data(), entries.size() * sizeof(GdiEntry));
    return static_cast<double>(std::count_if(
        entries.begin(), entries.end(), [](const GdiEntry& entry) { return entry.type != 0; }));
}

double userObjects(HANDLE process) {
    if (const DWORD said = GetGuiResources(process, GR_USEROBJECTS))
        return said;
    // One table for all processes, which is filled up: what does not go in any more is in use.
    constexpr double places = (0xFFEF - 0x20) / 2;
    std::vector<HMENU> menus;
    while (const HMENU menu = CreateMenu())
        menus.push_back(menu);
    for (const HMENU menu : menus)
        DestroyMenu(menu);
    return places - static_cast<double>(menus.size());
}

} // namespace kalvrooms::testing
