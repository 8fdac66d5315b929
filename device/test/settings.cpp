#include "test/settings.h"

#include "test/files.h"

namespace pavonix::device_test {

namespace {

constexpr std::string_view kBlanks = " \t\r";

std::string_view Trim(std::string_view text)
{
    while (!text.empty() && kBlanks.find(text.front()) != kBlanks.npos) {
        text.remove_prefix(1);
    }
    while (!text.empty() && kBlanks.find(text.back()) != kBlanks.npos) {
        text.remove_suffix(1);
    }
    return text;
}

bool ReadNumber(std::string_view text, int most, int *number)
{
    int value = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9' || value > most) {
            return false;
        }
        value = 10 * value + (digit - '0');
    }
    *number = value;
    return value > 0 && value <= most;
}

bool IsAscii(std::string_view text)
{
    for (const char c : text) {
        if (c < ' ' || c > '~') {
            return false;
        }
    }
    return !text.empty();
}

// False for an unknown name or a value that cannot be.
bool Set(Settings *settings, std::string_view name, std::string_view value)
{
    Line text;
    Append(&text, value);
    if (!IsAscii(value)) {
        return false;
    }
    if (name == "host") {
        settings->host.Clear();
        return settings->host.Append(text.c_str()).fits();
    }
    if (name == "profile") {
        settings->profile = Path().Add(text.c_str());
        return value.size() < Path::kLongest;
    }
    return (name == "port" && ReadNumber(value, 65535, &settings->port)) ||
           (name == "wait" && ReadNumber(value, 600, &settings->patience));
}

// Cuts the next line off.
std::string_view NextLine(std::string_view *text)
{
    std::size_t end = text->find('\n');
    end = end == text->npos ? text->size() : end;
    const std::string_view line(text->data(), end);
    text->remove_prefix(end < text->size() ? end + 1 : end);
    return Trim(line);
}

} // namespace

bool ReadSettings(const Path &file, Report *report, Settings *settings)
{
    static char room[4096];
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    bool found = false, right = true;
    std::string_view text = ReadWhole(file.c_str(), room, sizeof room, &found);
    if (!found) {
        report->Skip(Join("a shop, as there is no PavonixTest.ini"));
        return false;
    }
    if (text.starts_with(kUtf8Mark)) {
        text.remove_prefix(kUtf8Mark.size());
    }
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = NextLine(&text);
        const std::size_t sign = line.find('=');
        if (line.empty() || line[0] == '#') {
            continue;
        }
        if (sign == line.npos ||
            !Set(settings, Trim({line.data(), sign}), Trim({line.data() + sign + 1, line.size() - sign - 1}))) {
            report->Deviation(Join("PavonixTest.ini, line ", number,
                                   ": not host=, port=, profile= or wait= with a "
                                   "value that can be; save it as plain ASCII text"));
            right = false;
        }
    }
    if (right && settings->host.length() == 0) {
        report->Deviation(Join("PavonixTest.ini: no host="));
        right = false;
    }
    return right;
}

} // namespace pavonix::device_test
