// A whole call on the tap, compared with the model of a call: any profile, URL, target and
// reply, with partial sends and writes, and with failing allocations and platform calls.
#include "demand.h"
#include "truncated/played_call.h"
#include "driver/tree.h"
#include "model/drawn_call.h"
#include "model/reply_model.h"
#include "support/tap.h"

#include <pavonix/pavonix.h>

#include <algorithm>

using namespace pavonix;
using namespace pavonix::e2e;

namespace {

void CheckExactly(const Scenario &call, const Outcome &outcome)
{
    const std::string difference = Difference(call, outcome);
    Demand(difference.empty(), difference);
}

// With a fault, only the target file may change, the request must not differ, and the result
// must be 0 or one of the call's own.
void CheckLoosely(const Scenario &call, const Outcome &outcome)
{
    const int status = ReplyModel(CutAt(SIZE_MAX, call.pieces)).status;
    Demand(outcome.result == 0 || outcome.result == call.result || outcome.result == status,
           "result of a disturbed call: " + std::to_string(outcome.result));
    const std::string expected = call.request.value_or(""), start = expected.substr(0, expected.find("\r\nAccept"));
    Demand(outcome.request.empty() || outcome.request.starts_with(start), "another request:\n" + outcome.request);
    for (const std::string &made : tap::Calls()) {
        Demand(!made.starts_with("ResolveHost") || made == "ResolveHost(127.0.0.1)", "another host: " + made);
    }
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

// Makes a call that reads the whole key and sends nothing: the memory held between calls
// depends on the last call only.
tap::OpenHandles HeldAfterwards()
{
    static const std::u16string profile = PlayGround().Write("whole", PlainPurchase().profile.value_or(""));
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
    static const tap::OpenHandles held = (Play(PlainPurchase()), HeldAfterwards());
    Choices choices(Bytes(data, size));
    const std::size_t disturbance = choices.Below(8), nth = choices.Below(512);
    const Scenario call = DrawCall("drawn", &choices);
    if (disturbance >= 1 && disturbance <= 3) {
        CheckLoosely(call, Play(call, INT_MAX, [&] { Disturb(disturbance, nth); }));
        HeldAfterwards(); // restores the key
        CheckExactly(call, Play(call));
    } else if (disturbance == 4 && call.request && call.result == 200 && call.function != Export::kBuy) {
        Scenario parted = call;
        parted.request = call.request->substr(0, nth);
        for (auto &[name, content] : parted.after) { // the one that differs is the body
            const Receptions writes = BodyWrites(CutAt(SIZE_MAX, call.pieces));
            if (!call.before.contains(name) || call.before.at(name) != content) {
                content.clear();
                for (std::size_t i = 0; i < writes.size(); ++i) {
                    content += writes[i].substr(0, nth);
                    i = writes[i].size() > nth ? writes.size() : i;
                }
            }
        }
        CheckExactly(parted, Play(parted, static_cast<int>(nth),
                                  [&] { tap::TheState().writeLimit = static_cast<std::uint32_t>(nth); }));
    } else {
        CheckExactly(call, Play(call));
    }
    Demand(HeldAfterwards() == held, "resources were leaked");
    return 0;
}
