// Rules about what precedes a reply: URL, name, connection.
#pragma once

#include "diagnostics/fixes.h"

namespace diagnostics {

inline constexpr std::string_view kNothingSent = "the call returns 0 and sends nothing";

inline constexpr Rule kUrlTls = {"url-https",      Topic::kUrl,
                                 Severity::kError, "The URL asks for TLS, which the library does not support.",
                                 kNothingSent,     &kPlainHttp};
inline constexpr Rule kUrlScheme = {"url-scheme", Topic::kUrl, Severity::kError, "The URL's scheme is not http://.",
                                    kNothingSent};
inline constexpr Rule kUrlEmpty = {"url-empty", Topic::kUrl, Severity::kError, "The URL is empty.", kNothingSent};
inline constexpr Rule kUrlNoHost = {"url-no-host", Topic::kUrl, Severity::kError, "The URL has no host.", kNothingSent};
inline constexpr Rule kUrlNoPath = {"url-no-path", Topic::kUrl, Severity::kError,
                                    "The URL has no path, not even a slash after the host.", kNothingSent};
inline constexpr Rule kUrlIpv6 = {"url-ipv6", Topic::kUrl, Severity::kError, "The URL has an IPv6 address.",
                                  "it takes the text before the first colon for the host; the call returns 0"};
inline constexpr Rule kUrlTooLong = {"url-too-long", Topic::kUrl, Severity::kError,
                                     "The URL, with a download's query, has 256 characters or more.", kNothingSent};
inline constexpr Rule kUrlLong = {"url-long", Topic::kUrl, Severity::kWarning, "The URL has 200 characters or more.",
                                  "with the longest numbers in its query a download does not fit and returns 0"};
inline constexpr Rule kUrlBarePath = {"url-bare-path", Topic::kUrl, Severity::kError, "The URL's path is only a slash.",
                                      "it sends a purchase without a path, which servers refuse as a bad request"};
inline constexpr Rule kUrlQuery = {"url-query", Topic::kUrl, Severity::kError,
                                   "The URL already has a query or a fragment.",
                                   "it appends \"?type=...\" to it unchanged, and sends a fragment too"};
inline constexpr Rule kUrlCharacters = {"url-characters", Topic::kUrl, Severity::kError,
                                        "The URL has spaces, control characters or letters outside ASCII.",
                                        "it sends them unchanged, which makes a malformed request"};

inline constexpr Rule kNameUnknown = {"name-unknown", Topic::kName, Severity::kError, "The host name is unknown.",
                                      kNothingSent};
inline constexpr Rule kNameNoAnswer = {"name-no-answer", Topic::kName, Severity::kError,
                                       "The name server did not reply about the host.", kNothingSent};
inline constexpr Rule kNameNoIpv4 = {"name-no-ipv4", Topic::kName, Severity::kError,
                                     "The host has no IPv4 address; the library uses no other.", kNothingSent};

inline constexpr Rule kRefused = {"refused", Topic::kConnection, Severity::kError,
                                  "The connection was refused: no server listens at the port.", kNothingSent};
inline constexpr Rule kUnreachable = {"unreachable", Topic::kConnection, Severity::kError,
                                      "The address cannot be reached.", kNothingSent};
inline constexpr Rule kConnectTimeOut = {"connect-time-out", Topic::kConnection, Severity::kError,
                                         "The address did not reply to the connection: a firewall, or no such machine.",
                                         "it waits until the system gives up, often a minute; the call then returns 0"};
inline constexpr Rule kSendFailed = {"send-failed", Topic::kConnection, Severity::kError,
                                     "The connection broke while the request was being sent.", "the call returns 0"};

} // namespace diagnostics
