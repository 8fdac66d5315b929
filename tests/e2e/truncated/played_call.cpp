#include "played_call.h"

#include "driver/record_bytes.h"
#include "driver/tree.h"
#include "model/drawn_call.h"
#include "model/reply_model.h"
#include "support/tap.h"

#include <pavonix/pavonix.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace pavonix::e2e {

namespace {

constexpr char kTime[] = "2010-3-5 9:7:3.042"; // the tap's clock

int MakeCall(const Scenario &call, const std::u16string &profile, BuyGoodRoomyResult *record)
{
    const std::u16string target = PlayGround().Path("targets/") + call.target;
    const std::unique_ptr<int[]> words(new int[call.words.size()]); // exactly this size, for the sanitizers
    std::copy(call.words.begin(), call.words.end(), words.get());
    const void *request = words.get();
    switch (call.function) {
    case Export::kList:
        return GetGoodListXml(profile.c_str(), static_cast<const GoodListRequest *>(request), target.c_str(),
                              call.force, call.url.c_str(), 80);
    case Export::kGood:
        return GetOneGoodXml(profile.c_str(), static_cast<const OneGoodRequest *>(request), target.c_str(), call.force,
                             call.url.c_str(), 80);
    default:
        return GetBuyGood(profile.c_str(), static_cast<const BuyGoodRequest *>(request),
                          reinterpret_cast<BuyGoodResult *>(record), call.url.c_str(), 80);
    }
}

// The request with a valid token replaced by the mark.
std::string WithMark(std::string request)
{
    const std::string name = "User-Cert: ";
    const std::size_t found = request.find(name), at = found + name.size();
    if (found != std::string::npos && request.starts_with("POST")) {
        const std::size_t length = request.find("\r\n", at) - at;
        const std::string token = test::FromBase64(request.substr(at, length));
        if (token.size() == DrawnKey().size() && DrawnKey().Decode(true, RSA_PKCS1_OAEP_PADDING, token) == kTime) {
            request.replace(at, length, "{token}");
        }
    }
    return request;
}

} // namespace

Sandbox &PlayGround()
{
    static Sandbox sandbox;
    return sandbox;
}

Outcome Play(const Scenario &call, int takes, const std::function<void()> &interfere)
{
    const std::string targets = PlayGround().root() / "targets";
    static Tree previous;
    if (previous != call.before) {
        std::filesystem::remove_all(targets);
    }
    std::filesystem::remove(PlayGround().root() / "profile");
    std::filesystem::create_directory(targets);
    WriteTree(targets, call.before);
    if (call.profile) {
        PlayGround().Write("profile", *call.profile);
    }
    tap::Reset();
    tap::ScriptedPeer peer{CutAt(SIZE_MAX, call.pieces)};
    peer.takes = takes;
    tap::UsePeer(&peer);
    tap::UseClock(tap::Clock{{2010, 3, 5, 9, 7, 3}, 1041});
    const auto record = std::make_unique<BuyGoodRoomyResult>();
    std::memset(record.get(), kUntouchedByte, sizeof *record);
    Outcome outcome;
    interfere();
    outcome.result = MakeCall(call, PlayGround().Path("profile"), record.get());
    tap::FailNone();
    tap::UsePeer(nullptr);
    outcome.request = peer.received;
    outcome.record.assign(reinterpret_cast<const char *>(record.get()), sizeof *record);
    outcome.tree = previous = ReadTree(targets);
    return outcome;
}

std::string Difference(const Scenario &call, const Outcome &outcome)
{
    const std::string request = WithMark(outcome.request), expected = call.request.value_or("");
    return (outcome.result == call.result ? "" : "result " + std::to_string(outcome.result) + "\n") +
           (request == expected ? "" : "request:\n" + request + "instead of\n" + expected) +
           Differences(call.after, outcome.tree) +
           (call.function == Export::kBuy ? RecordDifference(call.record, outcome.record) : "");
}

} // namespace pavonix::e2e
