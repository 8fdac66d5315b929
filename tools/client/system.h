// The client's interface to the operating system: linux/ and windows/.
#pragma once

#include "exit_code.h"

#include <cstdint>
#include <string>
#include <vector>

namespace client {

// The arguments of the command line, in UTF-8.
[[nodiscard]] std::vector<std::string> CommandLine(int argc, char **argv);

// What a path refers to. Two states differ if the file was written or replaced in between.
struct FileState {
    enum class Kind { kNothing, kFile, kFolder, kOther } kind = Kind::kNothing;
    std::uint64_t size = 0;
    std::uint64_t identity = 0;
    std::uint64_t written = 0; // time of the last change, in a unit of the system

    bool operator==(const FileState &) const = default;
};

// Safe in a signal handler.
[[nodiscard]] FileState StateOf(const char *path);
// Why no file can be created in an existing folder.
[[nodiscard]] std::string WhyNoFileIn(const std::string &folder);

// A secret file is readable by its owner only, where files have modes. Throws
// Failure(kLocalFailure) if the file cannot be written, or exists and `replace` is false.
void WriteNewFile(const std::string &path, const std::string &content, bool secret, bool replace);

// The message for an error of connect or send.
[[nodiscard]] std::string NetworkErrorText(int error);

} // namespace client
