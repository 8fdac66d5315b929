// A rule: one thing that can be wrong between these devices and a server.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace diagnostics {

enum class Severity {
    kWarning, // works, or works by chance
    kError,   // calls fail, store something else, or harm the application
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

// What a server's administrator can do: in plain words, and for some server software.
struct Fix {
    struct Setting {
        std::string_view software; // as it names itself in Server, X-Powered-By or Via
        std::string_view advice;
    };

    std::string_view plain;
    std::span<const Setting> settings = {};
    bool frontHelps = false; // so does the front of docs/operating.md
};

// Texts are in English, without line ends; `sentence` is a whole sentence.
struct Rule {
    std::string_view name; // lower case with hyphens; scripts rely on it
    Topic topic;
    Severity severity;
    std::string_view sentence;
    std::string_view device; // how the device reacts
    const Fix *fix = nullptr;
};

// A rule that an exchange breaks, with the bytes or the numbers that show it.
struct Finding {
    const Rule *rule;
    std::string evidence; // printable
};

// All rules, in the order of topics.
[[nodiscard]] std::span<const Rule *const> AllRules();

// The fixes for a server that names itself so (ServerSoftware in head_lines.h): the
// plain one first, the front last.
[[nodiscard]] std::vector<std::string> FixesFor(const Rule &rule, std::string_view software);

} // namespace diagnostics
