#include "system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace client {

std::vector<std::string> CommandLine(int argc, char **argv)
{
    return {argv + 1, argv + argc};
}

FileState StateOf(const char *path)
{
    using Kind = FileState::Kind;
    struct stat now = {};
    if (stat(path, &now) != 0) {
        return {};
    }
    const Kind kind = S_ISREG(now.st_mode) ? Kind::kFile : S_ISDIR(now.st_mode) ? Kind::kFolder : Kind::kOther;
    const auto seconds = static_cast<std::uint64_t>(now.st_mtim.tv_sec);
    return {kind, static_cast<std::uint64_t>(now.st_size), now.st_ino,
            seconds * 1'000'000'000 + static_cast<std::uint64_t>(now.st_mtim.tv_nsec)};
}

std::string WhyNoFileIn(const std::string &folder)
{
    return access(folder.c_str(), W_OK | X_OK) == 0 ? "it cannot be opened for writing"
                                                    : folder + ": " + std::strerror(errno);
}

void WriteNewFile(const std::string &path, const std::string &content, bool secret, bool replace)
{
    if (replace) {
        unlink(path.c_str()); // so that the new file has its own mode and no links
    }
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, secret ? 0600 : 0644);
    const bool written = file >= 0 && write(file, content.data(), content.size()) == ssize_t(content.size());
    const std::string reason = std::strerror(errno);
    if (file >= 0 && close(file) == 0 && written) {
        return;
    }
    throw Failure(ExitCode::kLocalFailure, path + ": " + reason);
}

std::string NetworkErrorText(int error)
{
    return std::strerror(error);
}

} // namespace client
