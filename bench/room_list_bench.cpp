// Walking the room list by running index, as the table, the writers and the bridge do.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "model/clsFloors.h"

namespace {

void fill(kalvrooms::clsFloors& floors, std::int64_t rooms, std::int64_t storeys) {
    for (std::int64_t storey = 0; storey < storeys; ++storey) {
        kalvrooms::clsRoom room;
        room.StoryCode(std::to_wstring(storey) + L". OG");
        room.Name(L"Raum 1");
        room.FunctionName(L"Unterricht");
        floors.AddRooms(room, static_cast<std::int32_t>(rooms / storeys));
    }
}

void walkTheRoomList(benchmark::State& state) {
    kalvrooms::clsFloors floors;
    fill(floors, state.range(0), state.range(1));
    const std::int32_t count = floors.GetCountOfRooms();
    kalvrooms::clsRoom room;
    for (auto _ : state) {
        for (std::int32_t i = 1; i <= count; ++i) {
            floors.GetRoomByIndex(i, room);
            benchmark::DoNotOptimize(room);
        }
    }
    if (count > 1'000)
        state.SetLabel("beside walkTheRoomList/rooms:1000/storeys:10");
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["per_room"] = benchmark::Counter(static_cast<double>(count),
                                                    benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}
BENCHMARK(walkTheRoomList)
    ->ArgNames({"rooms", "storeys"})
    ->Args({1'000, 10})
    ->Args({100'000, 10})
    ->Args({100'000, 1'000})
    ->Unit(benchmark::kMillisecond);

} // namespace
