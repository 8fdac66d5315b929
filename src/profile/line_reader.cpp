#include "profile/line_reader.h"

#include "rsa/text/wipe.h"

#include <algorithm>
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
        const char *lineFeed = std::find(next_, end_, '\n');
        const std::size_t count = static_cast<std::size_t>(lineFeed - next_);
        if (count > sizeof line_ - 1 - length) {
            return nullptr;
        }
        std::memcpy(line_ + length, next_, count);
        length += count;
        next_ = lineFeed;
    } while (next_ == end_ && Fill());
    next_ += next_ != end_ ? 1 : 0; // the line feed
    line_[length] = 0;
    return line_;
}

} // namespace pavonix
