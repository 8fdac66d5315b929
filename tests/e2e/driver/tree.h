// Writes and reads the files and folders of a row.
#pragma once

#include "scenario.h"

#include <string>

namespace pavonix::e2e {

// A temporary folder for one row, below `parent`; removed with the object.
class RowFolder {
public:
    explicit RowFolder(const std::string &parent);
    ~RowFolder();
    RowFolder(const RowFolder &) = delete;
    RowFolder &operator=(const RowFolder &) = delete;

    const std::string &path() const { return path_; }

private:
    std::string path_;
};

void WriteFile(const std::string &path, const std::string &content);
std::string ReadFile(const std::string &path);
void WriteTree(const std::string &folder, const Tree &tree);
Tree ReadTree(const std::string &folder);

// Describes the differences, one per line; empty if the trees are equal. Contents are
// described by their sizes and the first unequal byte.
std::string Differences(const Tree &expected, const Tree &found);

} // namespace pavonix::e2e
