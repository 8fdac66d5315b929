// What the client needs of the system that it runs on: linux/ or windows/.
#pragma once

#include "exit_code.h"

#include <cstdint>
#include <string>
#include <vector>

namespace client {

// The arguments of the command line, in UTF-8.
[[nodiscard]] std::vector<std::string> CommandLine(int argc, char **argv);

// What lies at a path. Two states differ when the file was written or replaced.
struct FileState {
    enum class Kind { kNothing, kFile, kFolder, kOther } kind = Kind::kNothing;
    std::uint64_t size = 0;
    std::uint64_t identity = 0;
    std::uint64_t written = 0; // a time of the system's own

    bool operator==(const FileState &) const = default;
};

// Also to be called by a signal handler.
[[nodiscard]] FileState StateOf(const char *path);
// Why no file can be made in a folder that exists.
[[nodiscard]] std::string WhyNoFileIn(const std::string &folder);

// Throws Failure(kLocalFailure) when the file cannot be written, or exists and is not
// to be replaced. A secret is readable by its owner only, where files have modes.
void WriteNewFile(const std::string &path, const std::string &content, bool secret, bool replace);

// The words for the error of a connect or a send.
[[nodiscard]] std::string NetworkErrorText(int error);

} // namespace client
