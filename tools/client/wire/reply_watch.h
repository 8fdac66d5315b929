// Receives a reply and identifies its first segment.
#pragma once

#include "diagnostics/exchange.h"
#include "wire/segments.h"

#include <string_view>

namespace client {

class ReplyWatch {
public:
    static constexpr std::size_t kMostAtOnce = 16384;

    // socket: connected, before the request is sent. *exchange gets the beginning of the
    // reply, and the number of further bytes.
    ReplyWatch(int socket, diagnostics::Exchange *exchange);

    // Waits for the first bytes, and records their segment and delay. False if the deadline
    // passes or the connection ends first.
    [[nodiscard]] bool WaitForFirst(const Deadline &deadline);

    // Receives once. Returns nothing at the end of the reply or the deadline, which is
    // recorded. The view is valid until the next call.
    [[nodiscard]] std::string_view Read(const Deadline &deadline, std::size_t most = kMostAtOnce);

    // Whether the announced length (in any spelling) or the last chunk has arrived.
    [[nodiscard]] bool IsComplete() const;

    // False if the first segment could not be told from later ones. If the system does not
    // report segments, the first receive counts as the first segment.
    [[nodiscard]] bool sawFirstSegment() const { return sawFirstSegment_; }
    // How many bytes can be passed on at once without merging two segments.
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
