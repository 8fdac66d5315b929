#include "shop_library.h"

#include "exit_code.h"

#include <dlfcn.h>

#include <filesystem>

namespace client {

namespace {

std::string BesideThisProgram(bool tracing)
{
    const char *name = tracing ? "libpavonix-trace.so" : "libpavonix.so";
    return std::filesystem::read_symlink("/proc/self/exe").replace_filename(name).string();
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
    : handle_(dlopen(file.empty() ? BesideThisProgram(tracing).c_str() : file.c_str(), RTLD_NOW | RTLD_LOCAL))
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
