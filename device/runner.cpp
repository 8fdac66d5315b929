// runner [--search=rejects-trailing|accepts-trailing] PAVONIX.dll: makes calls
// into the device's DLL on command. It runs on ARM, or under an emulator of it.
//
// When the DLL is unloaded and something is still held, says what and ends with
// exit code 3.
#include "caller/call_loop.h"
#include "device_commands.h"
#include "system/device_options.h"
#include "system/holdings.h"
#include "system/import_table.h"
#include "image/pe_image.h"

#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace pavonix::device;
using pavonix::device::ShopExports;

constexpr int kUsageExit = 2;
constexpr int kLeakExit = 3;

class ImageLoader : public pavonix::device::LibraryLoader {
public:
    explicit ImageLoader(std::string path) : path_(std::move(path)) {}

    bool Load(ShopExports *exports) override
    try {
        image_ = std::make_unique<PeImage>(path_, ResolveImport);
        Find("GetGoodListXml", 1, &exports->getGoodListXml);
        Find("GetOneGoodXml", 2, &exports->getOneGoodXml);
        Find("GetBuyGood", 3, &exports->getBuyGood);
        return true;
    } catch (const ImageError &error) {
        std::cerr << path_ << ": " << error.what() << std::endl;
        return false;
    }

    void Unload() override
    {
        image_.reset();
        if (!holdings.Empty()) {
            std::cerr << "left behind: " << holdings.Text() << std::endl;
            leaked_ = true;
        }
    }

    std::string AnswerOther(const std::string &command, std::istream &words) override
    {
        return AnswerDeviceCommand(command, words);
    }

    bool Leaked() const { return leaked_; }

private:
    // By name, and by the ordinal that applications linked to the DLL are bound to.
    template <typename Function>
    void Find(const char *name, std::uint32_t ordinal, Function *function)
    {
        std::uint32_t address = image_->Export(name);
        if (address == 0 || address != image_->Export(ordinal)) {
            throw ImageError(std::string("does not export ") + name + " as ordinal " + std::to_string(ordinal));
        }
        *function = reinterpret_cast<Function>(static_cast<std::uintptr_t>(address));
    }

    std::string path_;
    std::unique_ptr<PeImage> image_;
    bool leaked_ = false;
};

// The DLL's path, or null when the arguments are not understood.
const char *ReadArguments(int count, char **arguments)
{
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--search=rejects-trailing" || argument == "--search=accepts-trailing") {
            deviceOptions.searchRejectsTrailing = argument == "--search=rejects-trailing";
        } else {
            return i + 1 == count && argument[0] != '-' ? arguments[i] : nullptr;
        }
    }
    return nullptr;
}

} // namespace

int main(int count, char **arguments)
{
    const char *path = ReadArguments(count, arguments);
    if (path == nullptr) {
        std::cerr << "usage: runner [--search=rejects-trailing|accepts-trailing] DLL" << std::endl;
        return kUsageExit;
    }
    ImageLoader loader(path);
    int result = pavonix::device::RunCallLoop(loader);
    return result == 0 && loader.Leaked() ? kLeakExit : result;
}
