// A second reading of the rules by which a reply is taken apart, for comparison.
#pragma once

#include "driver/scenario.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pavonix::e2e {

// What each receive of the library brings.
using Receptions = std::vector<std::string>;

// The receptions when the server closes after `cut` bytes of these pieces.
Receptions CutAt(std::size_t cut, const std::vector<std::string> &pieces);

struct ReplyModel {
    explicit ReplyModel(const Receptions &receptions);

    std::string head;            // with its blank line; two bytes when there is none
    std::string behind;          // the rest of the 1024 bytes of a first reception
    int status = 0;              // 0 when the status line has no blank
    std::uint32_t announced = 0; // 0 when the head announces nothing

    // The value of a header, looked for in this text; nullopt when there is none.
    static std::optional<std::string> Value(const std::string &text, const std::string &name);

    // What a purchase leaves in its record.
    Record Verdict() const;
};

// What a download writes, write by write.
Receptions BodyWrites(const Receptions &receptions);

// The number at the start of a text, 0 for none, limited to 32 bits.
int NumberOf(const std::string &text);

} // namespace pavonix::e2e
