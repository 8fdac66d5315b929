// The functions of coredll.dll and ws2.dll that the runner has, by concern.
// Each call adds its rows to the import table.
#pragma once

#include "system/import_gate.h"

#include <vector>

namespace pavonix::device {

constexpr char kCoreDll[] = "coredll.dll";
constexpr char kWinsockDll[] = "ws2.dll";

void AddMemoryImports(std::vector<Import> &table);
void AddTextImports(std::vector<Import> &table);
void AddSearchImports(std::vector<Import> &table);
void AddFileImports(std::vector<Import> &table);
void AddSystemImports(std::vector<Import> &table);
void AddSocketImports(std::vector<Import> &table);

} // namespace pavonix::device
