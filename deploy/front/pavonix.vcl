# The front: makes what any web server answers fit for the devices, and answers most of what they ask from memory.
# For Varnish 7 with varnish-modules. The shop's address stands in backend.vcl.
#
#     varnishd -a :80 -f /etc/varnish/pavonix.vcl -s malloc,1g -p vcl_path=/etc/varnish
vcl 4.1;

import header;
import std;

include "backend.vcl";
include "windows_1252.vcl";

# How long a page is as good as new, and how long it is shown when the shop fails.
sub page_life {
    set beresp.ttl = 10s;
    set beresp.grace = 24h;
}

sub vcl_recv {
    # A second round (see vcl_deliver) takes a page that is too old otherwise.
    if (req.restarts == 0) {
        unset req.http.Front-Stale;
    }
    set req.grace = 10s;
    if (req.http.Front-Stale) {
        set req.grace = 24h;
    }
    # Only the shop's own replies count: whole, uncompressed, with nothing before them.
    unset req.http.Accept-Encoding;
    unset req.http.Expect;
    unset req.http.Range;
    unset req.http.If-Modified-Since;
    unset req.http.If-None-Match;
    if (req.method == "POST") {
        return (pass);
    }
    if (req.method != "GET") {
        return (synth(405));
    }
    return (hash);
}

# A page is the same for all devices, by whatever name they know the shop.
sub vcl_hash {
    hash_data(req.url);
    return (lookup);
}

sub vcl_miss {
    if (req.http.Front-Stale) {
        return (synth(503));
    }
}

sub vcl_backend_fetch {
    unset bereq.http.Front-Stale;
    # Varnish asks for compressed pages where the client did not.
    unset bereq.http.Accept-Encoding;
    if (bereq.method == "GET") {
        set bereq.first_byte_timeout = 15s;
    }
    return (fetch);
}

sub vcl_backend_response {
    # The whole reply is here before its first byte goes out: head and body leave in one write, the length is known.
    set beresp.do_stream = false;
    set beresp.do_gunzip = true;
    if (beresp.http.Content-Encoding && beresp.http.Content-Encoding !~ "(?i)^(x-)?gzip$|^identity$") {
        return (error(502));
    }
    if (bereq.method == "POST") {
        # Without an error code the device takes the body for the message, which must fit its record.
        if (beresp.status != 200 && beresp.http.X-Error-Code !~ "^[+-]?0*[1-9]" &&
            (beresp.http.Content-Encoding || beresp.http.Content-Type ~ "html" ||
             std.integer(beresp.http.Content-Length, 0) < 1 ||
             std.integer(beresp.http.Content-Length, 0) > 254)) {
            return (error(beresp.status));
        }
        return (deliver);
    }
    # As an error, a failure does not take the place of the page that was there before.
    if (beresp.status >= 500) {
        return (error(beresp.status));
    }
    # The URL alone names a page; a shop whose pages differ from device to device says so.
    unset beresp.http.Vary;
    if (beresp.http.Cache-Control ~ "(?i)\bprivate\b") {
        set beresp.uncacheable = true;
        set beresp.ttl = 120s;
    } elsif (beresp.status == 200) {
        call page_life;
    } else {
        set beresp.ttl = 1s;
        set beresp.grace = 0s;
    }
    return (deliver);
}

sub vcl_backend_error {
    if (beresp.status < 400) {
        set beresp.status = 502;
    }
    set beresp.ttl = 0s;
    set beresp.grace = 0s;
    set beresp.http.X-Error-Code = "999";
    set beresp.http.X-Error-Message = "The shop failed or cannot be reached, try again without force";
    set beresp.http.Content-Type = "text/plain";
    set beresp.body = beresp.http.X-Error-Message;
    return (deliver);
}

# Leaves the lines that the devices read, spelled as they read them, and the message last: it may hold the other names.
sub fit_head {
    header.regsub(resp,
        "(?i)^(?!(content-length|x-error-code|x-error-message|x-server-timestamp) *:).*$", "Dropped: 1");
    unset resp.http.Dropped;
    set resp.status = resp.status; # with its standard phrase
    if (resp.http.Content-Length) {
        set resp.http.Content-Length = resp.http.Content-Length;
    }
    if (resp.http.X-Error-Code) {
        set resp.http.X-Error-Code = regsub(resp.http.X-Error-Code, "^([+-]?[0-9]{1,10}).*$", "\1");
    }
    if (resp.http.X-Server-Timestamp) {
        set resp.http.X-Server-Timestamp = regsub(resp.http.X-Server-Timestamp, "^(.{0,62}).*$", "\1");
    }
    if (resp.http.X-Error-Message) {
        call message_to_windows_1252;
        set resp.http.X-Error-Message = regsub(resp.http.X-Error-Message, "^(.{0,254}).*$", "\1");
    }
}

sub vcl_deliver {
    if (req.method == "GET") {
        if (resp.status >= 500 && !req.http.Front-Stale) {
            set req.http.Front-Stale = "1";
            return (restart);
        }
        # The devices follow no redirection, so it is followed here, within the shop.
        if (resp.status >= 300 && resp.status < 400) {
            set req.url = regsub(resp.http.Location, "^https?://[^/]*", "");
            if (req.restarts >= 3 || req.url !~ "^/") {
                return (synth(502));
            }
            return (restart);
        }
        # A device takes a length of 0 for an unknown one and stores zeros.
        if (resp.status == 200 && resp.http.Content-Length == "0") {
            return (synth(502));
        }
    }
    call fit_head;
    return (deliver);
}

sub vcl_synth {
    set resp.http.X-Error-Code = "999";
    set resp.http.X-Error-Message = "The shop cannot be reached or gave no page";
    if (resp.status == 405) {
        set resp.http.X-Error-Code = "910";
        set resp.http.X-Error-Message = "This path is asked with another method";
    }
    set resp.body = resp.http.X-Error-Message;
    call fit_head;
    return (deliver);
}
