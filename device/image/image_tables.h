// The two tables that tie an image to others: what it imports, what it exports.
#pragma once

#include "image/image_memory.h"
#include "image/pe_format.h"

#include <cstdint>
#include <string>

namespace pavonix::device {

// Returns the address of a function of a library, 0 when there is none.
using ImportResolver = std::uint32_t (*)(const std::string &library, const std::string &name);

// Fills the image's import address tables. Throws ImageError that lists every
// import without a function, as a device would refuse to load the image.
void BindImports(ImageMemory &image, const OptionalHeader &header, ImportResolver resolve);

// Throws ImageError unless the names are sorted: the device uses a binary search.
void CheckExports(ImageMemory &image, const OptionalHeader &header);

// The address of an exported function, 0 when there is none.
std::uint32_t FindExport(ImageMemory &image, const OptionalHeader &header, const std::string &name);
std::uint32_t FindExport(ImageMemory &image, const OptionalHeader &header, std::uint32_t ordinal);

} // namespace pavonix::device
