#include "stored_file.h"

#include "wide_text.h"

#include <libxml/parser.h>

#include <fstream>
#include <iostream>
#include <iterator>

namespace client {

namespace {

constexpr int kLinesShown = 8;
constexpr std::size_t kColumnsShown = 110;

bool IsWellFormed(const std::string &text)
{
    xmlDoc *document = xmlReadMemory(text.data(), static_cast<int>(text.size()), "stored", nullptr,
                                     XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    xmlFreeDoc(document);
    return document != nullptr;
}

// The line's beginning, not cut inside a character of UTF-8.
std::string Beginning(const std::string &line)
{
    std::size_t length = std::min(line.size(), kColumnsShown);
    while (length > 0 && length < line.size() && (line[length] & 0xC0) == 0x80) {
        --length;
    }
    return Printable(line.substr(0, length)) + (length < line.size() ? "..." : "");
}

void ShowFirstLines(const std::string &text)
{
    std::size_t at = 0;
    for (int line = 0; line < kLinesShown && at < text.size(); ++line) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::cout << "  | " << Beginning(text.substr(at, end - at)) << '\n';
        at = end + 1;
    }
    std::cout << (at < text.size() ? "  | ...\n" : "");
}

} // namespace

StoredFile::Look::Look(const std::string &path)
{
    struct stat found;
    if (stat(path.c_str(), &found) == 0) {
        isFile = S_ISREG(found.st_mode);
        inode = found.st_ino;
        size = found.st_size;
        seconds = found.st_mtim.tv_sec;
        nanoseconds = found.st_mtim.tv_nsec;
    }
}

bool StoredFile::Show() const
{
    const Look now(path_);
    if (!now.isFile || now == before_) {
        std::cout << "status 200, but nothing was stored in " << path_ << ":\n"
                  << "it cannot be written, two folders of its path are missing, or its path has letters that code\n"
                     "page 1252 lacks\n";
        return false;
    }
    std::ifstream file(path_, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const bool whole = IsWellFormed(text);
    std::cout << "status 200: stored " << text.size() << " bytes in " << path_ << '\n';
    ShowFirstLines(text);
    if (!whole) {
        std::cout << "this is not a whole XML document: the reply was cut short, announced no length, did not bring\n"
                     "its first bytes in one segment, or is something else\n";
    }
    return whole;
}

} // namespace client
