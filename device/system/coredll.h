// The functions of coredll.dll and ws2.dll that the runner has, by concern.
// Each call adds its rows to the import table.
#pragma once

#include "platform/wide_char.h"
#include "system/import_gate.h"

#include <vector>

namespace pavonix::device {

inline constexpr char kCoreDll[] = "coredll.dll";
inline constexpr char kWinsockDll[] = "ws2.dll";

void AddMemoryImports(std::vector<Import> &table);
void AddTextImports(std::vector<Import> &table);
void AddSearchImports(std::vector<Import> &table);
void AddFileImports(std::vector<Import> &table);
void AddModuleImports(std::vector<Import> &table);
void AddProgramImports(std::vector<Import> &table);
void AddSystemImports(std::vector<Import> &table);
void AddSocketImports(std::vector<Import> &table);

// Ends the run if a block was written after it was freed.
void CheckFreedBlocks();

} // namespace pavonix::device
