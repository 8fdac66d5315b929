// Base relocation: adapts an image to the address it was mapped to.
#pragma once

#include "image/image_memory.h"
#include "image/pe_format.h"

namespace pavonix::device {

// Adds the distance from the preferred base to every address that the image's
// relocation directory lists. Throws ImageError for a type that is unknown.
void ApplyRelocations(ImageMemory &image, const OptionalHeader &header);

} // namespace pavonix::device
