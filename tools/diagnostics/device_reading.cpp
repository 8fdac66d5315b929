#include "diagnostics/device_reading.h"

#include <algorithm>
#include <limits>

namespace diagnostics {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHeadEnd = "\r\n\r\n";

// The device's texts end at their first zero byte.
std::string_view AsText(std::string_view bytes)
{
    return bytes.substr(0, bytes.find('\0'));
}

std::optional<std::string> ValueOf(std::string_view text, std::string_view name)
{
    const std::size_t found = text.find(name);
    const std::size_t colon = text.find(':', std::min(found, text.size()));
    const std::size_t lineEnd = text.find(kLineEnd, std::min(found, text.size()));
    if (colon == std::string_view::npos || lineEnd == std::string_view::npos || lineEnd <= colon) {
        return std::nullopt;
    }
    return std::string(text.substr(colon + 1, lineEnd - colon - 1));
}

int StatusOf(std::string_view head)
{
    const std::size_t blank = head.find(' ');
    return blank == std::string_view::npos ? 0 : DeviceNumber(head.substr(blank + 1, 3));
}

} // namespace

DeviceReading::DeviceReading(const Exchange &exchange)
    : area_(exchange.reply.substr(0, std::min(exchange.firstBytes, kFirstReception))), came_(area_.size())
{
    area_.resize(kFirstReception);
    const std::size_t end = AsText(area_).find(kHeadEnd);
    headIsWhole_ = end != std::string_view::npos;
    headLength_ = headIsWhole_ ? end + kHeadEnd.size() : 2;
    announced_ = static_cast<std::uint32_t>(DeviceNumber(ValueOf(AsText(Head()), "Content-Length").value_or("")));
    status_ = StatusOf(AsText(Head()));
}

std::size_t DeviceReading::zeros() const
{
    const std::size_t room = kFirstReception - headLength_;
    const std::size_t taken = announced_ == 0 ? room : std::min<std::size_t>(announced_, room);
    const std::size_t cameOfBody = came_ - std::min(headLength_, came_);
    return taken - std::min(cameOfBody, taken);
}

std::optional<std::string> DeviceReading::Verdict(std::string_view name) const
{
    return ValueOf(AsText(area_), name);
}

std::optional<std::string> DeviceReading::LineOf(std::string_view name) const
{
    const std::string_view text = AsText(area_);
    const std::size_t found = text.find(name);
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t before = text.rfind('\n', found);
    const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
    return std::string(text.substr(start, text.find(kLineEnd, found) - start));
}

std::int32_t DeviceNumber(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative || text.starts_with('+') ? 1 : 0);
    constexpr std::int64_t kBeyond = std::int64_t{1} << 31;
    std::int64_t value = 0;
    for (std::size_t i = 0; i < text.size() && text[i] >= '0' && text[i] <= '9' && value < kBeyond; ++i) {
        value = value * 10 + (text[i] - '0');
    }
    value = negative ? -std::min(value, kBeyond) : std::min(value, kBeyond - 1);
    return static_cast<std::int32_t>(value);
}

} // namespace diagnostics
