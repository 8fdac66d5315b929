#include "device_options.h"

#include <string_view>

namespace pavonix::device {

const char kOptionsUsage[] =
    "[--search=rejects-trailing|accepts-trailing] [--imports=arm|thumb] "
    "[--thread=main|own] [--ansi=1252|932] [--without=FUNCTION]... [--root=FOLDER] [--full=FOLDER]";

bool TakeOption(const char *argument)
{
    struct Choice {
        std::string_view text;
        void (*take)(DeviceOptions &);
    };
    static constexpr Choice kChoices[] = {
        {"--search=rejects-trailing", [](DeviceOptions &options) { options.searchRejectsTrailing = true; }},
        {"--search=accepts-trailing", [](DeviceOptions &options) { options.searchRejectsTrailing = false; }},
        {"--imports=arm", [](DeviceOptions &options) { options.systemIsThumb = false; }},
        {"--imports=thumb", [](DeviceOptions &options) { options.systemIsThumb = true; }},
        {"--thread=main", [](DeviceOptions &options) { options.ownThreads = false; }},
        {"--thread=own", [](DeviceOptions &options) { options.ownThreads = true; }},
        {"--ansi=1252", [](DeviceOptions &options) { options.ansiCodePage = 1252; }},
        {"--ansi=932", [](DeviceOptions &options) { options.ansiCodePage = 932; }},
    };
    constexpr std::string_view kWithout = "--without=";
    if (std::string_view(argument).starts_with(kWithout)) {
        deviceOptions.missing.insert(argument + kWithout.size());
        return true;
    }
    constexpr std::string_view kRoot = "--root=", kFull = "--full=";
    if (std::string_view(argument).starts_with(kRoot)) {
        deviceOptions.root = argument + kRoot.size();
        return true;
    }
    if (std::string_view(argument).starts_with(kFull)) {
        deviceOptions.fullFolder = argument + kFull.size();
        return true;
    }
    for (const Choice &choice : kChoices) {
        if (choice.text == argument) {
            choice.take(deviceOptions);
            return true;
        }
    }
    return false;
}

} // namespace pavonix::device
