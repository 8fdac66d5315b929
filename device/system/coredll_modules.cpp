// coredll.dll: libraries, and functions looked up by name.
#include "device_options.h"
#include "image/pe_image.h"
#include "system/coredll.h"
#include "system/device_path.h"
#include "system/import_table.h"
#include "system/loaded_images.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <strings.h>
#include <thread>

namespace pavonix::device {

namespace {

// Names of libraries and functions are ASCII.
std::string Narrow(const WideChar *text)
{
    return {text, text + std::char_traits<WideChar>::length(text)};
}

// The handle of a library of the system is the address of its name.
const char *GetModuleHandle(const WideChar *name)
{
    const std::string wanted = Narrow(name);
    for (const char *library : {kCoreDll, kWinsockDll}) {
        if (strcasecmp(library, wanted.c_str()) == 0 && deviceOptions.missing.count(library) == 0) {
            return library;
        }
    }
    return FailWith<const char *>(kErrorModuleNotFound, nullptr);
}

std::uint32_t GetProcAddress(const void *module, const WideChar *name)
{
    std::uint32_t address = 0;
    if (module == kCoreDll || module == kWinsockDll) {
        address = ResolveImport(static_cast<const char *>(module), Narrow(name));
    } else if (PeImage *image = loadedImages.Find(module)) {
        address = image->Export(Narrow(name));
    }
    return address != 0 ? address : FailWith(kErrorProcedureNotFound, 0u);
}

const void *LoadLibrary(const WideChar *path)
{
    if (const char *library = GetModuleHandle(path)) {
        return library;
    }
    const DevicePath file(path);
    const void *image = file.valid() ? loadedImages.Load(file.name()) : nullptr;
    return image != nullptr ? image : FailWith<const void *>(kErrorModuleNotFound, nullptr);
}

int FreeLibrary(const void *module)
{
    return module == kCoreDll || module == kWinsockDll || loadedImages.Unload(module)
               ? 1
               : FailWith(kErrorInvalidHandle, 0);
}

// The program's own path alone.
std::uint32_t GetModuleFileName(const void *, WideChar *path, std::uint32_t room)
{
    std::string name = loadedImages.programPath.substr(deviceOptions.root.size());
    std::replace(name.begin(), name.end(), '/', '\\');
    const auto length = static_cast<std::uint32_t>(std::min<std::size_t>(name.size(), room - 1));
    std::copy_n(name.begin(), length, path);
    path[length] = 0;
    return length;
}

} // namespace

LoadedImages loadedImages;

PeImage *LoadedImages::Find(const void *module)
{
    const auto found =
        std::find_if(images_.begin(), images_.end(), [&](const auto &one) { return one.get() == module; });
    return found == images_.end() ? nullptr : found->get();
}

// The entry is called on a thread of its own: the calling one's stack is in use.
const void *LoadedImages::Load(const std::string &path)
{
    const void *module = nullptr;
    std::thread([&] {
        try {
            images_.push_back(std::make_unique<PeImage>(path, ResolveImport));
            module = images_.back().get();
        } catch (const ImageError &error) {
            std::cerr << path << ": " << error.what() << std::endl;
        }
    }).join();
    return module;
}

bool LoadedImages::Unload(const void *module)
{
    const auto found =
        std::find_if(images_.begin(), images_.end(), [&](const auto &one) { return one.get() == module; });
    if (found == images_.end()) {
        return false;
    }
    std::thread([&] { images_.erase(found); }).join();
    CheckFreedBlocks();
    return true;
}

void LoadedImages::NotifyOfThread(EntryReason reason)
{
    for (const auto &image : images_) {
        image->CallEntry(reason);
    }
}

void AddModuleImports(std::vector<Import> &table)
{
    table.push_back(Failing<&GetModuleHandle, 0>(kCoreDll, "GetModuleHandleW"));
    table.push_back(Failing<&GetProcAddress, 0>(kCoreDll, "GetProcAddressW"));
    table.push_back(Failing<&LoadLibrary, 0>(kCoreDll, "LoadLibraryW"));
    table.push_back(Unfailing<&FreeLibrary>(kCoreDll, "FreeLibrary"));
    table.push_back(Unfailing<&GetModuleFileName>(kCoreDll, "GetModuleFileNameW"));
}

} // namespace pavonix::device
