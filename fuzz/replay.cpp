// Runs a fuzzer on the files of a folder and on their short prefixes: the seeds as a test,
// without libFuzzer.
#include "demand.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

constexpr std::size_t kLongestPrefix = 160; // bytes

// The block has exactly this size, so that a sanitizer detects reads beyond it.
void Run(const std::vector<std::uint8_t> &bytes)
{
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int count, char **arguments)
{
    int runs = 0;
    for (const auto &entry : std::filesystem::directory_iterator(count > 1 ? arguments[1] : ".")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), {}};
        std::cerr << entry.path().filename() << std::endl;
        for (std::size_t length = 0; length < std::min(bytes.size(), kLongestPrefix); ++length) {
            Run({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)});
        }
        Run(bytes);
        ++runs;
    }
    std::cerr << runs << " inputs" << std::endl;
    return runs > 0 ? 0 : 1;
}
