#include "system/open_files.h"

#include "device_options.h"
#include "system/device_path.h"
#include "system/last_error.h"

#include <algorithm>

namespace pavonix::device {

OpenFiles openFiles;

bool OpenFiles::MayWrite(const std::string &name) const
{
    return held_.count(name) == 0 && std::none_of(written_.begin(), written_.end(),
                                                  [&](std::FILE *stream) { return streams_.at(stream) == name; });
}

std::uint32_t ReasonAgainst(std::uint32_t attributes, bool isFree)
{
    if ((attributes & (kAttributeDirectory | kAttributeReadOnly)) != 0) {
        return kErrorAccessDenied;
    }
    return isFree ? 0 : kErrorSharingViolation;
}

bool OpenFiles::IsFull(std::FILE *stream) const
{
    const auto found = streams_.find(stream);
    return found != streams_.end() && !deviceOptions.fullFolder.empty() &&
           found->second.starts_with(deviceOptions.fullFolder);
}

bool OpenFiles::MayDelete(const std::string &name) const
{
    return held_.count(name) == 0 &&
           std::none_of(streams_.begin(), streams_.end(), [&](const auto &stream) { return stream.second == name; });
}

} // namespace pavonix::device
