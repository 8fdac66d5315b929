#include "device_key.h"
#include "record_bytes.h"
#include "scripted_server.h"
#include "suite.h"
#include "tree.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>

namespace pavonix::e2e {

namespace {

constexpr char kTokenMark[] = "{token}";

// Replaces the mark by the token of the received request: the text at the same place, up
// to the end of the line.
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
    EXPECT_EQ(row.request.has_value(), seen.connected) << "whether the library connected";
    if (!row.request || row.server != Server::kReplies) {
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

// The file that the tracing build writes; it is shown if the row fails.
class TraceFile {
public:
    explicit TraceFile(const std::string &profile) : path_(profile + ".trace.txt") {}
    ~TraceFile()
    {
        if (exists() && testing::Test::HasFailure()) {
            std::cout << ReadFile(path_) << std::endl;
        }
    }
    TraceFile(const TraceFile &) = delete;
    TraceFile &operator=(const TraceFile &) = delete;

    bool exists() const { return std::filesystem::exists(path_); }

private:
    std::string path_;
};

} // namespace

void RunScenario(const Scenario &row)
{
    const RowFolder folder(TheSuite().scratch);
    const std::string targets = folder.path() + "/targets", profile = folder.path() + "/profile.txt";
    const TraceFile trace(profile);
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
    const std::optional<CallResult> answer = MakeCall({.function = row.function,
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
    EXPECT_EQ(1 + row.profile.has_value() + trace.exists(),
              std::distance(std::filesystem::directory_iterator(folder.path()), std::filesystem::directory_iterator()))
        << "unexpected files";
    if (row.function == Export::kBuy) {
        EXPECT_EQ("", RecordDifference(row.record, answer->record));
    }
}

} // namespace pavonix::e2e
