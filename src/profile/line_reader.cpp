#include "profile/line_reader.h"

#include "rsa/text/wipe.h"

#include <cstring>

namespace pavonix {

LineReader::~LineReader()
{
    Wipe(line_, sizeof line_);
    Wipe(piece_, sizeof piece_);
}

bool LineReader::Fill()
{
    next_ = piece_;
    end_ = piece_ + platform::ReadStream(stream_, piece_, sizeof piece_);
    return next_ != end_;
}

const char *LineReader::ReadLine()
{
    if (next_ == end_ && !Fill()) {
        return nullptr;
    }
    std::size_t length = 0;
    do {
        const std::size_t rest = static_cast<std::size_t>(end_ - next_);
        const void *lineFeed = std::memchr(next_, '\n', rest);
        const std::size_t count =
            lineFeed == nullptr ? rest : static_cast<std::size_t>(static_cast<const char *>(lineFeed) - next_);
        if (count > sizeof line_ - 1 - length) {
            return nullptr;
        }
        std::memcpy(line_ + length, next_, count);
        length += count;
        next_ += count;
    } while (next_ == end_ && Fill());
    if (next_ != end_) {
        ++next_; // the line feed
    }
    line_[length] = 0;
    return line_;
}

} // namespace pavonix
