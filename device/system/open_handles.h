// The handles and blocks that the DLL has open.
#pragma once

#include <cstdint>
#include <mutex>
#include <set>
#include <string>
#include <utility>

namespace pavonix::device {

// The open handles of one kind.
class Handles {
public:
    void Add(const void *handle)
    {
        const std::lock_guard lock(mutex_);
        open_.insert(handle);
    }
    bool Has(const void *handle) const
    {
        const std::lock_guard lock(mutex_);
        return open_.count(handle) != 0;
    }
    // False for a handle that is not open.
    bool Remove(const void *handle)
    {
        const std::lock_guard lock(mutex_);
        return open_.erase(handle) != 0;
    }
    std::size_t Count() const
    {
        const std::lock_guard lock(mutex_);
        return open_.size();
    }
    // Removes and returns all.
    std::set<const void *> Take()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(open_, {});
    }

private:
    mutable std::mutex mutex_;
    std::set<const void *> open_;
};

struct OpenHandles {
    Handles files, searches, sections, providers, sockets;
    unsigned winsockStarts = 0;     // not yet cleaned up, the application's included
    unsigned applicationStarts = 0; // that the application made for itself
    unsigned heapBytes = 0, heapBlocks = 0;
    unsigned heapPeak = 0; // the most bytes at any time since the last restart

    // "heap=0 blocks=0 peak=0 files=0 searches=0 sections=0 providers=0 sockets=0 winsock=0"
    std::string Text() const;
    // True if nothing is open, as is required after detaching.
    bool Empty() const;
};

extern OpenHandles openHandles;

// Ends the process: the DLL misused a function of the system (freed a block twice, used
// a lock before its initialisation).
[[noreturn]] void Fatal(const std::string &what);

} // namespace pavonix::device
