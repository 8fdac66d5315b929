// A device's profile and target file, and the loopback server.
#pragma once

#include "harness/key.h"
#include "harness/loopback_server.h"
#include "pavonix/pavonix.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace pavonix::bench {

// Its files are in the temporary folder.
class Shop {
public:
    Shop()
    {
        const std::string key = KeyXml(1024);
        std::ofstream(profile()) << "User-Agent: Bench/1\nUser-Serial: S-1\nUser-Id: 42\nPublic-Key: "
                                 << key.substr(0, key.find("<P>")) << "</RSAKeyValue>\nPrivate-Key: " << key << "\n";
    }
    ~Shop() { std::filesystem::remove(profile()); }
    Shop(const Shop &) = delete;
    Shop &operator=(const Shop &) = delete;

    // Stores a good whose XML has `size` bytes.
    int GetGood(std::size_t size)
    {
        const OneGoodRequest request = {.reserved0 = 0, .reserved1 = 0, .type = 1, .id = static_cast<int>(size)};
        return GetOneGoodXml(profilePath_.c_str(), &request, targetPath_.c_str(), 1, url_.c_str(), server.port());
    }
    int Buy()
    {
        const BuyGoodRequest request = {.reserved0 = 0, .reserved1 = 0, .type = 1, .id = 2, .force = 0};
        return GetBuyGood(profilePath_.c_str(), &request, nullptr, url_.c_str(), server.port());
    }
    // Removes the target file; returns whether it had `size` bytes.
    bool TakeTarget(std::size_t size)
    {
        std::error_code absent;
        const bool whole = std::filesystem::file_size(target(), absent) == size;
        return std::filesystem::remove(target(), absent) && whole;
    }
    std::filesystem::path profile() const { return folder_ / "profile"; }
    std::filesystem::path target() const { return folder_ / "target"; }

    LoopbackServer server;

private:
    static std::u16string LibraryPath(const std::filesystem::path &path)
    {
        std::u16string text = path.u16string();
        std::replace(text.begin(), text.end(), u'/', u'\\');
        return text;
    }

    std::filesystem::path folder_ = std::filesystem::temp_directory_path();
    std::u16string profilePath_ = LibraryPath(profile());
    std::u16string targetPath_ = LibraryPath(target());
    std::u16string url_ = std::filesystem::path(server.url()).u16string();
};

} // namespace pavonix::bench
