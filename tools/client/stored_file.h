// The file that a download stores.
#pragma once

#include "system.h"

#include <cstdint>
#include <string>

namespace client {

// Construct it before the download: it remembers the state of the file.
class StoredFile {
public:
    // Throws Failure for an empty path, and for one that is not a regular file: the
    // library would delete a device or link and put a file in its place.
    explicit StoredFile(const std::string &path);

    // Whether the download stored a file.
    [[nodiscard]] bool IsNew() const;
    [[nodiscard]] std::uint64_t Size() const;
    // What is wrong with its XML; empty for a complete document.
    [[nodiscard]] std::string Fault() const;
    // The number of zero bytes in the first 1024: they replace bytes that were not in the
    // first packet.
    [[nodiscard]] std::size_t Zeros() const;
    // The first lines, each prefixed with "  | ".
    [[nodiscard]] std::string FirstLines() const;
    // The likely reason why nothing was stored.
    [[nodiscard]] std::string WhyNotStored() const;

    const std::string &path() const { return path_; }
    const FileState &before() const { return before_; }

private:
    [[nodiscard]] std::string Beginning() const;

    std::string path_;
    FileState before_;
};

} // namespace client
