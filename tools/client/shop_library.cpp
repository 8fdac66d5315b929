#include "shop_library.h"

#include "exit_code.h"

#include <dlfcn.h>

#include <filesystem>

namespace client {

namespace {

// Beside this program, as in a build folder, or where both were installed; else
// the loader looks for the name.
std::string FindLibrary(bool tracing)
{
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::filesystem::path installed = folder / CLIENT_TO_LIBRARIES;
    const std::filesystem::path places[] = {
        folder / (tracing ? "libpavonix-trace.so" : "libpavonix.so"),
        installed / (tracing ? "pavonix/libpavonix-trace.so" : "libpavonix.so.1"),
    };
    for (const std::filesystem::path &place : places) {
        if (std::filesystem::exists(place)) {
            return place.string();
        }
    }
    return tracing ? "libpavonix-trace.so" : "libpavonix.so.1";
}

template <class Function>
void Find(void *handle, const char *name, Function *function)
{
    *function = reinterpret_cast<Function>(dlsym(handle, name));
    if (*function == nullptr) {
        throw Failure(ExitCode::kLocalFailure, dlerror());
    }
}

} // namespace

ShopLibrary::ShopLibrary(const std::string &file, bool tracing)
    : handle_(dlopen((file.empty() ? FindLibrary(tracing) : file).c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (handle_ == nullptr) {
        throw Failure(ExitCode::kLocalFailure, dlerror());
    }
    Find(handle_, "GetGoodListXml", &getGoodListXml);
    Find(handle_, "GetOneGoodXml", &getOneGoodXml);
    Find(handle_, "GetBuyGood", &getBuyGood);
}

ShopLibrary::~ShopLibrary()
{
    dlclose(handle_);
}

} // namespace client
