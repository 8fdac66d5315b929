# Where the shop is: a web server, or the balancer before several.
backend shop {
    .host = "127.0.0.1";
    .port = "8081";
}
