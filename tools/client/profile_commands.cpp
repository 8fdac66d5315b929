#include "profile_commands.h"

#include "new_profile.h"
#include "profile_keys.h"
#include "profile_text.h"
#include "wide_text.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>

namespace client {

namespace {

// Keys are shown by their length: nobody reads them, and one is secret.
std::string Shown(const std::string &key, const std::string &value)
{
    return key.ends_with("-Key") ? "(" + std::to_string(value.size()) + " characters)" : Printable(value);
}

ExitCode Check(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file || !std::filesystem::is_regular_file(path)) {
        throw Failure(ExitCode::kLocalFailure,
                      path + " is no file that can be read; a call would go out without an identity");
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
    std::cout << (profile.problems.empty() ? "no problems, a shop that knows the public key accepts its tokens\n" : "");
    return profile.problems.empty() ? ExitCode::kDone : ExitCode::kProfileProblems;
}

void AddNew(CLI::App &profile, ExitCode *exitCode)
{
    const auto made = std::make_shared<NewProfile>();
    CLI::App *command = profile.add_subcommand("new", "Make a key pair and a profile file with it");
    command->add_option("--out", made->file, "The profile file to write, mode 0600")->required();
    command->add_option("--public-key", made->publicKeyFile,
                        "The file for the public key; without it the profile's name with .pub.xml behind it");
    command->add_option("--serial", made->serial, "The device's serial")->required();
    command->add_option("--user-id", made->userId, "The user's id")->required();
    command->add_option("--user-no", made->userNumber, "The user's number; no request sends it")->capture_default_str();
    command->add_option("--user-agent", made->userAgent, "The user agent")->capture_default_str();
    command->add_option("--bits", made->bits, "Size of the key, a multiple of 8; a line of the profile bounds it")
        ->check(CLI::Range(512, 16384))
        ->capture_default_str();
    command->add_flag("--force", made->force, "Replace existing files");
    command->callback([=] { *exitCode = made->Write(); });
}

} // namespace

void AddProfileCommands(CLI::App &app, ExitCode *exitCode)
{
    CLI::App *profile = app.add_subcommand("profile", "Make or check a device profile file");
    profile->require_subcommand(1);
    AddNew(*profile, exitCode);
    const auto path = std::make_shared<std::string>();
    CLI::App *check = profile->add_subcommand("check", "Say what a profile file holds and what is wrong with it");
    check->add_option("file", *path, "The profile file")->required();
    check->callback([=] { *exitCode = Check(*path); });
}

} // namespace client
