// What a server's keeper can do, by server.
#pragma once

#include "diagnostics/rule.h"

namespace diagnostics {

inline constexpr Remedy kOneSegment[] = {
    {"nginx", "for files: sendfile off, or sendfile on together with tcp_nopush on; as a proxy: proxy_buffering on "
              "(the default)"},
    {"Apache", "serves files in one segment as it comes; put generated pages behind its cache or behind Varnish"},
    {"Varnish", "put it in front and set beresp.do_stream = false, so that it has the whole reply before it answers"},
    {"PHP", "its own server cannot; use PHP-FPM behind nginx with fastcgi_buffering on (the default), and set "
            "Content-Length"},
    {"Python",
     "http.server, Flask's own server and gunicorn send head and body apart: put nginx with proxy_buffering on "
     "in front, or join both into one sendall"},
};

inline constexpr Remedy kShortHead[] = {
    {"nginx", "remove headers with proxy_hide_header and server_tokens off"},
    {"Apache", "remove headers with Header unset, cookies first; ServerTokens Prod"},
    {"Varnish", "unset resp.http.NAME in vcl_deliver"},
    {"PHP", "header_remove(), session.use_cookies=0, expose_php=Off"},
    {"Python", "set no cookies; drop headers of the framework in an after_request function"},
};

inline constexpr Remedy kLength[] = {
    {"nginx", "for files as it comes; as a proxy set proxy_buffering on, gzip off, chunked_transfer_encoding off, and "
              "have the application send the length"},
    {"Apache", "for files as it comes; SetEnv no-gzip 1, and no server-side includes"},
    {"Varnish", "set beresp.do_stream = false: it then knows the length and sends it"},
    {"PHP", "collect the page with ob_start() and send header('Content-Length: ' . strlen($page))"},
    {"Python", "send Content-Length with the length of the encoded body; return bytes, not a generator"},
};

inline constexpr Remedy kPlainBody[] = {
    {"nginx", "gzip off; proxy_set_header Accept-Encoding \"\"; chunked_transfer_encoding off"},
    {"Apache", "SetEnv no-gzip 1; SetEnv force-response-1.0 1 against chunks"},
    {"Varnish", "unset req.http.Accept-Encoding, beresp.do_gunzip = true, beresp.do_stream = false"},
    {"PHP", "zlib.output_compression=Off, no ob_gzhandler, and set Content-Length"},
    {"Python", "no GZip middleware; return bytes, not a generator, so that nothing is sent in chunks"},
};

inline constexpr Remedy kSpelling[] = {
    {"nginx", "as a proxy it respells Content-Length itself; other headers with proxy_hide_header and add_header NAME "
              "$upstream_http_... always"},
    {"Apache", "Header unset, then Header always set, with the name as the device spells it"},
    {"Varnish", "in vcl_deliver copy the value, unset the header, and set it with the name as the device spells it"},
    {"PHP", "header() keeps the case it is given; HTTP/2 and newer proxies write lower case"},
    {"Python", "ASGI servers write names in lower case: put nginx in front, or use a WSGI server"},
};

inline constexpr Remedy kHiding[] = {
    {"nginx", "proxy_hide_header for the line that hides it"},
    {"Apache", "Header unset for the line that hides it"},
    {"Varnish", "unset resp.http.NAME in vcl_deliver for the line that hides it"},
    {"PHP", "header_remove() for the line that hides it"},
    {"Python", "switch the cross-origin (CORS) extension off for these paths, or send that line behind the real one"},
};

inline constexpr Remedy kNoRedirection[] = {
    {"nginx", "serve these paths on port 80 without return 301; a location of its own, no trailing-slash redirect"},
    {"Apache", "exempt these paths from RewriteRule and Redirect; DirectorySlash Off"},
    {"Varnish", "follow the redirection in VCL, or fetch the final path"},
    {"PHP", "no header('Location: ...') for these paths"},
    {"Python", "Flask: strict_slashes=False; Django: APPEND_SLASH=False, SECURE_SSL_REDIRECT off for these paths"},
};

inline constexpr Remedy kPlainHttp[] = {
    {"any server", "let port 80 answer these paths without TLS; the token protects the purchase, not the connection"},
    {"nginx", "a second server block with listen 80 and proxy_pass to the https upstream"},
};

inline constexpr Remedy kReadTheLineEnd[] = {
    {"any server", "read on until the device closes, or for a moment, before you close: two bytes follow the form"},
    {"nginx", "as it comes (lingering_close on); it also heals this for a server behind it"},
    {"Apache", "as it comes"},
    {"Python", "with plain sockets: shutdown(SHUT_WR), then recv until it answers nothing, then close"},
};

inline constexpr Remedy kVerdictLines[] = {
    {"any server", "X-Error-Code: a number above 0, X-Error-Message: at most 254 ASCII characters, and for code 906 "
                   "X-Server-Timestamp: at most 62, like 2010-3-5 9:7:3.042"},
    {"Varnish", "cut in vcl_deliver with regsub(resp.http.X-Error-Message, \"^(.{0,250}).*$\", \"\\1\")"},
};

inline constexpr Remedy kCheckTheToken[] = {
    {"any server", "open User-Cert with the device's public key, compare its time with the clock, and remember each "
                   "token that was used for as long as its time is accepted"},
};

} // namespace diagnostics
