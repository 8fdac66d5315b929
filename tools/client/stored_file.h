// What a download left at its target path.
#pragma once

#include "system.h"

#include <cstdint>
#include <string>

namespace client {

// Remembers what lies at the path when it is made, before the download.
class StoredFile {
public:
    // Throws Failure for a path that is empty or has no regular file: the library
    // would delete a device or a link and put a file in its place.
    explicit StoredFile(const std::string &path);

    // Whether the download has put a file there.
    [[nodiscard]] bool IsNew() const;
    [[nodiscard]] std::uint64_t Size() const;
    // What is wrong with the XML in it; empty when it is a whole document.
    [[nodiscard]] std::string Fault() const;
    // Zero bytes in the part of it that came with the reply's head: they replace
    // bytes that did not.
    [[nodiscard]] std::size_t Zeros() const;
    // The first lines, each on a line of its own behind "  | ".
    [[nodiscard]] std::string FirstLines() const;
    // Why the library stored nothing, as far as the file system tells.
    [[nodiscard]] std::string WhyNotStored() const;

    const std::string &path() const { return path_; }
    const FileState &before() const { return before_; }

private:
    [[nodiscard]] std::string Beginning() const;

    std::string path_;
    FileState before_;
};

} // namespace client
