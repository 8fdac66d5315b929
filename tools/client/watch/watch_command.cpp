#include "watch/watch_command.h"

#include "diagnostics/device_reading.h"
#include "system.h"
#include "watch/exchange_view.h"
#include "watch/relay.h"
#include "wire/segments.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <iostream>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>

namespace client {

namespace {

constexpr int kMostAtOnce = 64;

struct Options {
    int listen = 0;
    std::string address = "0.0.0.0";
    std::string to;
    double seconds = 60;
    int exchanges = 0;
};

Address ServerOf(const std::string &to)
{
    const std::size_t colon = to.rfind(':');
    int port = 0;
    const char *const end = to.data() + to.size();
    if (colon == std::string::npos || std::from_chars(to.data() + colon + 1, end, port).ptr != end || port < 1 ||
        port > 65535) {
        throw Failure(ExitCode::kUsage, "--to must be HOST:PORT");
    }
    Address address;
    const diagnostics::Findings unknown = LookUp(to.substr(0, colon), port, &address);
    if (!unknown.empty()) {
        throw Failure(ExitCode::kNoConnection, std::string(unknown[0].rule->sentence) + " " + unknown[0].evidence);
    }
    return address;
}

Socket ListenFor(const Options &options)
{
    Address address;
    if (LookUpIpv4(options.address, &address) != 0 || Dotted(address) != options.address) {
        throw Failure(ExitCode::kUsage, "--address must be an IPv4 address");
    }
    address.port = static_cast<std::uint16_t>(options.listen);
    Socket listener = Listen(&address, kMostAtOnce);
    if (listener.get() < 0) {
        throw Failure(ExitCode::kLocalFailure,
                      "port " + std::to_string(options.listen) + ": " + NetworkErrorText(LastSocketError()));
    }
    std::cout << "watching port " << address.port << " for " << options.to << std::endl;
    return listener;
}

std::string TitleOf(int number, const PlainExchange &seen)
{
    const diagnostics::Exchange &exchange = seen.exchange;
    const std::string first = std::to_string(std::min(exchange.firstBytes, exchange.reply.size()));
    const std::string segments = !seen.sawFirstSegment    ? "segments not told apart"
                                 : exchange.segments == 0 ? first + " of them in the first reception"
                                                          : first + " of them at first";
    return "exchange " + std::to_string(number) + ": status " +
           std::to_string(diagnostics::DeviceReading(exchange).status()) + ", " +
           std::to_string(exchange.reply.size() + exchange.beyond) + " bytes, " + segments + ", after " +
           std::to_string(exchange.firstByteAfter.count()) + " ms";
}

class Watch {
public:
    explicit Watch(const Options &options) : options_(options), server_(ServerOf(options.to)) {}

    void Run();

private:
    void Carry(Socket device);

    const Options &options_;
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
        Socket device = Accept(listener.get());
        if (device.get() < 0) {
            free_.release();
            continue;
        }
        ++taken;
        std::thread([this, taken_ = std::move(device)]() mutable {
            Carry(std::move(taken_));
            free_.release();
        }).detach();
    }
    for (int i = 0; i < kMostAtOnce; ++i) {
        free_.acquire(); // until the last one is over
    }
}

void Watch::Carry(Socket device)
{
    Relay relay(std::move(device), server_, std::chrono::milliseconds(static_cast<int>(options_.seconds * 1000)));
    relay.Run();
    PlainExchange seen = relay.seen();
    seen.exchange.call =
        seen.exchange.request.starts_with("POST ") ? diagnostics::Call::kPurchase : diagnostics::Call::kDownload;
    const diagnostics::Findings findings =
        seen.noConnection.empty() ? diagnostics::Judge(seen.exchange) : seen.noConnection;
    const std::lock_guard<std::mutex> lock(output_);
    ShowExchange(std::cout, TitleOf(++shown_, seen), seen.exchange, findings);
}

} // namespace

void AddWatchCommand(CLI::App &app, ExitCode *exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App *watch = app.add_subcommand("watch", "Stand between a device and its server and judge what they say");
    watch->add_option("--listen", options->listen, "Port that the device is pointed at; 0 picks a free one")
        ->check(CLI::Range(0, 65535))
        ->required();
    watch->add_option("--to", options->to, "The server, HOST:PORT")->required();
    watch->add_option("--address", options->address, "IPv4 address to listen on")->capture_default_str();
    watch->add_option("--timeout", options->seconds, "End an exchange after so many seconds of silence")
        ->check(CLI::Range(0.05, 3600.0))
        ->capture_default_str();
    watch->add_option("--exchanges", options->exchanges, "End after so many exchanges; 0 never ends")
        ->check(CLI::Range(0, 1000000))
        ->capture_default_str();
    watch->callback([=] {
        Watch(*options).Run();
        *exitCode = ExitCode::kDone;
    });
}

} // namespace client
