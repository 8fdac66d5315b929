// Every function that the runner can give to a DLL.
#pragma once

#include "system/import_gate.h"

#include <string>
#include <vector>

namespace pavonix::device {

const std::vector<Import> &ImportTable();

// The address for an import, as the image calls it, 0 when the device has no such function. Library
// names compare without regard to case, as the device's loader compares them.
std::uint32_t ResolveImport(const std::string &library, const std::string &name);

// The gate of a function, found by its name alone; null if there is none.
ImportGate *FindGate(const std::string &name);

} // namespace pavonix::device
