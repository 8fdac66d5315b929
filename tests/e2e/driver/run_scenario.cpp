#include "run_scenario.h"

#include "device_key.h"
#include "record_bytes.h"
#include "scripted_server.h"
#include "suite.h"
#include "tree.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace pavonix::e2e {

namespace {

constexpr char kTokenMark[] = "{token}";

// Puts what is at the token's place in the received request, up to the line's
// end, in the place of the mark.
std::string WithToken(const std::string &expected, const std::string &received, std::string *token)
{
    const std::size_t place = expected.find(kTokenMark);
    if (place == std::string::npos || place > received.size()) {
        return expected;
    }
    *token = received.substr(place, received.find("\r\n", place) - place);
    return std::string(expected).replace(place, sizeof kTokenMark - 1, *token);
}

void CheckRequest(const Scenario &row, const Exchange &seen)
{
    EXPECT_EQ(row.request.has_value(), seen.connected) << "whether there was a connection";
    if (!row.request || row.server != Server::kAnswers) {
        return;
    }
    std::string token;
    EXPECT_EQ(WithToken(*row.request, seen.received, &token), seen.received);
    if (row.signer != nullptr) {
        ExpectFreshToken(*row.signer, token);
    } else {
        EXPECT_EQ("", token);
    }
    if (row.ending != Ending::kResets) {
        EXPECT_TRUE(seen.clientClosed) << "the connection was left open";
    }
}

} // namespace

void RunScenario(const Scenario &row)
{
    const RowFolder folder(TheSuite().scratch);
    const std::string targets = folder.path() + "/targets", profile = folder.path() + "/profile.txt";
    std::filesystem::create_directory(targets);
    WriteTree(targets, row.before);
    if (row.profile) {
        WriteFile(profile, *row.profile);
    }
    if (row.freshLibrary) {
        ReloadLibrary();
    }

    ScriptedServer server({row.server, row.pieces, row.ending});
    const Flavour flavour = TheSuite().flavour;
    const std::optional<Answer> answer = MakeCall({.function = row.function,
                                                   .profile = LibraryPath(flavour, profile),
                                                   .words = row.words,
                                                   .target = LibraryPath(flavour, targets + "/") + row.target,
                                                   .force = row.force,
                                                   .url = row.url,
                                                   .port = server.port() + row.portOffset});
    const Exchange seen = server.Finish();

    ASSERT_TRUE(answer);
    EXPECT_EQ(row.result, answer->result);
    CheckRequest(row, seen);
    EXPECT_EQ("", Differences(row.after, ReadTree(targets)));
    std::filesystem::remove(profile + ".trace.txt"); // the tracing build may leave this, and no other file
    EXPECT_EQ(row.profile.has_value() ? 2 : 1,
              std::distance(std::filesystem::directory_iterator(folder.path()), std::filesystem::directory_iterator()))
        << "files beside the targets";
    if (row.function == Export::kBuy) {
        EXPECT_EQ("", RecordDifference(row.record, answer->record));
    }
}

} // namespace pavonix::e2e
