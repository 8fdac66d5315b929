#include "diagnostics/head_lines.h"

#include "diagnostics/printable.h"

#include <algorithm>

namespace diagnostics {

namespace {

std::string_view Trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

char Lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 'a' - 'A') : letter;
}

bool SameLetter(char one, char other)
{
    return Lower(one) == Lower(other);
}

HeadLine Split(std::string_view line, bool isFirst)
{
    const std::size_t colon = line.find(':');
    if (isFirst || colon == std::string_view::npos) {
        return {line, {}, {}};
    }
    return {line, line.substr(0, colon), Trimmed(line.substr(colon + 1))};
}

} // namespace

std::vector<HeadLine> ReadHeadLines(std::string_view message)
{
    std::vector<HeadLine> lines;
    while (!message.empty()) {
        const std::size_t end = message.find('\n');
        std::string_view line = message.substr(0, end);
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        message.remove_prefix(end == std::string_view::npos ? message.size() : end + 1);
        if (!line.empty()) {
            lines.push_back(Split(line, lines.empty()));
        } else if (!lines.empty()) {
            break;
        }
    }
    return lines;
}

const HeadLine *FindLine(const std::vector<HeadLine> &lines, std::string_view name)
{
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [=](const HeadLine &line) { return EqualsInAnyCase(line.name, name); });
    return found == lines.end() ? nullptr : &*found;
}

std::string ServerSoftware(std::string_view reply)
{
    const std::vector<HeadLine> lines = ReadHeadLines(reply);
    std::string software;
    for (const char *name : {"Server", "X-Powered-By", "Via"}) {
        if (const HeadLine *line = FindLine(lines, name)) {
            software += (software.empty() ? "" : ", ") + Printable(line->value);
        }
    }
    return software;
}

bool EqualsInAnyCase(std::string_view one, std::string_view other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), SameLetter);
}

bool ContainsInAnyCase(std::string_view text, std::string_view part)
{
    return std::search(text.begin(), text.end(), part.begin(), part.end(), SameLetter) != text.end();
}

} // namespace diagnostics
