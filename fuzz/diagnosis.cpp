// The tools' diagnosis of any exchange: its text is printable, each call that fails has an
// error, and so has each file that differs from the body.
#include "client/doctor/diagnosis.h"
#include "client/doctor/download_points.h"
#include "client/profile_text.h"
#include "demand.h"
#include "diagnostics/device_reading.h"
#include "diagnostics/exchange_view.h"
#include "diagnostics/printable.h"
#include "shop/texts.h"

#include <nlohmann/json.hpp>

#include <algorithm>

using namespace diagnostics;

namespace {

// Four bytes select the call and its end, the size of the first reception, the segments and
// the length of the request; the request and the reply follow.
Exchange ExchangeOf(const std::string &bytes)
{
    const auto byte = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u; };
    const std::string messages = bytes.substr(std::min<std::size_t>(bytes.size(), 4));
    Exchange exchange;
    exchange.call = byte(0) % 2 == 0 ? Call::kDownload : Call::kPurchase;
    exchange.end = static_cast<End>(byte(0) / 2 % 4);
    exchange.waited = std::chrono::milliseconds(exchange.end == End::kTimeOut ? 500 : 0);
    exchange.request = messages.substr(0, std::size_t{byte(3)} * 4);
    exchange.reply = messages.substr(exchange.request.size());
    exchange.firstBytes = byte(1) == 0 ? exchange.reply.size() : std::size_t{byte(1)} * 8;
    exchange.segments = byte(2) % 3;
    exchange.beyond = byte(2) / 3 % 2 == 1 ? 1000 : 0;
    return exchange;
}

void DemandPrintable(const std::string &text)
{
    Demand(std::all_of(text.begin(), text.end(), [](char c) { return (c >= ' ' && c < 0x7F) || c == '\n'; }), text);
}

void DemandRightFindings(const Exchange &exchange, const Findings &findings)
{
    const DeviceReading device(exchange);
    const bool hasError = FirstError(findings) != nullptr;
    Demand(hasError || (device.headIsWhole() && device.status() >= 200), "a call that fails without an error");
    if (exchange.call == Call::kDownload && !hasError) {
        const std::uint64_t body = exchange.reply.size() - device.headLength() + exchange.beyond;
        Demand(device.status() == 200 && device.announced() == body && device.zeros() == 0,
               "a file that is not the body");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string bytes = Bytes(data, size);
    const Exchange exchange = ExchangeOf(bytes);
    const Findings findings = Diagnose(exchange);
    DemandRightFindings(exchange, findings);
    DemandPrintable(AsText(ViewOf(exchange, findings)));

    client::Diagnosis diagnosis;
    for (const auto &[topic, shown] : client::PointsOf(exchange)) {
        DemandPrintable(shown);
        diagnosis.SetExamined(topic, shown);
    }
    diagnosis.AddDownload(findings);
    client::Report report("doctor", true);
    diagnosis.Show(&report, false);
    DemandPrintable(report.json().dump());

    const std::string text = PrintableText(bytes);
    Demand(shop::Html(text).find_first_of("<\"'") == std::string::npos &&
               PrintableText(text).find('\x1b') == std::string::npos,
           "text that is more than text");
    for (const std::string &problem : client::ReadProfileText(bytes).problems) {
        DemandPrintable(problem);
    }
    return 0;
}
