#include "system/open_files.h"

#include <algorithm>

namespace pavonix::device {

OpenFiles openFiles;

bool OpenFiles::MayDelete(const std::string &name) const
{
    return MayWrite(name) &&
           std::none_of(streams_.begin(), streams_.end(), [&](const auto &stream) { return stream.second == name; });
}

} // namespace pavonix::device
