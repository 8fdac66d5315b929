// The device's request, as observed by the server or a relay.
#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/diagnose.h"
#include "diagnostics/printable.h"
#include "diagnostics/rules.h"

namespace diagnostics {

namespace {

constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";

void DiagnosePurchase(const Exchange &exchange, const std::vector<HeadLine> &lines, Findings *findings)
{
    const HeadLine *token = FindLine(lines, "User-Cert");
    const HeadLine *length = FindLine(lines, "Content-Length");
    const std::size_t headEnd = exchange.request.find("\r\n\r\n");
    if (token == nullptr || token->value.empty()) {
        findings->push_back({&RuleNamed("token-empty"), token == nullptr ? "no such line" : Printable(token->whole)});
    } else if (token->value.find_first_not_of(kBase64) != std::string_view::npos) {
        findings->push_back({&RuleNamed("token-not-base64"), Printable(token->value)});
    }
    if (headEnd == std::string::npos || length == nullptr) {
        return;
    }
    const std::size_t came = exchange.request.size() - headEnd - 4;
    const std::int32_t announced = NumberIn(length->value);
    if (announced < 0 || came < static_cast<std::size_t>(announced)) {
        findings->push_back(
            {&RuleNamed("form-incomplete"), Printable(length->whole) + "; " + std::to_string(came) + " bytes arrived"});
    }
}

} // namespace

Findings DiagnoseRequest(const Exchange &exchange)
{
    Findings findings;
    if (exchange.request.empty()) {
        return findings;
    }
    const std::vector<HeadLine> lines = ReadHeadLines(exchange.request);
    const HeadLine *serial = FindLine(lines, "User-Serial");
    const HeadLine *userId = FindLine(lines, "User-ID");
    if (serial == nullptr || userId == nullptr) {
        findings.push_back({&RuleNamed("not-a-device"), lines.empty() ? "no line" : Printable(lines.front().whole)});
        return findings;
    }
    if (serial->value.empty()) {
        findings.push_back({&RuleNamed("serial-empty"), Printable(serial->whole)});
    }
    if (NumberIn(userId->value) == 0) {
        findings.push_back({&RuleNamed("user-id-zero"), Printable(userId->whole)});
    }
    if (exchange.call == Call::kPurchase) {
        DiagnosePurchase(exchange, lines, &findings);
    }
    return findings;
}

} // namespace diagnostics
