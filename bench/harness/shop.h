// A device and a shop: a profile, a target file, and the loopback server.
#pragma once

#include "pavonix/pavonix.h"
#include "harness/key.h"
#include "harness/loopback_server.h"
#include "support/sandbox.h"

namespace pavonix::bench {

class Shop {
public:
    // A good whose XML has `size` bytes, through the library.
    int GetGood(std::size_t size)
    {
        const OneGoodRequest request = {.reserved0 = 0, .reserved1 = 0, .type = 1, .id = static_cast<int>(size)};
        return GetOneGoodXml(profile_.c_str(), &request, target_.c_str(), 1, url_.c_str(), server.port());
    }
    int Buy()
    {
        const BuyGoodRequest request = {.reserved0 = 0, .reserved1 = 0, .type = 1, .id = 2, .force = 0};
        return GetBuyGood(profile_.c_str(), &request, nullptr, url_.c_str(), server.port());
    }
    // Removes the target file; whether it was there with `size` bytes.
    bool TakeTarget(std::size_t size)
    {
        std::error_code absent;
        const bool whole = std::filesystem::file_size(target(), absent) == size;
        return std::filesystem::remove(target(), absent) && whole;
    }
    std::string profile() const { return sandbox_.root() / "profile"; }
    std::string target() const { return sandbox_.root() / "target"; }

    LoopbackServer server;

private:
    Sandbox sandbox_;
    std::u16string profile_ =
        sandbox_.Write("profile", "User-Agent: Bench/1\nUser-Serial: S-1\nUser-Id: 42\nPublic-Key: " + PublicXml() +
                                      "\nPrivate-Key: " + KeyXml(1024) + "\n");
    std::u16string target_ = sandbox_.Path("target");
    std::u16string url_ = std::filesystem::path(server.url()).u16string();

    static std::string PublicXml()
    {
        const std::string xml = KeyXml(1024);
        return xml.substr(0, xml.find("<P>")) + "</RSAKeyValue>";
    }
};

} // namespace pavonix::bench
