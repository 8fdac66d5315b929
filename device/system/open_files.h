// The open files, and the locks on them.
#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <set>
#include <string>

namespace pavonix::device {

// The error for opening a file for writing, or deleting it; 0 if that is allowed.
std::uint32_t ReasonAgainst(std::uint32_t attributes, bool isFree);

class OpenFiles {
public:
    void Add(std::FILE *stream, const std::string &name, bool writes)
    {
        streams_[stream] = name;
        if (writes) {
            written_.insert(stream);
        }
    }
    void Remove(std::FILE *stream)
    {
        streams_.erase(stream);
        written_.erase(stream);
    }

    // Another program has the file open and denies writing to others.
    void Hold(const std::string &name) { held_.insert(name); }
    void Release(const std::string &name) { held_.erase(name); }
    void ReleaseAll() { held_.clear(); }

    // One stream at a time may write to a file.
    bool MayWrite(const std::string &name) const;
    // True if the medium of a stream's file is full.
    bool IsFull(std::FILE *stream) const;
    // An open file cannot be deleted.
    bool MayDelete(const std::string &name) const;

private:
    std::map<std::FILE *, std::string> streams_;
    std::set<std::FILE *> written_;
    std::set<std::string> held_;
};

extern OpenFiles openFiles;

} // namespace pavonix::device
