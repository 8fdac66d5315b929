// A rule: one way in which a server can be incompatible with the devices.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace diagnostics {

enum class Severity {
    kWarning, // works, or works by chance
    kError,   // calls fail, store wrong data, or harm the application
};

// The subject of a rule, in the order in which an exchange happens.
enum class Topic {
    kUrl,
    kName,
    kConnection,
    kRequest,
    kFirstBytes,
    kHead,
    kSegments,
    kStatus,
    kLength,
    kCoding,
    kBody,
    kVerdict,
    kToken,
    kFormEnd,
    kReplay,
    kTime,
    kLibrary,
};

// What a server's administrator can do: in general, and for some server software.
struct Fix {
    struct Setting {
        std::string_view software; // as it names itself in Server, X-Powered-By or Via
        std::string_view advice;
    };

    std::string_view general;
    std::span<const Setting> settings = {};
    bool frontHelps = false; // the front of docs/operating.md fixes it, too
};

// `sentence` is a whole sentence; `device` says what the library does, as "it".
struct Rule {
    std::string_view name; // lower case with hyphens
    Topic topic;
    Severity severity;
    std::string_view sentence;
    std::string_view device;
    const Fix *fix = nullptr;
};

// A broken rule, with the bytes or numbers that show it.
struct Finding {
    const Rule *rule;
    std::string evidence; // printable, never empty
};

} // namespace diagnostics
