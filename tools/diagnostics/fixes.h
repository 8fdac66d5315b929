// What a server's administrator can do.
#pragma once

#include "diagnostics/rule.h"

namespace diagnostics {

inline constexpr std::string_view kUseNginx = "put nginx before it, with proxy_buffering on (the default)";

inline constexpr Fix::Setting kOneWriteSettings[] = {
    {"nginx", "files: sendfile off, or tcp_nopush on; proxy: proxy_buffering on (the defaults)"},
    {"Apache", "CGI: SetOutputFilter BUFFER (mod_buffer); proxies: use nginx"},
    {"PHP", "PHP's own server cannot; use PHP-FPM behind nginx with fastcgi_buffering on (the default)"},
    {"SimpleHTTP", "set wbufsize = 2 ** 20 in the handler class"},
    {"gunicorn", kUseNginx},
    {"Werkzeug", kUseNginx},
    {"uvicorn", kUseNginx},
    {"waitress", kUseNginx},
    {"aiohttp", kUseNginx},
    {"Cheroot", kUseNginx},
    {"Varnish", "set beresp.do_stream = false"},
};
inline constexpr Fix kOneWrite = {"send head and body with one write and set Content-Length", kOneWriteSettings, true};

inline constexpr Fix::Setting kHideHeader[] = {{"nginx", "proxy_hide_header NAME"}};
inline constexpr Fix kShortHead = {"send fewer headers: no cookies, no policies for browsers", kHideHeader, true};

inline constexpr Fix::Setting kWholeBodySettings[] = {
    {"nginx", "switch gzip, sub_filter, ssi and addition off for these paths: each removes the length"},
    {"Apache", "SetOutputFilter BUFFER (mod_buffer), SetEnv no-gzip 1"},
    {"PHP", "header('Content-Length: ' . strlen($page)); zlib.output_compression=Off"},
    {"Express", "send the body with one end(body)"},
    {"Varnish", "set beresp.do_stream = false and beresp.do_gunzip = true"},
};
inline constexpr Fix kWholeBody = {
    "set Content-Length to the number of bytes of the body; send it uncompressed and not in chunks", kWholeBodySettings,
    true};

inline constexpr Fix kSpelling = {"spell the headers Content-Length, X-Error-Code, X-Error-Message and "
                                  "X-Server-Timestamp; ASGI servers write lower case, HAProxy too without "
                                  "h1-case-adjust",
                                  {},
                                  true};

inline constexpr Fix::Setting kSendLengthFirst[] = {{"gunicorn", kUseNginx}};
inline constexpr Fix kHiding = {"do not send the header that contains this name, often one for other origins (CORS), "
                                "or send it after the real one",
                                kSendLengthFirst, true};

inline constexpr Fix::Setting kNoRedirectionSettings[] = {{"nginx", "no return 301 for these paths on port 80"}};
inline constexpr Fix kNoRedirection = {"serve this very address: no redirection to https, to another host or to a "
                                       "path with a slash at its end",
                                       kNoRedirectionSettings};

inline constexpr Fix kPlainHttp = {"serve these paths on port 80 without TLS; the token protects the purchase"};

inline constexpr Fix kReadFormEnd = {"read the CR LF after the form before closing, or wait until the device closes"};

inline constexpr Fix kVerdictHeaders = {
    "refuse with X-Error-Code: a number above 0, X-Error-Message: at most 254 ASCII characters, and with code 906 "
    "X-Server-Timestamp: at most 62, as in 2010-3-5 9:7:3.042"};

inline constexpr Fix kCheckTheToken = {
    "decrypt User-Cert with the device's public key, compare its time with the clock, and remember each used token "
    "for as long as its time is accepted"};

inline constexpr Fix kShopAddress = {
    "give the purchases' address with --buy-url; a shop refuses with X-Error-Code, and --buy TYPE,ID proves that it "
    "sells (this buys that good)"};

inline constexpr Fix kRegister = {"register the profile's public key in the shop (pavonix-shop device add) and choose "
                                  "a good that is for sale"};

} // namespace diagnostics
