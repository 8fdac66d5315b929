#include "profile_check.h"

#include "diagnostics/printable.h"
#include "path.h"
#include "profile_keys.h"
#include "profile_text.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>

namespace client {

namespace {

// Of keys only the length is shown: one of them is secret.
std::string Shown(const std::string &key, const std::string &value)
{
    return key.ends_with("-Key") ? "(" + std::to_string(value.size()) + " characters)"
                                 : diagnostics::PrintableText(value);
}

} // namespace

ExitCode CheckProfile(const std::string &path)
{
    std::ifstream file(PathOf(path), std::ios::binary);
    if (!file || !std::filesystem::is_regular_file(PathOf(path))) {
        throw Failure(ExitCode::kLocalFailure,
                      path + " is not a readable file; a request would be sent without an identity");
    }
    ProfileText profile = ReadProfileText(std::string(std::istreambuf_iterator<char>(file), {}));
    std::map<int, std::string> keys;
    for (const auto &[key, line] : profile.lines) {
        keys[line] = key;
    }
    for (const auto &[line, key] : keys) {
        std::cout << "line " << line << ": " << key << ": " << Shown(key, profile.values[key]) << '\n';
    }
    for (const std::string &problem : CheckKeys(profile.values["Public-Key"], profile.values["Private-Key"])) {
        profile.problems.push_back(problem);
    }
    for (const std::string &remark : profile.remarks) {
        std::cout << "remark: " << remark << '\n';
    }
    for (const std::string &problem : profile.problems) {
        std::cout << "problem: " << problem << '\n';
    }
    std::cout << (profile.problems.empty() ? std::string(kNoProblems) + "\n" : "");
    return profile.problems.empty() ? ExitCode::kDone : ExitCode::kProfileProblems;
}

} // namespace client
