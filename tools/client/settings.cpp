#include "settings.h"

#include "diagnostics/printable.h"
#include "exit_code.h"
#include "system.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <filesystem>
#include <map>

namespace client {

namespace {

std::string Variable(const char *name)
{
    const char *value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string SettingsFile()
{
    if (const std::string named = Variable("PAVONIX_CONFIG"); !named.empty()) {
        return named;
    }
    const std::string folder = Variable("XDG_CONFIG_HOME");
    const std::string file = (folder.empty() ? SettingsFolder() : folder) + "/pavonix.conf";
    return std::filesystem::exists(file) ? file : "";
}

const std::map<std::string, const char *> kVariables = {
    {"url", "PAVONIX_URL"}, {"port", "PAVONIX_PORT"}, {"profile", "PAVONIX_PROFILE"}, {"timeout", "PAVONIX_TIMEOUT"}};

void Apply(const CLI::ConfigItem &item, const std::string &file)
{
    const auto variable = kVariables.find(item.name);
    if (!item.parents.empty() || variable == kVariables.end() || item.inputs.size() != 1) {
        throw Failure(ExitCode::kUsage,
                      file + ": " + diagnostics::PrintableText(item.fullname()) +
                          " is not a setting; the settings are url, port, profile and timeout, each with one value");
    }
    SetUnlessSet(variable->second, item.inputs.front());
}

} // namespace

void ReadSettings()
{
    const std::string file = SettingsFile();
    if (file.empty()) {
        return;
    }
    try {
        for (const CLI::ConfigItem &item : CLI::ConfigINI().from_file(file)) {
            Apply(item, file);
        }
    } catch (const CLI::Error &error) {
        throw Failure(ExitCode::kUsage, error.what());
    }
}

} // namespace client
