#include "system/import_table.h"

#include "device_options.h"
#include "system/coredll.h"
#include "trampoline/trampoline.h"

#include <strings.h>

namespace pavonix::device {

namespace {

std::vector<Import> MakeTable()
{
    std::vector<Import> table;
    AddMemoryImports(table);
    AddTextImports(table);
    AddSearchImports(table);
    AddFileImports(table);
    AddModuleImports(table);
    AddProgramImports(table);
    AddSystemImports(table);
    AddSocketImports(table);
    for (Import &import : table) {
        import.address = MakeVeneer(import.address);
    }
    return table;
}

} // namespace

const std::vector<Import> &ImportTable()
{
    static const std::vector<Import> table = MakeTable();
    return table;
}

std::uint32_t ResolveImport(const std::string &library, const std::string &name)
{
    if (deviceOptions.missing.count(name) != 0 || deviceOptions.missing.count(library) != 0) {
        return 0;
    }
    for (const Import &import : ImportTable()) {
        if (import.gate->Name() == name && strcasecmp(import.gate->Library(), library.c_str()) == 0) {
            return import.address;
        }
    }
    return 0;
}

ImportGate *FindGate(const std::string &name)
{
    for (const Import &import : ImportTable()) {
        if (import.gate->Name() == name) {
            return import.gate;
        }
    }
    return nullptr;
}

} // namespace pavonix::device
