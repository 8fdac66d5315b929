// The faults by name and the library's result for each, for the shop and for the
// program that tests a real device (device/test), which has only plain headers.
// The refusals by error code ("code-906") follow from errors.h and are not listed.
#pragma once

namespace shop {

struct FaultOutcome {
    const char *name;
    const char *does; // a description for people

    // A download: the status, and the file against the body that was meant: right,
    // zeros (at its beginning), cut, longer, coded, none. A purchase: the status, and
    // for a refusal the record's code. "waits": for ever.
    const char *download; // a reply of more than 1024 bytes
    const char *sale;     // a purchase that the shop accepts
    const char *refusal;  // a purchase that the shop refuses with 903
};

inline constexpr FaultOutcome kFaultOutcomes[] = {
    {"head-apart", "sends the body in a segment of its own, after the head", //
     "200 zeros", "200", "404 code 903"},
    {"head-in-pieces", "sends the status line and the rest in two segments", //
     "0 none", "0", "0"},
    {"late", "replies after six seconds", "200 right", "200", "404 code 903"},
    {"slow", "sends everything after the first 1024 bytes slowly", //
     "200 right", "200", "404 code 903"},
    {"short", "leaves out the last 100 bytes that it announced", //
     "200 cut", "200", "404 code 903"},
    {"long", "sends 100 bytes more than it announced", //
     "200 longer", "200", "404 code 903"},
    {"no-length", "sends no Content-Length", "200 cut", "200", "404 code 903"},
    {"chunked", "sends the body in chunks, without a length", //
     "200 coded", "200", "404 code 903"},
    {"compressed", "sends the body through gzip", "200 coded", "200", "404 code 903"},
    {"long-head", "sends a head of more than 1024 bytes", "0 none", "0", "0"},
    {"lower-case", "writes header names in lower case, which the library does not find", //
     "200 cut", "200", "404 code 0"},
    {"hidden", "has the names of its headers in an earlier value, which the library reads instead", //
     "200 cut", "200", "404 code 0"},
    {"silent", "sends nothing for a minute", "waits", "waits", "waits"},
    {"nothing", "closes the connection without a byte", "0 none", "0", "0"},
    {"reset", "resets the connection without a byte", "0 none", "0", "0"},
    {"reset-in-body", "resets the connection in the middle of the body", //
     "200 cut", "200", "404 code 903"},
    {"not-http", "greets like a mail server", "0 none", "0", "0"},
    {"tls", "sends a TLS alert", "0 none", "0", "0"},
    {"bare-line-feeds", "ends the head's lines with LF instead of CR LF", "0 none", "0", "0"},
    {"head-without-end", "leaves out the empty line and the body", "0 none", "0", "0"},
    {"interim", "sends 100 Continue, and the reply a moment later", //
     "100 none", "100 code 0", "100 code 0"},
    {"sold-with-code", "adds an error code to any reply, also to a 200", //
     "200 right", "200", "404 code 909"},
    {"redirect", "redirects to another path", "302 none", "302 code 0", "302 code 0"},
    {"code-0", "refuses with code 0; the record's message is the body", //
     "403 none", "403 code 0", "403 code 0"},
    {"long-message", "refuses with a message of 700 characters, which overruns the plain record", //
     "403 none", "403 code 999", "403 code 999"},
    {"long-timestamp", "refuses with 906 and a time of over 300 characters", //
     "403 none", "403 code 906", "403 code 906"},
    {"utf-8-message", "refuses with a message in UTF-8, which the record has in the ANSI code page", //
     "403 none", "403 code 999", "403 code 999"},
};

} // namespace shop
