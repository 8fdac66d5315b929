// Run under callgrind: counts tokens and the arithmetic alone, each in a dump with its
// name.
#include "bare/crt_arithmetic.h"
#include "harness/key.h"
#include "harness/token.h"

#include <cstdio>
#include <functional>
#include <valgrind/callgrind.h>

namespace pavonix::bench {

namespace {

constexpr int kTokens = 10; // the padding is random, and the arithmetic depends on it a little

bool Count(const std::string &name, const std::function<bool()> &work)
{
    bool done = work(); // without the dynamic linker's share
    CALLGRIND_TOGGLE_COLLECT;
    for (int i = 0; i < kTokens; ++i) {
        done = work() && done;
    }
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    return done;
}

bool CountBoth(int bits)
{
    TokenMaker maker(KeyXml(bits));
    const CrtArithmetic arithmetic(KeyXml(bits));
    const std::string block = PaddedBlock(bits);
    ZtString token;
    const std::string size = std::to_string(bits);
    const bool made = Count("token-" + size, [&] { return maker.Make(&token); });
    return Count("arithmetic-" + size, [&] { return !arithmetic.Apply(block).empty(); }) && made;
}

} // namespace

} // namespace pavonix::bench

int main()
{
    const bool done = pavonix::bench::CountBoth(1024) && pavonix::bench::CountBoth(2048);
    return done ? 0 : 1;
}
