// Runs a fuzzer over the files of a folder, once each: the seeds as a test, where
// there is no libFuzzer.
#include "demand.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

int main(int count, char **arguments)
{
    int runs = 0;
    for (const auto &entry : std::filesystem::directory_iterator(count > 1 ? arguments[1] : ".")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        std::cerr << entry.path().filename() << std::endl;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
        ++runs;
    }
    std::cerr << runs << " inputs" << std::endl;
    return runs > 0 ? 0 : 1;
}
