// The values that the library reads from a profile, and problems of its text.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace client {

// The library stops reading at a longer line.
inline constexpr std::size_t kLongestProfileLine = 1023;

// In the order in which the library searches a line for them.
inline constexpr const char *kProfileKeys[] = {"User-Agent",  "Public-Key", "Private-Key",
                                               "User-Serial", "User-Id",    "User-No"};

struct ProfileText {
    std::map<std::string, std::string> values; // by key, as the library reads them
    std::map<std::string, int> lines;          // by key, the line number of the value, from 1
    std::vector<std::string> problems;         // probably not intended
    std::vector<std::string> remarks;          // harmless
};

[[nodiscard]] ProfileText ReadProfileText(std::string_view text);

} // namespace client
