// A whole call behind the tap against the model of a call: whatever the profile,
// the address, the target and the reply, with sends and writes that take a part,
// and with allocations and platform calls that fail.
#include "demand.h"
#include "driver/record_bytes.h"
#include "driver/tree.h"
#include "model/drawn_call.h"
#include "model/reply_model.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <pavonix/pavonix.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>

using namespace pavonix;
using namespace pavonix::e2e;

namespace {

constexpr char kTime[] = "2010-3-5 9:7:3.042"; // of the tap's clock

struct Outcome {
    int result = 0;
    std::string request, record;
    Tree tree;
};

Sandbox &TheSandbox()
{
    static Sandbox sandbox;
    return sandbox;
}

int MakeCall(const Scenario &call, const std::u16string &profile, BuyGoodRoomyResult *record)
{
    const std::u16string target = TheSandbox().Path("targets/") + call.target;
    const std::unique_ptr<int[]> words(new int[call.words.size()]); // of just that size
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

Outcome Play(const Scenario &call, int takes, const std::function<void()> &interfere)
{
    const std::string targets = TheSandbox().root() / "targets";
    std::filesystem::remove_all(TheSandbox().root() / "targets");
    std::filesystem::remove(TheSandbox().root() / "profile");
    std::filesystem::create_directory(targets);
    WriteTree(targets, call.before);
    if (call.profile) {
        TheSandbox().Write("profile", *call.profile);
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
    outcome.result = MakeCall(call, TheSandbox().Path("profile"), record.get());
    tap::FailNone();
    tap::UsePeer(nullptr);
    outcome.request = peer.received;
    outcome.record.assign(reinterpret_cast<const char *>(record.get()), sizeof *record);
    outcome.tree = ReadTree(targets);
    return outcome;
}

// The request with its token replaced by the mark, if the token is the right one.
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

void CheckExactly(const Scenario &call, const Outcome &outcome)
{
    Demand(outcome.result == call.result,
           "result " + std::to_string(outcome.result) + ", not " + std::to_string(call.result));
    Demand(WithMark(outcome.request) == call.request.value_or(""),
           "request:\n" + outcome.request + "instead of\n" + call.request.value_or(""));
    const std::string files = Differences(call.after, outcome.tree);
    Demand(files.empty(), files);
    const std::string record = RecordDifference(call.record, outcome.record);
    Demand(record.empty(), record);
}

// With something failing, no file but the target is touched and the result is one
// that the call could have had, or 0.
void CheckLoosely(const Scenario &call, const Outcome &outcome)
{
    const int status = ReplyModel(CutAt(SIZE_MAX, call.pieces)).status;
    Demand(outcome.result == 0 || outcome.result == call.result || outcome.result == status,
           "result of a disturbed call: " + std::to_string(outcome.result));
    std::string target(call.target.begin(), call.target.end());
    std::replace(target.begin(), target.end(), '\\', '/');
    Tree before = call.before, after = outcome.tree;
    for (const char *touched : {target.c_str(), "shop/", "a/b/"}) {
        before.erase(touched);
        after.erase(touched);
    }
    const std::string files = Differences(before, after);
    Demand(files.empty(), files);
}

// A call that reads the whole key and sends nothing: what the library holds between
// calls depends on the last one alone.
tap::Holdings HeldAfterwards()
{
    static const std::u16string profile = TheSandbox().Write("whole", *PlainPurchase().profile);
    const OneGoodRequest request = {};
    tap::Reset();
    Demand(GetOneGoodXml(profile.c_str(), &request, nullptr, 1, u"http:///x", 80) == 0, "an address without a host");
    return tap::Held();
}

void Disturb(std::size_t kind, std::size_t nth)
{
    static const char *const kNames[] = {
        "StartWinsock", "OpenSocket",    "CloseSocket", "ResolveHost",     "ConnectSocket", "SendSocket",
        "FindFirst",    "ReceiveSocket", "FindNext",    "SetSocketOption", "OpenStream",    "CreateFolder",
        "ReadStream",   "RemoveFile",    "WriteStream", "CloseStream",     "WideToBytes",   "BytesToWide"};
    if (kind == 3) {
        tap::FailAlways(kNames[nth % std::size(kNames)]);
    } else {
        tap::FailNth(static_cast<int>(nth) + 1, kind == 2);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const tap::Holdings held = (Play(PlainPurchase(), INT_MAX, [] {}), HeldAfterwards());
    Choices choices(Bytes(data, size));
    const std::size_t disturbance = choices.Below(8), nth = choices.Below(512);
    const Scenario call = DrawCall("drawn", &choices);
    if (disturbance >= 1 && disturbance <= 3) {
        CheckLoosely(call, Play(call, INT_MAX, [&] { Disturb(disturbance, nth); }));
        HeldAfterwards(); // brings the key back
        CheckExactly(call, Play(call, INT_MAX, [] {}));
    } else if (disturbance == 4 && call.request && call.result == 200 && call.function != Export::kBuy) {
        Scenario parted = call;
        parted.request = call.request->substr(0, nth);
        for (auto &[name, content] : parted.after) { // bodies are longer than any other file
            const Receptions writes = BodyWrites(CutAt(SIZE_MAX, call.pieces));
            if (!call.before.contains(name) || call.before.at(name) != content) {
                content.clear();
                for (std::size_t i = 0; i < writes.size(); ++i) {
                    content += writes[i].substr(0, nth);
                    i = writes[i].size() > nth ? writes.size() : i;
                }
            }
        }
        CheckExactly(parted,
                     Play(parted, static_cast<int>(nth), [&] { tap::LimitWrites(static_cast<std::uint32_t>(nth)); }));
    } else {
        CheckExactly(call, Play(call, INT_MAX, [] {}));
    }
    Demand(HeldAfterwards() == held, "something was left behind");
    return 0;
}
