#include "system/open_files.h"

#include <algorithm>

namespace pavonix::device {

OpenFiles openFiles;

bool OpenFiles::MayWrite(const std::string &name) const
{
    return held_.count(name) == 0 && std::none_of(written_.begin(), written_.end(),
                                                  [&](std::FILE *stream) { return streams_.at(stream) == name; });
}

bool OpenFiles::MayDelete(const std::string &name) const
{
    return held_.count(name) == 0 &&
           std::none_of(streams_.begin(), streams_.end(), [&](const auto &stream) { return stream.second == name; });
}

} // namespace pavonix::device
