// Receives a reply and sees in which segments it begins.
#pragma once

#include "diagnostics/exchange.h"
#include "wire/segments.h"

#include <string_view>

namespace client {

class ReplyWatch {
public:
    static constexpr std::size_t kMostAtOnce = 16384;

    // socket: connected; the request is sent afterwards. The reply goes into
    // *exchange, as much of it as is kept; the rest is counted.
    ReplyWatch(int socket, diagnostics::Exchange *exchange);

    // Waits for the first bytes, notes the segment that brought them, and how long
    // that took. False when nothing comes until the deadline, or the connection ends.
    [[nodiscard]] bool WaitForFirst(const Deadline &deadline);

    // Reads once, what is there or comes until the deadline. Empty at the end, which
    // is noted. The view is good until the next call.
    [[nodiscard]] std::string_view Read(const Deadline &deadline, std::size_t most = kMostAtOnce);

    // Whether all is there that the head announces, in any spelling; false while a
    // head without length is read on.
    [[nodiscard]] bool IsComplete() const;

    // False when the first bytes had more company than could be told apart. Where the
    // system tells no segments, what the first reception brought is taken for the first.
    [[nodiscard]] bool sawFirstSegment() const { return sawFirstSegment_; }
    // How many bytes may be passed on at once without joining two segments.
    [[nodiscard]] std::size_t firstPiece() const { return firstPiece_; }

private:
    void NoteFirstSegment(const Arrived &arrived);

    int socket_;
    std::chrono::steady_clock::time_point started_;
    diagnostics::Exchange *exchange_;
    bool sawFirstSegment_ = false;
    std::size_t firstPiece_ = kMostAtOnce;
    char piece_[kMostAtOnce];
};

} // namespace client
