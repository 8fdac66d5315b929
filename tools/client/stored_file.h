// What a download left at its target path.
#pragma once

#include <string>
#include <sys/stat.h>

namespace client {

// Remembers what lies at the path when it is made, before the download.
class StoredFile {
public:
    explicit StoredFile(const std::string &path) : path_(path), before_(Look(path)) {}

    // Shows size and first lines of what the download stored. Answers false, and
    // says why, when that is nothing or no whole XML document: the library
    // reports status 200 for these, too.
    [[nodiscard]] bool Show() const;

private:
    struct Look {
        explicit Look(const std::string &path);
        bool operator==(const Look &) const = default;

        bool isFile = false;
        ino_t inode = 0;
        off_t size = 0;
        long seconds = 0;
        long nanoseconds = 0;
    };

    std::string path_;
    Look before_;
};

} // namespace client
