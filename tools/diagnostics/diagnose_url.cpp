#include "diagnostics/rules.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/diagnose.h"
#include "diagnostics/printable.h"

#include <algorithm>

namespace diagnostics {

namespace {

constexpr std::size_t kUrlRoom = 256; // in the library, including the terminator
constexpr std::size_t kLongUrl = 200; // leaves room for any query
constexpr std::string_view kShortestQuery = "?type=1&id=1";

bool IsPlain(char letter)
{
    return letter > ' ' && letter < 0x7F;
}

// The first reason why the library would send nothing; null for none.
const Rule *Unusable(std::string_view url, std::string_view host, bool hasPath)
{
    const std::size_t slashes = url.find("//");
    const std::string_view scheme = url.substr(0, slashes == std::string_view::npos ? 0 : slashes + 2);
    if (url.empty()) {
        return &RuleNamed("url-empty");
    }
    if (EqualsInAnyCase(scheme, "https://")) {
        return &RuleNamed("url-https");
    }
    if (!scheme.empty() && !EqualsInAnyCase(scheme, "http://")) {
        return &RuleNamed("url-scheme");
    }
    if (host.empty()) {
        return &RuleNamed("url-no-host");
    }
    if (host.starts_with('[')) {
        return &RuleNamed("url-ipv6");
    }
    return hasPath ? nullptr : &RuleNamed("url-no-path");
}

} // namespace

Findings DiagnoseUrl(std::string_view url, Call call)
{
    Findings findings;
    const auto add = [&](const Rule &rule, std::string evidence) { findings.push_back({&rule, std::move(evidence)}); };
    const std::size_t slashes = url.find("//");
    const std::size_t hostStart = slashes == std::string_view::npos ? 0 : slashes + 2;
    const std::size_t pathStart = std::min(url.find('/', hostStart), url.size());
    const std::string_view host = url.substr(hostStart, pathStart - hostStart);
    const std::string_view path = url.substr(pathStart);
    if (const Rule *rule = Unusable(url, host, !path.empty())) {
        add(*rule, url.empty() ? "no character" : Printable(url));
    }
    const std::size_t query = call == Call::kDownload ? kShortestQuery.size() : 0;
    if (url.size() + query >= kUrlRoom) {
        add(RuleNamed("url-too-long"),
            std::to_string(url.size()) + " characters" + (query > 0 ? " without the query" : ""));
    } else if (url.size() >= kLongUrl && call == Call::kDownload) {
        add(RuleNamed("url-long"), std::to_string(url.size()) + " characters");
    }
    if (path == "/" && call == Call::kPurchase) {
        add(RuleNamed("url-bare-path"), Printable(url));
    }
    if (url.find_first_of("?#") != std::string_view::npos) {
        add(RuleNamed("url-query"), Printable(url.substr(url.find_first_of("?#"))));
    }
    if (!std::all_of(url.begin(), url.end(), IsPlain)) {
        add(RuleNamed("url-characters"), Printable(url));
    }
    return findings;
}

} // namespace diagnostics
