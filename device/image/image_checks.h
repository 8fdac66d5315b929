// The checks that the device's loader makes before it accepts a file as a DLL.
#pragma once

#include "image/image_memory.h"
#include "image/pe_format.h"

#include <vector>

namespace pavonix::device {

constexpr std::uint32_t kPageSize = 4096;

// Throws ImageError with `otherwise` unless it holds.
void Require(bool holds, const char *otherwise);

// Throw ImageError with the reason.
void CheckHeaders(const PeHeaders &headers, bool isDll);
void CheckSections(const OptionalHeader &header, const std::vector<SectionHeader> &sections);

} // namespace pavonix::device
