// A temporary folder, and the library's paths of its files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <unistd.h>

namespace pavonix {

// The folder for short-lived test files: in memory, because thousands of files are slow on a disk.
inline std::filesystem::path TemporaryRoot()
{
    const std::filesystem::path memory = "/dev/shm";
    return access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
}

class Sandbox {
public:
    Sandbox()
    {
        std::string pattern = (TemporaryRoot() / "pavonix-XXXXXX").string();
        root_ = mkdtemp(pattern.data());
    }
    ~Sandbox() { std::filesystem::remove_all(root_); }
    Sandbox(const Sandbox &) = delete;
    Sandbox &operator=(const Sandbox &) = delete;

    // The path of "a/b" in the folder, with '\' as the separator.
    std::u16string Path(const std::string &name) const
    {
        std::u16string path = (root_ / std::filesystem::path(name)).u16string();
        for (char16_t &unit : path) {
            unit = unit == u'/' ? u'\\' : unit;
        }
        return path;
    }
    std::u16string Write(const std::string &name, const std::string &bytes) const
    {
        std::filesystem::create_directories((root_ / name).parent_path());
        std::ofstream(root_ / name, std::ios::binary) << bytes;
        return Path(name);
    }
    std::u16string MakeFolder(const std::string &name) const
    {
        std::filesystem::create_directories(root_ / name);
        return Path(name);
    }
    // The content of a file, if it exists.
    std::optional<std::string> Read(const std::string &name) const
    {
        std::ifstream file(root_ / name, std::ios::binary);
        std::ostringstream bytes;
        if (!file || std::filesystem::is_directory(root_ / name)) {
            return std::nullopt;
        }
        bytes << file.rdbuf();
        return bytes.str();
    }
    const std::filesystem::path &root() const { return root_; }

private:
    std::filesystem::path root_;
};

} // namespace pavonix
