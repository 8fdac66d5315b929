#include "profile/line_reader.h"

namespace pavonix {

int LineReader::ReadByte()
{
    if (used_ == filled_) {
        filled_ = platform::ReadStream(stream_, piece_, sizeof piece_);
        used_ = 0;
    }
    return filled_ == 0 ? -1 : static_cast<unsigned char>(piece_[used_++]);
}

bool LineReader::ReadLine(char (&line)[kLineRoom])
{
    int length = 0;
    int byte = failed_ ? -1 : ReadByte();
    if (byte < 0) {
        return false;
    }
    for (; byte >= 0 && byte != '\n'; byte = ReadByte()) {
        if (length == kLineRoom - 1) {
            failed_ = true;
            return false;
        }
        line[length++] = static_cast<char>(byte);
    }
    line[length] = 0;
    return true;
}

} // namespace pavonix
