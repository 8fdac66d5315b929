#include "support/tap.h"

#include <algorithm>
#include <set>

namespace pavonix::tap {

namespace {

struct Faults {
    int nth = 0;
    bool everAfter = false;
    bool happened = false;
    int seen = 0;
    std::set<std::string> always;
};

Faults faults;
std::vector<std::string> calls;
std::pair<std::string, std::function<void()>> before;

class ResetBeforeEachTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo &) override { Reset(); }
};

[[maybe_unused]] const bool kListening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new ResetBeforeEachTest);
    return true;
}();

bool CountAndDecide()
{
    ++faults.seen;
    const bool fails = faults.nth > 0 && (faults.seen == faults.nth || (faults.everAfter && faults.seen > faults.nth));
    faults.happened = faults.happened || fails;
    return fails;
}

} // namespace

State &TheState()
{
    static State state;
    return state;
}

bool Enter(const char *name, const std::string &detail)
{
    calls.push_back(detail.empty() ? name : name + ("(" + detail + ")"));
    if (before.first == name) {
        before.second();
    }
    return CountAndDecide() || faults.always.count(name) > 0;
}

bool EnterAllocation()
{
    return CountAndDecide();
}

const std::vector<std::string> &Calls()
{
    return calls;
}

int CountOf(const std::string &name)
{
    return static_cast<int>(std::count_if(
        calls.begin(), calls.end(), [&](const std::string &call) { return call.substr(0, call.find('(')) == name; }));
}

void FailNth(int nth, bool everAfter)
{
    faults.nth = nth;
    faults.everAfter = everAfter;
    faults.happened = false;
    faults.seen = 0;
}

void FailAlways(const std::string &name)
{
    faults.always.insert(name);
}

void Before(const std::string &name, const std::function<void()> &action)
{
    before = {name, action};
}

void FailNone()
{
    faults.nth = 0;
    faults.always.clear();
}

bool FaultHappened()
{
    return faults.happened;
}

void Reset()
{
    FailNone();
    calls.clear();
    before = {};
    State &state = TheState();
    state = {.held = state.held, .bytes = state.bytes, .peakBytes = state.bytes};
}

} // namespace pavonix::tap
