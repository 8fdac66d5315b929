// coredll.dll: functions of the system looked up by name.
#include "system/coredll.h"
#include "system/import_table.h"

#include <string>
#include <strings.h>

namespace pavonix::device {

namespace {

// Names of libraries and functions are ASCII.
std::string Narrow(const WideChar *text)
{
    return {text, text + std::char_traits<WideChar>::length(text)};
}

// A module's handle is the address of its name.
const char *GetModuleHandle(const WideChar *name)
{
    const std::string wanted = Narrow(name);
    for (const char *library : {kCoreDll, kWinsockDll}) {
        if (strcasecmp(library, wanted.c_str()) == 0) {
            return library;
        }
    }
    return FailWith<const char *>(kErrorModuleNotFound, nullptr);
}

std::uint32_t GetProcAddress(const char *module, const WideChar *name)
{
    const bool isKnown = module == kCoreDll || module == kWinsockDll;
    const std::uint32_t address = isKnown ? ResolveImport(module, Narrow(name)) : 0;
    return address != 0 ? address : FailWith(kErrorProcedureNotFound, 0u);
}

} // namespace

void AddModuleImports(std::vector<Import> &table)
{
    table.push_back(Failing<&GetModuleHandle, 0>(kCoreDll, "GetModuleHandleW"));
    table.push_back(Failing<&GetProcAddress, 0>(kCoreDll, "GetProcAddressW"));
}

} // namespace pavonix::device
