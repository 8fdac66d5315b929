// A token against the arithmetic that it needs.
#include "bare/crt_arithmetic.h"
#include "harness/compare.h"
#include "harness/key.h"
#include "harness/token.h"

namespace pavonix::bench {

namespace {

constexpr double kNoSlowerBy3Percent = 1.03;

void Token(benchmark::State &state, int bits)
{
    TokenMaker maker(KeyXml(bits));
    const CrtArithmetic arithmetic(KeyXml(bits));
    // without the leading zero, as in a big-endian number
    const std::string block = PaddedBlock(bits).substr(1);
    ZtString token;
    bool made = false;
    std::string cipher;
    Compare(state,
            {[&] { made = maker.Make(&token); }, [&] { return made && token.length() == (bits / 8 + 2) / 3 * 4; }},
            {[&] { cipher = arithmetic.Apply(block); }, [&] { return arithmetic.Undo(cipher) == block; }},
            kNoSlowerBy3Percent);
}

BENCHMARK_CAPTURE(Token, short_key, 1024)->Name("1024-bit token / LibTomMath")->UseManualTime()->Iterations(400);
BENCHMARK_CAPTURE(Token, long_key, 2048)->Name("2048-bit token / LibTomMath")->UseManualTime()->Iterations(100);

} // namespace

} // namespace pavonix::bench
