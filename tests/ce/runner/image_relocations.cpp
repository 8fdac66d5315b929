#include "image_relocations.h"

namespace pavonix::ce {

namespace {

// MOVW and MOVT each hold 16 bits of an address, split over their bits 16 to 19 and 0 to 11.
std::uint32_t Immediate(std::uint32_t instruction)
{
    return ((instruction >> 4) & 0xF000) | (instruction & 0x0FFF);
}

std::uint32_t WithImmediate(std::uint32_t instruction, std::uint32_t value)
{
    return (instruction & 0xFFF0F000) | ((value & 0xF000) << 4) | (value & 0x0FFF);
}

void RelocateMovPair(std::uint32_t *pair, std::uint32_t distance)
{
    std::uint32_t address = (Immediate(pair[0]) | (Immediate(pair[1]) << 16)) + distance;
    pair[0] = WithImmediate(pair[0], address & 0xFFFF);
    pair[1] = WithImmediate(pair[1], address >> 16);
}

void RelocateOne(ImageMemory &image, std::uint32_t rva, unsigned type, std::uint32_t distance)
{
    switch (type) {
    case kRelocationPadding:
        return;
    case kRelocationHighLow:
        *image.At<std::uint32_t>(rva) += distance;
        return;
    case kRelocationArmMov32:
        RelocateMovPair(image.At<std::uint32_t>(rva, 2), distance);
        return;
    default:
        throw ImageError("unknown relocation type " + std::to_string(type));
    }
}

} // namespace

void ApplyRelocations(ImageMemory &image, const OptionalHeader &header)
{
    const DataDirectory &directory = header.directories[kRelocationDirectory];
    std::uint32_t distance = image.Base() - header.imageBase;
    std::uint32_t offset = 0;
    while (offset + sizeof(RelocationBlock) <= directory.size) {
        std::uint32_t blockRva = directory.rva + offset;
        const auto *block = image.At<RelocationBlock>(blockRva);
        if (block->size < sizeof(RelocationBlock)) {
            throw ImageError("a relocation block is smaller than its header");
        }
        std::uint32_t count = (block->size - sizeof(RelocationBlock)) / 2;
        const auto *entries = image.At<std::uint16_t>(blockRva + sizeof(RelocationBlock), count);
        for (std::uint32_t i = 0; i < count; ++i) {
            RelocateOne(image, block->pageRva + (entries[i] & 0x0FFF), entries[i] >> 12, distance);
        }
        offset += block->size;
    }
}

} // namespace pavonix::ce
