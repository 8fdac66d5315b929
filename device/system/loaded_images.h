// The DLLs that a program has loaded.
#pragma once

#include "image/pe_image.h"

#include <list>
#include <memory>
#include <string>

namespace pavonix::device {

class LoadedImages {
public:
    // A handle, null if there is no such DLL; standard error says why.
    const void *Load(const std::string &path);
    // False for a handle that is none.
    bool Unload(const void *module);
    PeImage *Find(const void *module);

    // Tells each that a thread begins, or ends.
    void TellThread(EntryReason reason);

    std::string programPath; // of this machine

private:
    std::list<std::unique_ptr<PeImage>> images_;
};

extern LoadedImages loadedImages;

} // namespace pavonix::device
