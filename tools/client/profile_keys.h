// Checks whether a shop will accept the tokens that a profile's keys make.
#pragma once

#include <string>
#include <vector>

namespace client {

// Imports both keys into the library's engine, as every call does, makes a token and
// opens it. Returns the problems, with the engine's log.
[[nodiscard]] std::vector<std::string> CheckKeys(const std::string &publicXml, const std::string &privateXml);

// linux/ opens the token as a shop does; windows/ checks nothing.
[[nodiscard]] std::vector<std::string> CheckToken(const std::string &token, const std::string &publicXml);
// What is printed if no problem is found.
extern const char *const kNoProblems;

} // namespace client
