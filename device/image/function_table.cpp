#include "image/function_table.h"

#include "image/image_checks.h"

#include <algorithm>
#include <mutex>

namespace pavonix::device {

namespace {

constexpr std::uint32_t kIs32Bit = 1u << 30, kHasHandler = 1u << 31;

struct Entry {
    std::uint32_t start, bits; // 8 bits: instructions of the prologue; 22 bits: of the function; flags
};

std::vector<const std::vector<Function> *> tables;
std::mutex tablesLock;

} // namespace

FunctionTable::FunctionTable(ImageMemory &image, const OptionalHeader &header,
                             const std::vector<SectionHeader> &sections)
{
    const DataDirectory &directory = header.directories[kExceptionDirectory];
    Require(directory.size != 0 && directory.size % sizeof(Entry) == 0, "has no table of functions");
    const std::uint32_t count = directory.size / sizeof(Entry);
    const Entry *entries = image.At<Entry>(directory.rva, count);
    for (const Entry *entry = entries; entry < entries + count; ++entry) {
        const std::uint32_t prologue = entry->bits & 0xFF, length = entry->bits >> 8 & 0x3FFFFF;
        const Function function = {entry->start, entry->start + 4 * prologue, entry->start + 4 * length};
        Require((entry->bits & (kIs32Bit | kHasHandler)) == kIs32Bit && prologue <= length && length != 0,
                "its table of functions has an entry that is none");
        Require(std::any_of(sections.begin(), sections.end(),
                            [&](const SectionHeader &section) {
                                const std::uint32_t begin = image.Base() + section.rva;
                                return (section.characteristics & kSectionIsExecutable) != 0 &&
                                       function.start >= begin && function.end <= begin + section.virtualSize;
                            }),
                "its table of functions names a place outside its code");
        Require(functions_.empty() || functions_.back().end <= function.start, "its table of functions is not sorted");
        functions_.push_back(function);
    }
    const std::lock_guard lock(tablesLock);
    tables.push_back(&functions_);
}

FunctionTable::~FunctionTable()
{
    const std::lock_guard lock(tablesLock);
    std::erase(tables, &functions_);
}

const Function *FunctionTable::Find(std::uint32_t address)
{
    const std::lock_guard lock(tablesLock);
    for (const std::vector<Function> *table : tables) {
        const auto next = std::upper_bound(table->begin(), table->end(), address,
                                           [](std::uint32_t at, const Function &one) { return at < one.start; });
        if (next != table->begin() && address < (next - 1)->end) {
            return &*(next - 1);
        }
    }
    return nullptr;
}

} // namespace pavonix::device
