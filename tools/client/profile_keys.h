// Whether the keys of a profile make tokens that a shop accepts.
#pragma once

#include <string>
#include <vector>

namespace client {

// Imports both keys into the library's engine, as every call does, makes a token
// and opens it. Returns what is wrong in words, the engine's log with it.
[[nodiscard]] std::vector<std::string> CheckKeys(const std::string &publicXml, const std::string &privateXml);

// linux/ opens the token like a shop; windows/ has nothing to open it with.
[[nodiscard]] std::vector<std::string> CheckToken(const std::string &token, const std::string &publicXml);
// What is known when nothing is wrong.
extern const char *const kNoProblems;

} // namespace client
