#include "system/device_path.h"

#include "device_options.h"
#include "platform/code_pages.h"
#include "platform/posix/utf8_path.h"

#include <algorithm>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace pavonix::device {

namespace {

constexpr int kLongestPath = 260; // units, with the terminator

// Letters of Latin-1 only: no test needs others.
std::u16string WithoutCase(const std::string &name)
{
    std::u16string text(name.size(), 0);
    const int units = platform::BytesToWide(platform::kUtf8CodePage, name.data(), static_cast<int>(name.size()),
                                            text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(units));
    for (char16_t &unit : text) {
        const bool isUpper = (unit >= u'A' && unit <= u'Z') || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
        unit = static_cast<char16_t>(isUpper ? unit + 0x20 : unit);
    }
    return text;
}

// The folder's entry of that name; `name` itself if there is none.
std::string FindEntry(const std::string &folder, const std::string &name)
{
    struct stat ignored;
    if (lstat((folder + name).c_str(), &ignored) == 0) {
        return name;
    }
    const std::unique_ptr<DIR, int (*)(DIR *)> entries(opendir(folder.c_str()), closedir);
    const std::u16string wanted = WithoutCase(name);
    while (const dirent *entry = entries ? readdir(entries.get()) : nullptr) {
        if (WithoutCase(entry->d_name) == wanted) {
            return entry->d_name;
        }
    }
    return name;
}

bool Matches(std::u16string_view pattern, std::u16string_view name)
{
    if (pattern.empty()) {
        return name.empty();
    }
    if (pattern[0] == u'*') {
        return Matches(pattern.substr(1), name) || (!name.empty() && Matches(pattern, name.substr(1)));
    }
    return !name.empty() && (pattern[0] == u'?' || pattern[0] == name[0]) && Matches(pattern.substr(1), name.substr(1));
}

} // namespace

DevicePath::DevicePath(const WideChar *path, PathOf purpose)
{
    const platform::Utf8Path given(path);
    if (!given.valid() || WideLength(path) >= kLongestPath) {
        return;
    }
    const std::string text = given.c_str();
    const char *const excluded = purpose == PathOf::kSearch ? "<>:\"|" : "<>:\"|*?";
    if (!text.starts_with('/') || text.find_first_of(excluded) != std::string::npos) {
        return;
    }
    name_ = deviceOptions.root;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('/', begin), text.size());
        std::string part = text.substr(begin, end - begin);
        part.erase(part.find_last_not_of(". ") + 1);
        if (part.empty() && end != begin) {
            name_.clear();
            return;
        }
        name_ += part.empty() ? part : FindEntry(name_, part);
        name_ += end < text.size() ? "/" : "";
        begin = end + 1;
    }
}

std::uint32_t DevicePath::AttributesOf(const std::string &name)
{
    struct stat status;
    if (stat(name.c_str(), &status) != 0) {
        return 0;
    }
    return (S_ISDIR(status.st_mode) ? kAttributeDirectory : kAttributeArchive) |
           ((status.st_mode & S_IWUSR) == 0 ? kAttributeReadOnly : 0);
}

bool MatchesPattern(const std::string &pattern, const std::string &name)
{
    const std::size_t kept = pattern.size() - (pattern.ends_with("*.*") ? 2 : 0);
    return Matches(WithoutCase(pattern.substr(0, kept)), WithoutCase(name));
}

} // namespace pavonix::device
