// Which files are open, and who keeps others from them.
#pragma once

#include <cstdio>
#include <map>
#include <set>
#include <string>

namespace pavonix::device {

class OpenFiles {
public:
    void Add(std::FILE *stream, const std::string &name) { streams_[stream] = name; }
    void Remove(std::FILE *stream) { streams_.erase(stream); }

    // Another program has the file open, for all to read and for none to write.
    void Hold(const std::string &name) { held_.insert(name); }
    void ReleaseAll() { held_.clear(); }

    bool MayWrite(const std::string &name) const { return held_.count(name) == 0; }
    // No open file can be deleted, whoever has it open.
    bool MayDelete(const std::string &name) const;

private:
    std::map<std::FILE *, std::string> streams_;
    std::set<std::string> held_;
};

extern OpenFiles openFiles;

} // namespace pavonix::device
