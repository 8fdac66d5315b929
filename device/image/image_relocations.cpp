#include "image/image_relocations.h"

#include "image/image_checks.h"

namespace pavonix::device {

namespace {

void RelocateOne(ImageMemory &image, std::uint32_t rva, unsigned type, std::uint32_t distance)
{
    switch (type) {
    case kRelocationPadding:
        return;
    case kRelocationHighLow:
        *image.At<std::uint32_t>(rva) += distance;
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
        Require(block->size >= sizeof(RelocationBlock) && block->size <= directory.size - offset,
                "a relocation block has an impossible size");
        std::uint32_t count = (block->size - sizeof(RelocationBlock)) / 2;
        const auto *entries = image.At<std::uint16_t>(blockRva + sizeof(RelocationBlock), count);
        for (std::uint32_t i = 0; i < count; ++i) {
            RelocateOne(image, block->pageRva + (entries[i] & 0x0FFF), entries[i] >> 12, distance);
        }
        offset += block->size;
    }
}

} // namespace pavonix::device
