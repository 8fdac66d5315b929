#include "tree.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace pavonix::e2e {

namespace fs = std::filesystem;

RowFolder::RowFolder(const std::string &parent) : path_(parent + "/row-XXXXXX")
{
    if (mkdtemp(path_.data()) == nullptr) {
        std::abort();
    }
}

RowFolder::~RowFolder()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void WriteFile(const std::string &path, const std::string &content)
{
    std::ofstream(path, std::ios::binary) << content;
}

std::string ReadFile(const std::string &path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

void WriteTree(const std::string &folder, const Tree &tree)
{
    for (const auto &[name, content] : tree) {
        const fs::path path = folder + "/" + name;
        fs::create_directories(path.parent_path());
        if (name.back() != '/') {
            WriteFile(path, content);
        }
    }
}

Tree ReadTree(const std::string &folder)
{
    Tree tree;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().lexically_relative(folder);
        if (!entry.is_directory()) {
            tree[name] = ReadFile(entry.path());
        } else if (fs::is_empty(entry.path())) {
            tree[name + "/"] = "";
        }
    }
    return tree;
}

std::string Differences(const Tree &expected, const Tree &found)
{
    std::ostringstream text;
    for (const auto &[name, content] : expected) {
        const auto other = found.find(name);
        if (other == found.end()) {
            text << name << " is missing\n";
        } else if (other->second != content) {
            const auto place =
                std::mismatch(content.begin(), content.end(), other->second.begin(), other->second.end());
            text << name << " has " << other->second.size() << " bytes, not " << content.size()
                 << "; the first difference is at " << place.first - content.begin() << "\n";
        }
    }
    for (const auto &[name, content] : found) {
        if (!expected.contains(name)) {
            text << name << " is unexpected (" << content.size() << " bytes)\n";
        }
    }
    return text.str();
}

} // namespace pavonix::e2e
