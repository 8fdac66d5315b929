// An image's table of functions (.pdata), by which the system unwinds its stacks.
#pragma once

#include "image/image_memory.h"
#include "image/pe_format.h"

#include <vector>

namespace pavonix::device {

// The addresses are those of the mapped image.
struct Function {
    std::uint32_t start, prologueEnd, end;
};

// The functions of one image, while it is loaded.
class FunctionTable {
public:
    // Call after relocation. Throws ImageError for a table that is missing, not
    // sorted, or that names other places than the image's code.
    FunctionTable(ImageMemory &image, const OptionalHeader &header, const std::vector<SectionHeader> &sections);
    ~FunctionTable();
    FunctionTable(const FunctionTable &) = delete;
    FunctionTable &operator=(const FunctionTable &) = delete;

    // The function of any loaded image that has an instruction at `address`; null if none has.
    static const Function *Find(std::uint32_t address);

private:
    std::vector<Function> functions_;
};

} // namespace pavonix::device
