#include "store/delete_target_file.h"

#include "platform/files.h"
#include "store/probe_path.h"

namespace pavonix {

int DeleteTargetFile(const WideChar *path)
{
    constexpr int kLongestPath = 260;
    WideChar target[kLongestPath + 2] = {};
    for (int i = 0; i < kLongestPath && path[i] != 0; ++i) {
        target[i] = path[i];
    }
    if (ProbePath(target) == kPathFolder) {
        platform::SetThreadError(kErrorTargetIsFolder);
        return 0;
    }
    platform::RemoveFile(target);
    return 1;
}

} // namespace pavonix
