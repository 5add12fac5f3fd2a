// Opening a model and listing its rooms, beside a plain read of the file's bytes and beside the
// independent reader that the tests use (opening the model and meshing its spaces).

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>

#include "ifc/Building.h"
#include "ifc/ModelText.h"

namespace kalvrooms::ifc {
namespace {

std::string number(std::int64_t value) {
    std::string text = "#";
    return text.append(std::to_string(value));
}

// A room with a body of faces, a property set and quantities, as CAD programs write them, and as
// many walls as make a model mostly something else.
std::string roomLines(std::int64_t first, int room, const std::string& height) {
    const auto id = [&](std::int64_t offset) { return number(first + offset); };
    const std::string x = std::to_string(room % 100 * 6) + ".";
    const std::string guid = std::to_string(1'000'000'000 + room) + "AAAAAAAAAAA";
    std::string lines =
        id(0) + "=IFCSPACE('0" + guid + "',$,'" + std::to_string(room) + "',$,$,#9," + id(1) +
        ",'B\\X2\\00FC\\X0\\ro',.ELEMENT.,.INTERNAL.,$);\n" + id(1) +
        "=IFCPRODUCTDEFINITIONSHAPE($,$,(" + id(2) + "));\n" + id(2) +
        "=IFCSHAPEREPRESENTATION(#6,'Body','SweptSolid',(" + id(3) + "));\n" + id(3) +
        "=IFCEXTRUDEDAREASOLID(" + id(4) + ",#5,#7," + height + ");\n" + id(4) +
        "=IFCRECTANGLEPROFILEDEF(.AREA.,$," + id(5) + ",4.,5.);\n" + id(5) +
        "=IFCAXIS2PLACEMENT2D(" + id(6) + ",$);\n" + id(6) + "=IFCCARTESIANPOINT((" + x +
        ",0.));\n" + id(7) + "=IFCRELDEFINESBYPROPERTIES('1" + guid + "',$,$,$,(" + id(0) + ")," +
        id(8) + ");\n" + id(8) + "=IFCELEMENTQUANTITY('2" + guid + "',$,'BaseQuantities',$,$,(" +
        id(9) + "));\n" + id(9) + "=IFCQUANTITYAREA('NetFloorArea',$,$,20.,$);\n" + id(10) +
        "=IFCRELAGGREGATES('3" + guid + "',$,$,$,#12,(" + id(0) + "));\n";
    for (std::int64_t i = 11; i < 200; i += 3)
        lines += id(i) + "=IFCCARTESIANPOINT((" + x + std::to_string(i) + ",1.25,3.));\n" +
                 id(i + 1) +
                 "=IFCPROPERTYSINGLEVALUE('Reference',$,IFCIDENTIFIER('Basic Wall: 115 mm'),$);\n" +
                 id(i + 2) + "=IFCPOLYLOOP((" + id(i) + "," + id(i) + "," + id(i) + "));\n";
    return lines;
}

class ModelFile {
  public:
    // A height that is no number breaks every room.
    explicit ModelFile(std::int64_t megabytes, const std::string& height = "3.") {
        ModelText model;
        model.lines = Rectangle;
        for (int room = 0; static_cast<std::int64_t>(model.lines.size()) < megabytes * 1'000'000;
             ++room)
            model.lines += roomLines(1000 + 300 * room, room, height);
        std::ofstream(path, std::ios::binary) << model.Text();
        bytes = std::filesystem::file_size(path);
    }
    ~ModelFile() {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }
    ModelFile(const ModelFile&) = delete;
    ModelFile& operator=(const ModelFile&) = delete;

    std::filesystem::path path = std::filesystem::temp_directory_path() / "model_bench.ifc";
    std::uintmax_t bytes = 0;
};

// A line of /proc/self/status, in bytes.
double memory(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == name + ":") {
            double kilobytes = 0.0;
            status >> kilobytes;
            return kilobytes * 1024.0;
        }
    }
    return 0.0;
}

void readBytes(benchmark::State& state) {
    const ModelFile model(state.range(0));
    for (auto _ : state) {
        std::ifstream file(model.path, std::ios::binary);
        std::string bytes(model.bytes, '\0');
        file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        benchmark::DoNotOptimize(bytes);
    }
}

void listRooms(benchmark::State& state) {
    const ModelFile model(state.range(0));
    malloc_trim(0); // what was freed before is given back and does not count
    const double before = memory("VmRSS");
    std::ofstream("/proc/self/clear_refs") << 5; // the peak begins anew
    for (auto _ : state) {
        const auto file = StepFile::Load(model.path);
        const Building building(*file);
        benchmark::DoNotOptimize(building.Rooms().size());
    }
    const std::string size = std::to_string(state.range(0));
    state.SetLabel("beside readBytes/" + size + " independentReader/" + size + "/manual_time");
    state.counters["memory_per_byte"] =
        (memory("VmHWM") - before) / static_cast<double>(model.bytes);
}

void listBrokenRooms(benchmark::State& state) {
    const ModelFile model(state.range(0), "'x'");
    for (auto _ : state) {
        const auto file = StepFile::Load(model.path);
        const Building building(*file);
        benchmark::DoNotOptimize(building.Troubles().size());
    }
    state.SetLabel("beside listRooms/" + std::to_string(state.range(0)));
}

// In its own process, timed by itself.
void independentReader(benchmark::State& state) {
    const ModelFile model(state.range(0));
    const std::string command = "NODE_PATH=build/independent-reader/node_modules node "
                                "tests/ifc/independent/spaces.js --time " +
                                model.path.string();
    for (auto _ : state) {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"),
                                                                   pclose);
        double milliseconds = 0.0;
        if (!pipe || std::fscanf(pipe.get(), "%lf", &milliseconds) != 1) {
            state.SkipWithError("setup/independent-reader was not run");
            return;
        }
        state.SetIterationTime(milliseconds / 1000.0);
    }
}

BENCHMARK(readBytes)->Arg(4)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(listRooms)->Arg(4)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(listBrokenRooms)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(independentReader)->Arg(4)->Arg(100)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace kalvrooms::ifc
