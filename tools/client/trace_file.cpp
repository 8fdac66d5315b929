#include "trace_file.h"

#include "diagnostics/printable.h"
#include "path.h"

#include <filesystem>
#include <fstream>
#include <iostream>

namespace client {

namespace {

std::uint64_t LengthOf(const std::string &path)
{
    std::error_code none;
    const std::uintmax_t length = std::filesystem::file_size(PathOf(path), none);
    return none ? 0 : length;
}

} // namespace

TraceFile::TraceFile(const std::string &profile) : path_(profile.empty() ? "" : profile + ".trace.txt")
{
    before_ = path_.empty() ? 0 : LengthOf(path_);
}

void TraceFile::Show() const
{
    if (path_.empty()) {
        return;
    }
    std::ifstream file(PathOf(path_), std::ios::binary);
    if (!file) {
        std::cerr << "warning: the library did not write the trace " << path_ << '\n';
        return;
    }
    // the library truncates a trace that grows too long
    file.seekg(static_cast<std::streamoff>(LengthOf(path_) >= before_ ? before_ : 0));
    for (std::string line; std::getline(file, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        std::cerr << diagnostics::PrintableText(line) << '\n';
    }
}

} // namespace client
