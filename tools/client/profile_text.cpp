#include "profile_text.h"

#include <charconv>
#include <cstdint>

namespace client {

namespace {

class Reader {
public:
    void TakeLine(std::string_view line);
    bool TooLong(std::string_view line);
    void CheckWhole();

    ProfileText result;

private:
    void Problem(const std::string &text) { result.problems.push_back(Here() + text); }
    void Remark(const std::string &text) { result.remarks.push_back(Here() + text); }
    std::string Here() const { return "line " + std::to_string(number_) + ": "; }

    void CheckKey(std::string_view line, const std::string &key, std::size_t position);
    std::string_view TakeValue(std::string_view line, const std::string &key, std::size_t position);
    void CheckValue(const std::string &key, std::string_view value);

    int number_ = 0;
};

bool Reader::TooLong(std::string_view line)
{
    ++number_;
    if (line.size() <= kLongestProfileLine) {
        return false;
    }
    Problem("it has " + std::to_string(line.size()) + " characters, more than " + std::to_string(kLongestProfileLine) +
            "; this and all later lines are ignored");
    return true;
}

// Keys are found anywhere in a line, so the key that is found may not be the intended one.
void Reader::CheckKey(std::string_view line, const std::string &key, std::size_t position)
{
    for (const char *other : kProfileKeys) {
        if (position > 0 && other != key && line.starts_with(other)) {
            Problem(std::string("it begins with ") + other + " but is read as " + key +
                    ", which it also contains and which takes precedence");
            return;
        }
    }
    if (position > 0) {
        Remark(key + " is found in the middle of the line");
    }
}

std::string_view Reader::TakeValue(std::string_view line, const std::string &key, std::size_t position)
{
    const std::size_t separator = line.find(": ", position);
    if (separator == std::string_view::npos) {
        Problem("no \": \" (colon and space) follows " + key + ", so the whole line is its value");
        return line;
    }
    if (separator != position + key.size()) {
        Problem("there is text between " + key + " and the next \": \"");
    }
    return line.substr(separator + 2);
}

void Reader::CheckValue(const std::string &key, std::string_view value)
{
    if (value.ends_with('\r')) {
        Problem("it ends in a carriage return, which becomes part of " + key + "; end lines with a line feed only");
        return;
    }
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    const bool isNumber = error == std::errc() && end == value.data() + value.size();
    if ((key == "User-Id" || key == "User-No") && !isNumber) {
        Problem(key + " is not a whole number of 32 bits; the leading digits are used, or 0 without any");
    }
}

void Reader::TakeLine(std::string_view line)
{
    if (line.find('\0') != std::string_view::npos) {
        Problem("it contains a zero byte; the rest of the line is ignored");
        line = line.substr(0, line.find('\0'));
    }
    for (const std::string key : kProfileKeys) {
        const std::size_t position = line.find(key);
        if (position == std::string_view::npos) {
            continue;
        }
        CheckKey(line, key, position);
        const std::string_view value = TakeValue(line, key, position);
        CheckValue(key, value);
        if (result.lines.contains(key)) {
            Problem(key + " overrides the value of line " + std::to_string(result.lines[key]));
        }
        result.values[key] = value;
        result.lines[key] = number_;
        return;
    }
    if (!line.empty()) {
        Remark("it contains no key and is ignored");
    }
}

void Reader::CheckWhole()
{
    for (const std::string key : kProfileKeys) {
        if (key != "User-No" && result.values[key].empty()) {
            result.problems.push_back(key + " is missing or empty");
        }
    }
}

} // namespace

ProfileText ReadProfileText(std::string_view text)
{
    Reader reader;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (reader.TooLong(line)) {
            break;
        }
        reader.TakeLine(line);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    reader.CheckWhole();
    return reader.result;
}

} // namespace client
