// Reading and writing a room list as text, beside a plain splitter at lines and tabs over the same
// bytes in the same run. "per_room" is what one room costs.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "files/FilePath.h"
#include "files/clsFileSytem.h"
#include "support/FileLayer.h"

namespace kalvrooms {
namespace {

// A school or a hospital of any size: 25 rooms to a storey, every fifth room polygonal.
clsFloors listOf(int rooms) {
    clsFloors floors;
    for (int i = 0; i < rooms; ++i) {
        clsRoom room;
        room.Name(L"Raum " + std::to_wstring(i + 1));
        room.FunctionName(L"Unterricht und Betreuung");
        room.Geometry->Area(10.0 + i % 1000 * 0.125);
        room.StoryCode(std::to_wstring(i / 25) + L". OG");
        room.Enclosure(L"a");
        room.Occupancy(L"HNF 5");
        room.AreaType(L"Nutzfläche");
        if (i % 5 == 0) {
            room.Geometry->SetTypeAndValue(CalculationByFile, L"C:\\Projekte\\Schule\\2-" +
                                                                  std::to_wstring(i) + L".txt");
            room.SetRoomID(std::to_wstring(i) + L"-K3");
        } else {
            room.Geometry->SetTypeAndValue(CalculationByRatio, i % 2 == 0 ? L"1" : L"1,5");
        }
        floors.AddRooms(room, 1);
    }
    return floors;
}

class File {
  public:
    explicit File(const clsFloors& floors) {
        HandInUserLocale(NumberLocale::German);
        clsFileSytem(layer_.services).WriteListToFile(name, floors);
    }
    ~File() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::string bytes() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

  private:
    FileLayer layer_;
    std::filesystem::path path_ = std::filesystem::temp_directory_path() / "text_list_bench.txt";

  public:
    const std::wstring name = path_.wstring();
};

// What a room costs, beside the plain splitter and beside a short list.
void report(benchmark::State& state, const std::string& name = "") {
    if (!name.empty())
        state.SetLabel("beside splitLinesAndTabs/" + std::to_string(state.range(0)) +
                       (state.range(0) > 1'000 ? " " + name + "/1000" : ""));
    state.counters["per_room"] = benchmark::Counter(
        static_cast<double>(state.range(0)) * static_cast<double>(state.iterations()),
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void readList(benchmark::State& state) {
    const int rooms = static_cast<int>(state.range(0));
    const File file(listOf(rooms));
    FileLayer layer;
    for (auto _ : state) {
        auto floors = std::make_unique<clsFloors>();
        clsFileSytem(layer.services).ReadListFromFile(file.name, *floors);
        state.PauseTiming();
        if (floors->GetCountOfRooms() != rooms)
            state.SkipWithError("not all rooms were read");
        floors.reset();
        state.ResumeTiming();
    }
    report(state, "readList");
}

void writeList(benchmark::State& state) {
    const clsFloors floors = listOf(static_cast<int>(state.range(0)));
    const File file(floors);
    FileLayer layer;
    for (auto _ : state)
        clsFileSytem(layer.services).WriteListToFile(file.name, floors);
    report(state, "writeList");
}

// The least that reading such a file can cost: its bytes, cut at line ends and tabs.
void splitLinesAndTabs(benchmark::State& state) {
    const File file(listOf(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        const std::string bytes = file.bytes();
        std::vector<std::string> fields;
        std::size_t begin = 0;
        std::size_t count = 0;
        while (begin < bytes.size()) {
            const std::size_t end = std::min(bytes.find('\n', begin), bytes.size());
            fields.clear();
            for (std::size_t at = begin; at <= end;) {
                const std::size_t tab = std::min(bytes.find('\t', at), end);
                fields.push_back(bytes.substr(at, tab - at));
                at = tab + 1;
            }
            count += fields.size();
            begin = end + 1;
        }
        benchmark::DoNotOptimize(count);
    }
    report(state);
}

// Bytes that are in use on the heap.
std::size_t allocated() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

void memoryOfRooms(benchmark::State& state) {
    const int rooms = static_cast<int>(state.range(0));
    for (auto _ : state) {
        const std::size_t before = allocated();
        const auto floors = std::make_unique<clsFloors>(listOf(rooms));
        state.counters["bytes_per_room"] = static_cast<double>(allocated() - before) / rooms;
    }
    state.SetLabel("beside memoryOfTheirTexts/100000/iterations:1");
}

// The least that the same rooms take as texts: their rows, a string for each of the columns.
void memoryOfTheirTexts(benchmark::State& state) {
    const File file(listOf(static_cast<int>(state.range(0))));
    const std::string bytes = file.bytes();
    for (auto _ : state) {
        const std::size_t before = allocated();
        std::vector<std::vector<std::string>> rows;
        for (std::size_t begin = 0; begin < bytes.size();) {
            const std::size_t end = std::min(bytes.find('\n', begin), bytes.size());
            std::vector<std::string>& fields = rows.emplace_back();
            for (std::size_t at = begin; at <= end;) {
                const std::size_t tab = std::min(bytes.find('\t', at), end);
                fields.push_back(bytes.substr(at, tab - at));
                at = tab + 1;
            }
            begin = end + 1;
        }
        state.counters["bytes_per_room"] =
            static_cast<double>(allocated() - before) / static_cast<double>(rows.size());
    }
}

BENCHMARK(memoryOfRooms)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(memoryOfTheirTexts)->Arg(100'000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(splitLinesAndTabs)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(readList)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(
    benchmark::kMillisecond);
BENCHMARK(writeList)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(
    benchmark::kMillisecond);

} // namespace
} // namespace kalvrooms
