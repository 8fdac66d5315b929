// A rule: one thing that can be wrong between these devices and a server.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace diagnostics {

enum class Weight {
    kWarning, // works, or works by luck
    kError,   // calls fail, store something else, or harm the application
};

// What a rule is about, in the order in which an exchange happens.
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

struct Remedy {
    std::string_view server; // "nginx", "any server", ...
    std::string_view advice;
};

// Texts are whole sentences in English, without line ends.
struct Rule {
    std::string_view name; // lower case with hyphens; scripts rely on it
    Topic topic;
    Weight weight;
    std::string_view sentence; // what is wrong
    std::string_view device;   // what the device makes of it
    std::span<const Remedy> remedies = {};
};

// A rule that an exchange breaks, with the bytes or the numbers that show it.
struct Finding {
    const Rule *rule;
    std::string evidence; // printable
};

// Every rule there is, in the order of topics.
[[nodiscard]] std::span<const Rule *const> AllRules();

} // namespace diagnostics
