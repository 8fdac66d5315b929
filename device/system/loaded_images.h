// The DLLs that a program has loaded.
#pragma once

#include "image/pe_image.h"

#include <list>
#include <memory>
#include <string>

namespace pavonix::device {

class LoadedImages {
public:
    // Returns a handle, or null with the reason on standard error.
    const void *Load(const std::string &path);
    // False for an invalid handle.
    bool Unload(const void *module);
    PeImage *Find(const void *module);

    // Calls each DLL's entry for a thread that starts or ends.
    void NotifyOfThread(EntryReason reason);

    std::string programPath; // of this machine

private:
    std::list<std::unique_ptr<PeImage>> images_;
};

extern LoadedImages loadedImages;

} // namespace pavonix::device
