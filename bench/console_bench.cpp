// qto sums on a list of 100,000 rooms beside awk, which splits the same file. Both in processor
// time.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "console/Qto.h"

namespace kalvrooms {
namespace {

class ListOfRooms {
  public:
    ListOfRooms() {
        std::ofstream file(path, std::ios::binary);
        file << "header\r\n";
        for (int room = 0; room < 100'000; ++room)
            file << "Raum " << room << " \t Unterricht " << room % 40 << " \t " << 10 + room % 90
                 << ",5 \t " << room / 1000 << ". OG \t a \t HNF " << 1 + room % 6
                 << " \t N \t   \t 5 \t 0 \t \r\n";
    }
    ~ListOfRooms() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    ListOfRooms(const ListOfRooms&) = delete;
    ListOfRooms& operator=(const ListOfRooms&) = delete;

    std::filesystem::path path = std::filesystem::temp_directory_path() / "console_bench.txt";
};

double secondsOf(int who) {
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void sums(benchmark::State& state) {
    const ListOfRooms list;
    for (auto _ : state) {
        const double before = secondsOf(RUSAGE_SELF);
        std::istringstream in;
        std::ostringstream out;
        std::ostringstream err;
        if (RunQto({"sums", list.path.string(), "--csv"},
                   {in, out, err, true, NumberLocale::German()}) != ExitCode::Done)
            state.SkipWithError("qto cannot");
        state.SetIterationTime(secondsOf(RUSAGE_SELF) - before);
    }
    state.SetLabel("beside awkSplitting/manual_time");
}

void awkSplitting(benchmark::State& state) {
    const ListOfRooms list;
    const std::string command = "awk -F '\\t' '{ fields += NF } END { print fields }' " +
                                list.path.string() + " >/dev/null";
    for (auto _ : state) {
        const double before = secondsOf(RUSAGE_CHILDREN);
        if (std::system(command.c_str()) != 0)
            state.SkipWithError("awk cannot");
        state.SetIterationTime(secondsOf(RUSAGE_CHILDREN) - before);
    }
}

BENCHMARK(sums)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(awkSplitting)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kalvrooms
