#include "reply_model.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <iconv.h>

namespace pavonix::e2e {

namespace {

constexpr std::size_t kReception = 1024;

// Converts from the ANSI code page; an undefined byte keeps its value.
std::u16string Wide(const std::string &text)
{
    static const iconv_t conversion = iconv_open("UTF-16LE", "CP1252");
    std::u16string units;
    for (const char byte : std::string(text.c_str())) { // up to the first NUL
        char from = byte, to[2] = {byte, 0};
        char *input = &from, *output = to;
        std::size_t left = 1, room = 2;
        iconv(conversion, &input, &left, &output, &room);
        units += static_cast<char16_t>(static_cast<unsigned char>(to[0]) | static_cast<unsigned char>(to[1]) << 8);
    }
    return units;
}

} // namespace

Receptions CutAt(std::size_t cut, const std::vector<std::string> &pieces)
{
    Receptions receptions;
    for (const std::string &piece : pieces) {
        const std::string sent = piece.substr(0, cut);
        cut -= sent.size();
        for (std::size_t i = 0; i < sent.size(); i += kReception) {
            receptions.push_back(sent.substr(i, kReception));
        }
    }
    return receptions;
}

ReplyModel::ReplyModel(const Receptions &receptions)
{
    std::string area = receptions.empty() ? "" : receptions[0];
    area.resize(kReception, '\0');
    const std::size_t blankLine = std::string(area.c_str()).find("\r\n\r\n"); // a NUL ends the text
    head = area.substr(0, blankLine == std::string::npos ? 2 : blankLine + 4);
    prefix = area.substr(head.size());
    const std::size_t line = head.find_first_not_of("\r\n");
    const std::size_t space = head.find_first_of(" \r\n", line == std::string::npos ? 0 : line);
    status = space == std::string::npos || head[space] != ' ' ? 0 : NumberOf(head.substr(space + 1, 3));
    announced = static_cast<std::uint32_t>(NumberOf(Value(head, "Content-Length").value_or("")));
}

std::optional<std::string> ReplyModel::Value(const std::string &text, const std::string &name)
{
    const std::size_t start = text.find(name), colon = text.find(':', start), end = text.find("\r\n", start);
    if (start == std::string::npos || end == std::string::npos || colon > end) {
        return std::nullopt;
    }
    return text.substr(colon + 1, end - colon - 1);
}

// An error value is searched for in the head and in the body bytes received with it.
Record ReplyModel::PurchaseRecord() const
{
    if (status == 200) {
        return {};
    }
    const std::string body = announced == 0 ? prefix : prefix.substr(0, announced);
    const std::string text = (head + body).c_str();
    Record record;
    record.errorCode = NumberOf(Value(text, "X-Error-Code").value_or(""));
    if (const auto message = Value(text, "X-Error-Message")) {
        record.message = Wide(*message);
    }
    const auto timestamp = Value(text, "X-Server-Timestamp");
    if (record.errorCode == 906 && timestamp) {
        record.timestamp = Wide(*timestamp);
    }
    if (record.errorCode == 0) {
        record.body = Wide(body);
    }
    return record;
}

Receptions BodyWrites(const Receptions &receptions)
{
    const ReplyModel reply(receptions);
    const std::size_t wanted = reply.announced == 0 ? reply.prefix.size() : reply.announced;
    Receptions writes = {reply.prefix.substr(0, wanted)};
    std::size_t written = writes[0].size();
    for (std::size_t i = 1; i < receptions.size() && written < wanted; ++i) {
        writes.push_back(receptions[i]);
        written += receptions[i].size();
    }
    return writes;
}

int NumberOf(const std::string &text)
{
    return static_cast<int>(std::clamp(std::strtoll(text.c_str(), nullptr, 10), 0LL + INT_MIN, 0LL + INT_MAX));
}

} // namespace pavonix::e2e
