// ce_runner [OPTION...] PAVONIX.dll: makes calls into the device's DLL on command.
// ce_runner [OPTION...] PROGRAM.exe: runs a program of the device.
// It runs on ARM, or under an emulator of it.
//
// Exit code 3: the DLL was unloaded with handles still open, which are printed. 70: the
// DLL misused a function of the system.
#include "caller/call_loop.h"
#include "trampoline/trampoline.h"
#include "device_commands.h"
#include "device_options.h"
#include "image/pe_image.h"
#include "system/coredll.h"
#include "system/loaded_images.h"
#include "system/open_handles.h"
#include "system/import_table.h"
#include "system_command.h"

#include <iostream>
#include <memory>
#include <string>
#include <thread>

namespace pavonix::device {

namespace {

constexpr int kUsageExit = 2;
constexpr int kLeakExit = 3;

class ImageLoader;
ImageLoader *theLoader = nullptr;

class ImageLoader : public LibraryLoader {
public:
    explicit ImageLoader(std::string path) : path_(std::move(path)) { theLoader = this; }

    bool Load(ShopExports *exports) override
    try {
        image_ = std::make_unique<PeImage>(path_, ResolveImport);
        Find<1>("GetGoodListXml", &exports->getGoodListXml);
        Find<2>("GetOneGoodXml", &exports->getOneGoodXml);
        Find<3>("GetBuyGood", &exports->getBuyGood);
        return true;
    } catch (const ImageError &error) {
        std::cerr << path_ << ": " << error.what() << std::endl;
        return false;
    }

    void Unload() override
    {
        image_.reset();
        CheckFreedBlocks();
        if (!openHandles.Empty()) {
            std::cerr << "still open: " << openHandles.Text() << std::endl;
            leaked_ = true;
        }
    }

    std::string RunOther(const std::string &command, std::istream &words) override
    {
        if (command == "system") {
            return CallSystem(words, [this](std::uint32_t function, const CallWords &arguments) {
                return Call(function, arguments);
            });
        }
        return RunDeviceCommand(command, words);
    }

    // The call as an application makes it: from its first thread, or from a new one, of
    // which the DLL is notified.
    std::uint32_t Call(std::uint32_t function, const CallWords &words)
    {
        if (!deviceOptions.ownThreads) {
            return CallImage(function, words);
        }
        std::uint32_t result = 0;
        std::thread([&] {
            image_->CallEntry(EntryReason::kThreadAttach);
            result = CallImage(function, words);
            image_->CallEntry(EntryReason::kThreadDetach);
        }).join();
        return result;
    }

    bool Leaked() const { return leaked_; }

private:
    // By name, as applications that are linked to the DLL are bound too. The ordinal
    // is their hint, and some look a function up by it.
    template <std::uint32_t Ordinal, typename... Arguments>
    void Find(const char *name, int (**function)(Arguments...))
    {
        static std::uint32_t address;
        address = image_->Export(name);
        if (address == 0 || address != image_->Export(Ordinal)) {
            throw ImageError(std::string("does not export ") + name + " as ordinal " + std::to_string(Ordinal));
        }
        *function = [](Arguments... arguments) {
            return static_cast<int>(theLoader->Call(address, {WordOf(arguments)...}));
        };
    }

    static std::uint32_t WordOf(int number) { return static_cast<std::uint32_t>(number); }
    static std::uint32_t WordOf(const void *place)
    {
        return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(place));
    }

    std::string path_;
    std::unique_ptr<PeImage> image_;
    bool leaked_ = false;
};

int RunProgram(const std::string &path)
try {
    loadedImages.programPath = path;
    return PeImage(path, ResolveImport, ImageKind::kProgram).Run();
} catch (const ImageError &error) {
    std::cerr << path << ": " << error.what() << std::endl;
    return kUsageExit;
}

int Run(int count, char **arguments)
{
    int path = 1;
    while (path < count && TakeOption(arguments[path])) {
        ++path;
    }
    if (path + 1 != count || arguments[path][0] == '-') {
        std::cerr << "usage: ce_runner " << kOptionsUsage << " DLL|EXE" << std::endl;
        return kUsageExit;
    }
    if (std::string_view(arguments[path]).ends_with(".exe")) {
        return RunProgram(arguments[path]);
    }
    ImageLoader loader(arguments[path]);
    const int result = RunCallLoop(loader);
    return result == 0 && loader.Leaked() ? kLeakExit : result;
}

} // namespace

} // namespace pavonix::device

int main(int count, char **arguments)
{
    return pavonix::device::Run(count, arguments);
}
