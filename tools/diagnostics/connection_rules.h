// Rules about what comes before a reply: URL, name, connection.
#pragma once

#include "diagnostics/remedies.h"

namespace diagnostics {

inline constexpr std::string_view kNothingSent = "the call returns 0 and sends nothing";

inline constexpr Rule kUrlTls = {"url-https",    Topic::kUrl,
                                 Weight::kError, "The URL asks for TLS, which the library does not speak.",
                                 kNothingSent,   kPlainHttp};
inline constexpr Rule kUrlScheme = {"url-scheme", Topic::kUrl, Weight::kError,
                                    "The URL has another scheme than http://.", kNothingSent};
inline constexpr Rule kUrlEmpty = {"url-empty", Topic::kUrl, Weight::kError, "The URL is empty.", kNothingSent};
inline constexpr Rule kUrlNoHost = {"url-no-host", Topic::kUrl, Weight::kError, "The URL names no host.", kNothingSent};
inline constexpr Rule kUrlNoPath = {"url-no-path", Topic::kUrl, Weight::kError,
                                    "The URL has no path: not even a slash follows the host.", kNothingSent};
inline constexpr Rule kUrlIpv6 = {"url-ipv6", Topic::kUrl, Weight::kError, "The URL names an IPv6 address.",
                                  "it takes what stands before the first colon for the host; the call returns 0"};
inline constexpr Rule kUrlTooLong = {"url-too-long", Topic::kUrl, Weight::kError,
                                     "The URL, with the query of a download, has 256 characters or more.",
                                     kNothingSent};
inline constexpr Rule kUrlLong = {"url-long", Topic::kUrl, Weight::kWarning, "The URL has 200 characters or more.",
                                  "with the longest numbers in its query a download does not fit and returns 0"};
inline constexpr Rule kUrlBarePath = {"url-bare-path", Topic::kUrl, Weight::kError, "The URL's path is only a slash.",
                                      "it sends a purchase without any path, which servers refuse as a bad request"};
inline constexpr Rule kUrlQuery = {"url-query", Topic::kUrl, Weight::kError,
                                   "The URL has a query or a fragment already.",
                                   "it appends \"?type=...\" to it as it stands, and sends a fragment too"};
inline constexpr Rule kUrlCharacters = {"url-characters", Topic::kUrl, Weight::kError,
                                        "The URL has blanks, control characters or letters beyond ASCII.",
                                        "it sends them as they are, which makes a malformed request"};

inline constexpr Rule kNameUnknown = {"name-unknown", Topic::kName, Weight::kError, "The host's name is unknown.",
                                      kNothingSent};
inline constexpr Rule kNameNoAnswer = {"name-no-answer", Topic::kName, Weight::kError,
                                       "The name server gave no answer about the host.", kNothingSent};
inline constexpr Rule kNameNoIpv4 = {"name-no-ipv4", Topic::kName, Weight::kError,
                                     "The host has no IPv4 address; the library knows no other.", kNothingSent};

inline constexpr Rule kRefused = {"refused", Topic::kConnection, Weight::kError,
                                  "Nobody listens at the port: the connection was refused.", kNothingSent};
inline constexpr Rule kUnreachable = {"unreachable", Topic::kConnection, Weight::kError,
                                      "The address cannot be reached.", kNothingSent};
inline constexpr Rule kConnectTimeOut = {"connect-time-out", Topic::kConnection, Weight::kError,
                                         "Nobody answers at the address: a firewall, or no such machine.",
                                         "it waits until the system gives up, often a minute; the call then returns 0"};
inline constexpr Rule kSendFailed = {"send-failed", Topic::kConnection, Weight::kError,
                                     "The connection broke while the request was being sent.", "the call returns 0"};

} // namespace diagnostics
