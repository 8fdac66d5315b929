// Translates the device's file names to those of this machine.
#pragma once

#include "platform/wide_char.h"

#include <cstdint>
#include <string>

namespace pavonix::device {

constexpr std::uint32_t kAttributeReadOnly = 0x01;
constexpr std::uint32_t kAttributeDirectory = 0x10;
constexpr std::uint32_t kAttributeArchive = 0x20; // an ordinary file

enum class PathOf { kFile, kSearch };

// The device compares names without regard to case: each part of a path leads to
// the file of that name, or else to one whose name differs in case alone. Periods and
// spaces at the end of a name are dropped. A path is invalid if it does not start
// at the root (there is no current folder), or has a part of periods alone, a character
// that names may not have, or 260 units and more. Only a search may have `*` and `?`.
class DevicePath {
public:
    explicit DevicePath(const WideChar *path, PathOf purpose = PathOf::kFile);

    bool valid() const { return !name_.empty(); }
    // A path of this machine. The last part, or more, need not exist.
    const std::string &name() const { return name_; }
    // 0 if the path does not exist.
    std::uint32_t Attributes() const { return AttributesOf(name_); }

    static std::uint32_t AttributesOf(const std::string &name);

private:
    std::string name_;
};

// True if a file's name, in UTF-8, matches a pattern: `*` for any characters, `?` for
// one. A final `*.*` also matches a name without a period; no other character is special.
bool MatchesPattern(const std::string &pattern, const std::string &name);

} // namespace pavonix::device
