// The library's transfers with libcurl's easy interface.
#pragma once

#include <string>
#include <vector>

namespace pavonix::bench {

// One GET into a file, on a handle and a connection of its own. Returns the status, 0 on
// failure.
long CurlDownload(const std::string &url, const std::string &path);

// One POST with these header lines. Returns the status, 0 on failure.
long CurlPost(const std::string &url, const std::vector<std::string> &headers, const std::string &form);

} // namespace pavonix::bench
