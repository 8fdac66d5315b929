#include "caller/call_loop.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

namespace pavonix::device {

namespace {

constexpr unsigned char kUntouched = 0xA5;

// One text argument, in a heap block of exactly its size: a checked build sees
// the library read past the terminator.
class WideArgument {
public:
    const PavonixChar *get() const { return units_.get(); }

    friend std::istream &operator>>(std::istream &input, WideArgument &argument)
    {
        std::string word;
        input >> word;
        if (word == "-") {
            return input;
        }
        const std::string digits = word == "\"\"" ? "" : word;
        const std::size_t count = digits.size() / 4;
        argument.units_ = std::make_unique<PavonixChar[]>(count + 1);
        for (std::size_t i = 0; i < count; ++i) {
            argument.units_[i] = static_cast<PavonixChar>(std::strtoul(digits.substr(4 * i, 4).c_str(), nullptr, 16));
        }
        return input;
    }

private:
    std::unique_ptr<PavonixChar[]> units_;
};

std::string Hex(const unsigned char *bytes, std::size_t count)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (std::size_t i = 0; i < count; ++i) {
        hex += kDigits[bytes[i] >> 4];
        hex += kDigits[bytes[i] & 15];
    }
    return hex;
}

std::string CallList(const ShopExports &shop, std::istream &words)
{
    WideArgument profile, target, url;
    auto request = std::make_unique<GoodListRequest>();
    int force = 0, port = 0;
    words >> profile >> request->reserved0 >> request->reserved1 >> request->type >> request->category >>
        request->sort >> request->start >> request->max >> target >> force >> url >> port;
    if (!words) {
        return "error incomplete list command";
    }
    const int result = shop.getGoodListXml(profile.get(), request.get(), target.get(), force, url.get(), port);
    return "result " + std::to_string(result);
}

std::string CallGood(const ShopExports &shop, std::istream &words)
{
    WideArgument profile, target, url;
    auto request = std::make_unique<OneGoodRequest>();
    int force = 0, port = 0;
    words >> profile >> request->reserved0 >> request->reserved1 >> request->type >> request->id >> target >> force >>
        url >> port;
    if (!words) {
        return "error incomplete good command";
    }
    const int result = shop.getOneGoodXml(profile.get(), request.get(), target.get(), force, url.get(), port);
    return "result " + std::to_string(result);
}

std::string CallBuy(const ShopExports &shop, std::istream &words)
{
    WideArgument profile, url;
    auto request = std::make_unique<BuyGoodRequest>();
    int port = 0;
    words >> profile >> request->reserved0 >> request->reserved1 >> request->type >> request->id >> request->force >>
        url >> port;
    if (!words) {
        return "error incomplete buy command";
    }
    auto record = std::make_unique<BuyGoodRoomyResult>();
    std::memset(record.get(), kUntouched, sizeof *record);
    const int result =
        shop.getBuyGood(profile.get(), request.get(), reinterpret_cast<BuyGoodResult *>(record.get()), url.get(), port);
    return "result " + std::to_string(result) + " " +
           Hex(reinterpret_cast<const unsigned char *>(record.get()), sizeof *record);
}

std::string RunCommand(LibraryLoader &loader, const ShopExports &shop, const std::string &command, std::istream &words)
{
    if (command == "list") {
        return CallList(shop, words);
    }
    if (command == "good") {
        return CallGood(shop, words);
    }
    if (command == "buy") {
        return CallBuy(shop, words);
    }
    const std::string output = loader.RunOther(command, words);
    return output.empty() ? "error unknown command " + command : output;
}

} // namespace

int RunCallLoop(LibraryLoader &loader)
{
    ShopExports shop;
    if (!loader.Load(&shop)) {
        return 1;
    }
    std::cout << "ready" << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string command;
        words >> command;
        if (command == "quit") {
            break;
        }
        if (command != "reload") {
            std::cout << RunCommand(loader, shop, command, words) << std::endl;
            continue;
        }
        loader.Unload();
        if (!loader.Load(&shop)) {
            return 1;
        }
        std::cout << "ready" << std::endl;
    }
    loader.Unload();
    return 0;
}

} // namespace pavonix::device
