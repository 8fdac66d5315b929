#include "profile/line_reader.h"

#include "rsa/text/wipe.h"

namespace pavonix {

LineReader::~LineReader()
{
    Wipe(line_, sizeof line_);
    Wipe(piece_, sizeof piece_);
}

int LineReader::ReadByte()
{
    if (used_ == filled_) {
        filled_ = platform::ReadStream(stream_, piece_, sizeof piece_);
        used_ = 0;
    }
    return filled_ == 0 ? -1 : static_cast<unsigned char>(piece_[used_++]);
}

const char *LineReader::ReadLine()
{
    std::size_t length = 0;
    int byte = failed_ ? -1 : ReadByte();
    if (byte < 0) {
        return nullptr;
    }
    for (; byte >= 0 && byte != '\n'; byte = ReadByte()) {
        if (length == sizeof line_ - 1) {
            failed_ = true;
            return nullptr;
        }
        line_[length++] = static_cast<char>(byte);
    }
    line_[length] = 0;
    return line_;
}

} // namespace pavonix
