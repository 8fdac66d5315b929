# What differs from shop to shop.
backend shop {
    # The shop, or the balancer in front of several.
    .host = "127.0.0.1";
    .port = "8081";
    # The Host of every request, whatever name a client sends.
    .host_header = "shop.internal";
}

# The clients that may read /health.
acl operators {
    "127.0.0.1";
}

# Rate limits are off. Remove "#" to refuse with 429, before the shop is asked. Many devices can share the address of
# a carrier, so leave room there. A device counts together with its address, or anyone could lock it out by its serial.
sub limit_rates {
    # if (vsthrottle.is_denied("address " + client.ip, 2000, 10s) ||
    #     vsthrottle.is_denied("device " + client.ip + " " + req.http.User-Serial, 40, 10s)) {
    #     return (synth(429));
    # }
}
