// A second implementation of reply parsing, for comparison.
#pragma once

#include "driver/scenario.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pavonix::e2e {

// The bytes of each receive of the library.
using Receptions = std::vector<std::string>;

// The receptions if the server closes after `cut` bytes of these pieces.
Receptions CutAt(std::size_t cut, const std::vector<std::string> &pieces);

struct ReplyModel {
    explicit ReplyModel(const Receptions &receptions);

    std::string head;            // with its blank line; two bytes if there is none
    std::string prefix;          // of the body: the rest of the 1024 bytes of the first reception
    int status = 0;              // 0 if the status line has no space
    std::uint32_t announced = 0; // 0 without a Content-Length

    // The value of a header in this text, if present.
    static std::optional<std::string> Value(const std::string &text, const std::string &name);

    // The record of a purchase with this reply.
    Record PurchaseRecord() const;
};

// The bytes of each write of a download.
Receptions BodyWrites(const Receptions &receptions);

// The number at the start of a text, clamped to 32 bits; 0 if there is none.
int NumberOf(const std::string &text);

} // namespace pavonix::e2e
