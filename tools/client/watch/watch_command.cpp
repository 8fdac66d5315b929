#include "watch/watch_command.h"

#include "diagnostics/device_reading.h"
#include "report.h"
#include "system.h"
#include "token/time_text.h"
#include "watch/relay.h"
#include "wire/segments.h"

#include <nlohmann/json.hpp>

#include <charconv>
#include <iostream>
#include <mutex>
#include <semaphore>
#include <thread>

namespace client {

namespace {

constexpr int kMostAtOnce = 64;

Address ServerOf(const std::string &to)
{
    const std::size_t colon = to.rfind(':');
    int port = 0;
    const char *const end = to.data() + to.size();
    if (colon == std::string::npos || std::from_chars(to.data() + colon + 1, end, port).ptr != end || port < 1 ||
        port > 65535) {
        throw Failure(ExitCode::kUsage, "--to must be HOST:PORT");
    }
    if (to.find('/') != std::string::npos) {
        throw Failure(ExitCode::kUsage, "--to must be HOST:PORT, without http:// and without a path");
    }
    Address address{};
    const diagnostics::Findings unknown = LookUp(to.substr(0, colon), port, &address);
    if (!unknown.empty()) {
        throw Failure(ExitCode::kNoConnection, std::string(unknown[0].rule->sentence) + " " + unknown[0].evidence);
    }
    return address;
}

Socket ListenFor(const WatchOptions &options)
{
    Address address = MakeAddress(static_cast<std::uint16_t>(options.port));
    if (LookUpIpv4(options.address, &address) != 0 || Dotted(address) != options.address) {
        throw Failure(ExitCode::kUsage, "--address must be an IPv4 address");
    }
    Socket listener = Listen(&address, kMostAtOnce);
    if (listener.get() < 0) {
        throw Failure(ExitCode::kLocalFailure,
                      "port " + std::to_string(options.port) + ": " + NetworkErrorText(LastSocketError()));
    }
    (options.json ? std::cerr : std::cout)
        << "watching port " << PortOf(address) << " for " << options.server << std::endl;
    return listener;
}

struct Seen {
    int number = 0;
    token::WallTime at = token::WallTimeNow(); // when the device connected
    std::string client;
    diagnostics::Exchange exchange;
    bool sawFirstSegment = false;
};

std::string TitleOf(const Seen &seen)
{
    const diagnostics::Exchange &exchange = seen.exchange;
    const std::string first = std::to_string(std::min(exchange.firstBytes, exchange.reply.size()));
    const std::string segments = !seen.sawFirstSegment    ? "first packet not identified"
                                 : exchange.segments == 0 ? first + " of them in the first receive"
                                                          : first + " of them in the first packet";
    return token::FormatSortable(seen.at) + " " + seen.client + " exchange " + std::to_string(seen.number) +
           ": status " + std::to_string(diagnostics::DeviceReading(exchange).status()) + ", " +
           std::to_string(exchange.reply.size() + exchange.beyond) + " bytes, " + segments + ", after " +
           std::to_string(exchange.firstByteAfter.count()) + " ms";
}

nlohmann::ordered_json ToJson(const diagnostics::MessageView &message)
{
    return {{"head", message.head}, {"body", message.body}, {"body_size", message.bodySize}};
}

nlohmann::ordered_json ToJson(const Seen &seen, const diagnostics::ExchangeView &view)
{
    nlohmann::ordered_json json = {{"exchange", seen.number},
                                   {"time", token::FormatSortable(seen.at)},
                                   {"client", seen.client},
                                   {"status", diagnostics::DeviceReading(seen.exchange).status()},
                                   {"first_packet", nullptr},
                                   {"first_byte_ms", seen.exchange.firstByteAfter.count()},
                                   {"request", ToJson(view.request)},
                                   {"reply", ToJson(view.reply)},
                                   {"findings", nlohmann::ordered_json::array()}};
    if (seen.sawFirstSegment) {
        json["first_packet"] = std::min(seen.exchange.firstBytes, seen.exchange.reply.size());
    }
    for (const diagnostics::FindingView &finding : view.findings) {
        json["findings"].push_back(client::ToJson(finding));
    }
    return json;
}

class Watch {
public:
    explicit Watch(const WatchOptions &options) : options_(options), server_(ServerOf(options.server)) {}

    void Run();

private:
    void Carry(Socket device, Seen seen);

    const WatchOptions &options_;
    Address server_;
    ArrivalTimes times_;
    std::counting_semaphore<kMostAtOnce> free_{kMostAtOnce};
    std::mutex output_;
    int shown_ = 0;
};

void Watch::Run()
{
    const Socket listener = ListenFor(options_);
    for (int taken = 0; options_.exchanges == 0 || taken < options_.exchanges;) {
        free_.acquire();
        Address client{};
        Socket device = Accept(listener.get(), &client);
        if (device.get() < 0) {
            free_.release();
            continue;
        }
        ++taken;
        Seen seen;
        seen.client = Dotted(client) + ":" + std::to_string(PortOf(client));
        std::thread([this, taken_ = std::move(device), seen = std::move(seen)]() mutable {
            Carry(std::move(taken_), std::move(seen));
            free_.release();
        }).detach();
    }
    for (int i = 0; i < kMostAtOnce; ++i) {
        free_.acquire(); // wait for the last one
    }
}

void Watch::Carry(Socket device, Seen seen)
{
    Relay relay(std::move(device), server_, std::chrono::milliseconds(static_cast<int>(options_.seconds * 1000)));
    relay.Run();
    seen.exchange = relay.exchange();
    seen.sawFirstSegment = relay.sawFirstSegment();
    const diagnostics::ExchangeView view = diagnostics::ViewOf(seen.exchange, relay.Diagnose());
    const std::lock_guard<std::mutex> lock(output_);
    seen.number = ++shown_;
    if (options_.json) {
        std::cout << ToJson(seen, view).dump(-1, ' ', true) << std::endl;
    } else {
        std::cout << TitleOf(seen) << '\n' << AsText(view) << std::flush;
    }
}

} // namespace

ExitCode WatchExchanges(const WatchOptions &options)
{
    Watch(options).Run();
    return ExitCode::kDone;
}

} // namespace client
