# The front: makes the replies of any web server fit for the devices, and serves most pages from memory.
# For Varnish 7 with varnish-modules; pavonix-front.service has the command line.
vcl 4.1;

import header;
import std;
import vsthrottle;

include "site.vcl";

# This Varnish itself, by its second listener: see vcl_backend_fetch.
backend itself {
    .path = "/var/lib/pavonix-front/whole.sock";
}

sub vcl_recv {
    if (local.socket == "whole") {
        unset req.http.X-Forwarded-For; # has no address of a client
        return (pass);
    }
    # Nothing but these lines can have an influence on a page, which other clients get as well. Cookie and
    # Authorization are among them because such a page is not cached.
    header.regsub(req, "(?i)^(?!(content-length|content-type|transfer-encoding|user-serial|user-id|user-cert|cookie|" +
        "authorization) *:).*$", "Dropped: 1");
    unset req.http.Dropped;
    set req.http.Host = "shop"; # for the cache's key; site.vcl has the name that is sent
    # pavonix-shop's faults are for an author's desk: some hold a connection for a minute.
    if (req.url ~ "^/(metrics|fault/)" || (req.url ~ "^/health" && client.ip !~ operators)) {
        return (synth(404));
    }
    if (req.method != "GET" && req.method != "POST") {
        return (synth(405));
    }
    if (req.restarts == 0) {
        call limit_rates;
    }
    if (req.method == "POST") {
        set req.http.X-Forwarded-For = client.ip;
        return (pass);
    }
    if (req.url ~ "^/health") {
        return (pass);
    }
}

sub vcl_backend_fetch {
    unset bereq.http.Accept-Encoding; # added by Varnish, which prefers compressed pages
    unset bereq.http.If-Modified-Since;
    unset bereq.http.If-None-Match;
    set bereq.between_bytes_timeout = 15s;
    if (bereq.method == "POST") {
        # The balancer gives up after 30 seconds.
        set bereq.first_byte_timeout = 32s;
    } else {
        set bereq.first_byte_timeout = 15s;
        if (local.socket != "whole") {
            # A page is fetched through this Varnish itself, which has all of it before it sends the first byte. So its
            # length is known here, however the shop sent it, and 15 seconds limit the whole page, not only its start.
            set bereq.backend = itself;
            return (fetch);
        }
    }
    unset bereq.http.Host;
}

sub vcl_backend_response {
    # The whole reply is here before its first byte leaves: head and body are one write, the length is known.
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
    if (local.socket == "whole") {
        return (deliver);
    }
    # As an error, a failure does not replace the page that was there before. A device takes a length of 0 for an
    # unknown one and stores zeros.
    if (beresp.status >= 500) {
        return (error(beresp.status));
    }
    if (beresp.status == 200 && beresp.http.Content-Length == "0") {
        return (error(502));
    }
    if (beresp.status == 200) {
        # How long a page is fresh if the shop does not say so. After that a device still gets it at once, and a new
        # one is fetched meanwhile; if the shop fails, the old one is served for as long as this.
        if (beresp.http.Cache-Control !~ "(?i)max-?age" && !beresp.http.Expires) {
            set beresp.ttl = 10s;
        }
        set beresp.grace = 24h;
    } else {
        set beresp.ttl = 1s;
        set beresp.grace = 0s;
    }
    # Varnish's own rules follow: replies with Set-Cookie, private, no-store, no-cache or max-age=0 are not cached.
}

sub vcl_backend_error {
    if (bereq.is_bgfetch) {
        return (abandon); # the old page stays
    }
    if (beresp.status < 400) {
        set beresp.status = 502;
    }
    # Long enough for all who wait for this page: otherwise they would ask for it one after the other.
    set beresp.ttl = 1s;
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
    header.regsub(resp, "(?i)^content-length *:", "Content-Length:"); # Varnish 7.7 lets nothing else set it
    if (resp.http.X-Error-Code) {
        set resp.http.X-Error-Code = regsub(resp.http.X-Error-Code, "^([+-]?[0-9]{1,10}).*$", "\1");
    }
    if (resp.http.X-Server-Timestamp) {
        set resp.http.X-Server-Timestamp = regsub(resp.http.X-Server-Timestamp, "^(.{0,62}).*$", "\1");
    }
    if (resp.http.X-Error-Message) {
        set resp.http.X-Error-Message = regsub(resp.http.X-Error-Message, "^(.{0,254}).*$", "\1");
    }
}

# Resolves Location against the URL that was asked for. The shop is the only host there is.
sub follow_redirection {
    set req.http.Location = regsub(regsub(resp.http.Location, "#.*$", ""), "^(?i:https?:)?//[^/?]*", "");
    if (resp.http.Location ~ "^(?i:https?:)?//" && req.http.Location !~ "^/") {
        set req.http.Location = "/" + req.http.Location;
    }
    if (req.http.Location ~ "^[?]") {
        set req.http.Location = regsub(req.url, "[?].*$", "") + req.http.Location;
    } elsif (req.http.Location !~ "^/|^[A-Za-z][A-Za-z0-9+.-]*:|^$") {
        set req.http.Location = regsub(regsub(req.url, "[?].*$", ""), "[^/]*$", "") + req.http.Location;
    }
    set req.http.Location = regsub(req.http.Location, "^([^?]*/)\./", "\1");
    set req.http.Location = regsub(req.http.Location, "^([^?]*?)/(?!\.\./)[^/?]+/\.\./", "\1/");
    set req.http.Location = regsub(req.http.Location, "^([^?]*?)/(?!\.\./)[^/?]+/\.\./", "\1/");
    if (req.restarts >= 3 || req.http.Location !~ "^/[!-~]*$") {
        return (synth(502));
    }
    set req.url = req.http.Location;
    return (restart);
}

sub vcl_deliver {
    if (local.socket == "whole") {
        return (deliver);
    }
    # The devices follow no redirection.
    if (req.method == "GET" && resp.status >= 300 && resp.status < 400) {
        call follow_redirection;
    }
    call fit_head;
    return (deliver);
}

sub vcl_synth {
    set resp.http.X-Error-Code = "999";
    set resp.http.X-Error-Message = "The shop cannot be reached or gave no page";
    if (resp.status == 404) {
        set resp.http.X-Error-Code = "900";
        set resp.http.X-Error-Message = "There is nothing at this path";
    } elsif (resp.status == 405) {
        set resp.http.X-Error-Code = "910";
        set resp.http.X-Error-Message = "This path is asked with another method";
    } elsif (resp.status == 429) {
        set resp.http.X-Error-Message = "Too many requests, try again in a minute";
    }
    set resp.body = resp.http.X-Error-Message;
    call fit_head;
    return (deliver);
}
