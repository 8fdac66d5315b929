#include "reply_model.h"

#include <algorithm>
#include <cstdlib>

namespace pavonix::e2e {

namespace {

constexpr std::size_t kReception = 1024;

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
    const std::size_t blankLine = area.find("\r\n\r\n");
    head = area.substr(0, blankLine == std::string::npos ? 2 : blankLine + 4);
    behind = area.substr(head.size());
    const std::size_t line = head.find_first_not_of("\r\n");
    const std::size_t blank = head.find_first_of(" \r\n", line == std::string::npos ? 0 : line);
    status = blank == std::string::npos || head[blank] != ' ' ? 0 : std::atoi(head.substr(blank + 1, 3).c_str());
    const long long length = std::atoll(Value(head, "Content-Length").value_or("0").c_str());
    announced = static_cast<std::uint32_t>(std::clamp(length, -2147483648LL, 2147483647LL));
}

std::optional<std::string> ReplyModel::Value(const std::string &text, const std::string &name)
{
    const std::size_t start = text.find(name), colon = text.find(':', start), end = text.find("\r\n", start);
    if (start == std::string::npos || end == std::string::npos || colon > end) {
        return std::nullopt;
    }
    return text.substr(colon + 1, end - colon - 1);
}

} // namespace pavonix::e2e
