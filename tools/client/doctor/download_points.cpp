#include "doctor/download_points.h"

#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/printable.h"

namespace client {

using diagnostics::HeadLine;
using diagnostics::Topic;

std::vector<std::pair<Topic, std::string>> PointsOf(const diagnostics::Exchange &download)
{
    const diagnostics::DeviceReading device(download);
    const std::vector<HeadLine> lines = diagnostics::ReadHeadLines(download.reply);
    const auto line = [&](const char *name) {
        const HeadLine *found = diagnostics::FindLine(lines, name);
        return found == nullptr ? std::string() : diagnostics::Printable(found->whole);
    };
    std::vector<std::pair<Topic, std::string>> points;
    points.emplace_back(Topic::kFirstBytes, diagnostics::Printable(download.reply, 30));
    if (!device.headIsWhole()) {
        return points;
    }
    points.emplace_back(Topic::kHead, std::to_string(device.headLength()) + " bytes of at most 1024");
    points.emplace_back(Topic::kStatus, lines.empty() ? "no line" : diagnostics::Printable(lines.front().whole));
    if (device.status() == 200) {
        if (const std::string length = line("Content-Length"); !length.empty()) {
            points.emplace_back(Topic::kLength, length);
        }
        const std::string coding = line("Transfer-Encoding") + line("Content-Encoding");
        points.emplace_back(Topic::kCoding, coding.empty() ? "none" : coding);
        points.emplace_back(Topic::kBody,
                            std::to_string(download.reply.size() - device.headLength() + download.beyond) + " bytes");
    }
    return points;
}

} // namespace client
