// The body of a reply, as the store reads it.
#pragma once

#include <cstdint>
#include <span>

namespace pavonix {

class BodySource {
public:
    // The body bytes received with the reply's head. Bytes that did not arrive are zeros.
    virtual std::span<const char> held() const = 0;
    // The announced length of the body in bytes; 0 when the reply announces none.
    virtual std::uint32_t announced() const = 0;
    // Receives at most `length` further bytes: their number, or 0 or less at the end of
    // the stream and on an error.
    virtual int Receive(char *buffer, int length) = 0;

protected:
    ~BodySource() = default;
};

} // namespace pavonix
