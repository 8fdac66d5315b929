#include "shop_call.h"

#include "path.h"
#include "trace_file.h"
#include "wide_text.h"

#include <unistd.h>

#include <charconv>
#include <fstream>
#include <iostream>

namespace client {

WideText ShopCall::WideProfile() const
{
    if (!std::ifstream(PathOf(profile))) {
        std::cerr << "warning: " << profile << " cannot be read; the request is sent without an identity\n";
    }
    return ToWidePath(profile);
}

Outcome ShopCall::Make(diagnostics::Call kind, const std::function<int(const ShopLibrary &)> &call) const
{
    const TraceFile traced(trace ? profile : "");
    Outcome outcome{PAVONIX_FAILED, CallRecord(kind), {}};
    if (seconds) {
        outcome.record.deadline = CallRecord::Clock::now() + std::chrono::duration_cast<CallRecord::Clock::duration>(
                                                                 std::chrono::duration<double>(*seconds));
    }
    {
        ProgressLine progress(!json && isatty(STDERR_FILENO) != 0);
        outcome.record.progress = &progress;
        const Recording recording(&outcome.record);
        outcome.status = call(ShopLibrary(trace));
        outcome.record.progress = nullptr;
    }
    traced.Show();
    if (outcome.record.timedOut && seconds) {
        outcome.record.exchange.waited = std::chrono::milliseconds(static_cast<std::int64_t>(*seconds * 1000));
    }
    if (!outcome.WasKept()) {
        outcome.findings = outcome.record.Diagnose(Url());
    }
    return outcome;
}

std::string ShopCall::Url() const
{
    const std::size_t place = url.find("{}");
    return place == std::string::npos ? url : std::string(url).replace(place, 2, command);
}

int ShopCall::Port() const
{
    return port ? *port : PortIn(url);
}

int PortIn(const std::string &url, int defaultPort)
{
    const std::size_t scheme = url.find("//");
    const std::size_t host = scheme == std::string::npos ? 0 : scheme + 2;
    const std::size_t end = std::min(url.find('/', host), url.size());
    const std::size_t colon = std::min(url.find(':', host), end);
    int inUrl = defaultPort;
    std::from_chars(url.data() + std::min(colon + 1, end), url.data() + end, inUrl);
    return inUrl;
}

} // namespace client
