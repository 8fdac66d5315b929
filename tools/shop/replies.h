// The shop's replies: documents and refusals.
#pragma once

#include "transmission.h"

namespace shop {

struct ErrorKind;

[[nodiscard]] Response MakeResponse(boost::beast::http::status status, const std::string &body);

// Plain text, in the version of Prometheus' format.
[[nodiscard]] Response MakePlainResponse(const std::string &body);

// The response that says why a request is refused.
[[nodiscard]] Response MakeErrorResponse(const ErrorKind &kind, const std::string &message);

} // namespace shop
