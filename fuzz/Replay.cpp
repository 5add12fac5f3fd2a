// Runs a fuzzer's function without the fuzzing engine: over the files of folders as they are, and
// then for a bounded time over changes of them: drawn at random, but the same ones in every run, so
// that a test that passed passes again. What is new is for the engine to find (fuzz/run).
//   NAME_replay SECONDS FOLDER...
// An input that fails ends the program; it lies in NAME_replay.input then.

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace {

constexpr std::size_t longest = 4096;

class Chance {
  public:
    std::size_t below(std::size_t limit) {
        return limit == 0 ? 0 : std::uniform_int_distribution<std::size_t>(0, limit - 1)(engine_);
    }

  private:
    std::mt19937 engine_;
};

// One to eight changes: a byte, a piece gone, a piece twice, a piece of another input.
std::string changed(std::string input, const std::vector<std::string>& inputs, Chance& chance) {
    for (std::size_t change = 0; change <= chance.below(8); ++change) {
        const std::size_t at = chance.below(input.size() + 1);
        const std::size_t length = chance.below(32);
        switch (chance.below(4)) {
        case 0:
            if (at < input.size())
                input[at] = static_cast<char>(chance.below(256));
            break;
        case 1:
            input.erase(at, length);
            break;
        case 2:
            input.insert(at, input.substr(at, length));
            break;
        default: {
            const std::string& other = inputs[chance.below(inputs.size())];
            input.insert(at, other, chance.below(other.size() + 1), length);
        }
        }
    }
    if (input.size() > longest)
        input.resize(longest);
    return input;
}

} // namespace

int main(int count, char** arguments) {
    const std::string kept = std::string(arguments[0]) + ".input";
    const auto run = [&](const std::string& input) {
        std::ofstream(kept, std::ios::binary) << input;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    };
    std::vector<std::string> inputs;
    for (int folder = 2; folder < count; ++folder) {
        const std::filesystem::directory_iterator files(arguments[folder]), end;
        std::set<std::filesystem::path> sorted(files, end);
        for (const auto& file : sorted) {
            std::ifstream stream(file, std::ios::binary);
            inputs.emplace_back(std::istreambuf_iterator<char>(stream),
                                std::istreambuf_iterator<char>());
            run(inputs.back());
        }
    }
    if (count < 3 || inputs.empty()) {
        std::cerr << "no inputs\n";
        return 2;
    }
    Chance chance;
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(std::atoi(arguments[1]));
    std::size_t runs = 0;
    for (; Clock::now() < end; ++runs)
        run(changed(inputs[chance.below(inputs.size())], inputs, chance));
    std::cout << inputs.size() << " inputs, " << runs << " changed ones\n";
    std::filesystem::remove(kept);
    return 0;
}
