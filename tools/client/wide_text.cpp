#include "wide_text.h"

#include "exit_code.h"
#include "path.h"

#include <algorithm>
#include <filesystem>

namespace client {

WideText ToWidePath(const std::string &path)
{
    if (path.find_first_of("*?") != std::string::npos) {
        throw Failure(ExitCode::kUsage,
                      path + ": a path must not contain '*' or '?', which the library takes for a search pattern");
    }
    WideText wide = ToWide(TextOf(std::filesystem::absolute(PathOf(path))));
    std::replace(wide.begin(), wide.end(), PavonixChar('/'), PavonixChar('\\'));
    return wide;
}

} // namespace client
