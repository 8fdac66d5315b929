// A purchase with libcurl and OpenSSL instead of the library.
#pragma once

#include <string>

namespace pavonix::bench {

// Reads the profile, makes the key and the token, and posts the form. Returns the
// status, 0 on failure.
long BuyWithOpenSsl(const std::string &profilePath, const std::string &url);

} // namespace pavonix::bench
