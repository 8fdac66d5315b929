#include "stored_file.h"

#include "exit_code.h"
#include "diagnostics/exchange.h"
#include "diagnostics/printable.h"
#include "diagnostics/xml_fault.h"
#include "path.h"
#include "wide_text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace client {

namespace {

constexpr int kLinesShown = 8;
constexpr std::size_t kColumnsShown = 110;
constexpr std::size_t kBytesRead = 4096;
constexpr std::size_t kLongestPath = 259; // bytes, in the library's code page

// Never ends inside a UTF-8 character.
std::string BeginningOf(const std::string &line)
{
    std::size_t length = std::min(line.size(), kColumnsShown);
    while (length > 0 && length < line.size() && (line[length] & 0xC0) == 0x80) {
        --length;
    }
    return diagnostics::PrintableText(line.substr(0, length)) + (length < line.size() ? "..." : "");
}

} // namespace

StoredFile::StoredFile(const std::string &path) : path_(path)
{
    if (path.empty() || path == "-") {
        throw Failure(ExitCode::kUsage, "--out must name a file");
    }
    before_ = StateOf(path.c_str());
    if (before_.kind != FileState::Kind::kNothing && before_.kind != FileState::Kind::kFile) {
        throw Failure(ExitCode::kLocalFailure,
                      path + " is " + (before_.kind == FileState::Kind::kFolder ? "a folder" : "not a regular file") +
                          "; the library cannot store there, or would replace it");
    }
}

bool StoredFile::IsNew() const
{
    const FileState now = StateOf(path_.c_str());
    return now.kind == FileState::Kind::kFile && now != before_;
}

std::uint64_t StoredFile::Size() const
{
    return StateOf(path_.c_str()).size;
}

std::string StoredFile::Fault() const
{
    return diagnostics::XmlFaultOfFile(path_);
}

std::string StoredFile::Beginning() const
{
    std::string text(kBytesRead, '\0');
    std::ifstream file(PathOf(path_), std::ios::binary);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

std::size_t StoredFile::Zeros() const
{
    const std::string text = Beginning().substr(0, diagnostics::kFirstReception);
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\0'));
}

std::string StoredFile::FirstLines() const
{
    const std::string text = Beginning();
    std::string shown;
    std::size_t at = 0;
    for (int line = 0; line < kLinesShown && at < text.size(); ++line) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        shown += (line > 0 ? "\n  | " : "  | ") + BeginningOf(text.substr(at, end - at));
        at = end + 1;
    }
    return shown + (at < Size() ? "\n  | ..." : "");
}

std::string StoredFile::WhyNotStored() const
{
    const std::filesystem::path path = std::filesystem::absolute(PathOf(path_));
    const std::filesystem::path folder = path.parent_path();
    const std::optional<std::size_t> narrow = NarrowLength(TextOf(path));
    if (!narrow) {
        return "its path has letters that code page 1252 lacks";
    }
    if (*narrow > kLongestPath) {
        return "its path has " + std::to_string(*narrow) + " bytes; the library allows at most " +
               std::to_string(kLongestPath);
    }
    std::error_code error;
    if (!std::filesystem::exists(folder, error) && !std::filesystem::exists(folder.parent_path(), error)) {
        return "more than one folder of its path is missing, and the library creates only the last one: " +
               TextOf(folder);
    }
    for (const std::filesystem::path &place : {folder, folder.parent_path()}) {
        if (std::filesystem::exists(place, error)) {
            return WhyNoFileIn(TextOf(place));
        }
    }
    return "it cannot be written";
}

} // namespace client
