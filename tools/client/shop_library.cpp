#include "shop_library.h"

#include "exit_code.h"

#include <dlfcn.h>

#include <filesystem>

namespace client {

namespace {

// Beside this program, as in the build folder, or else where the system looks.
std::string OwnLibrary(bool tracing)
{
    const char *name = tracing ? "libpavonix-trace.so" : "libpavonix.so";
    const std::filesystem::path beside = std::filesystem::read_symlink("/proc/self/exe").replace_filename(name);
    return std::filesystem::exists(beside) ? beside.string() : tracing ? name : "libpavonix.so.1";
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
    : handle_(dlopen(file.empty() ? OwnLibrary(tracing).c_str() : file.c_str(), RTLD_NOW | RTLD_LOCAL))
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
