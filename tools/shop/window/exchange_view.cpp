#include "shop/window/exchange_view.h"

#include "diagnostics/head_lines.h"
#include "diagnostics/judge.h"
#include "shop/window/html.h"
#include "shop/window/token_view.h"

namespace shop {

namespace {

std::string Html(std::string_view text)
{
    return shop::Html(std::string(text));
}

std::string RemediesAsHtml(const diagnostics::Rule &rule)
{
    std::string html;
    for (const diagnostics::Remedy &remedy : rule.remedies) {
        html += "<dt>" + Html(remedy.server) + "</dt><dd>" + Html(remedy.advice) + "</dd>";
    }
    return html.empty() ? "" : "<details><summary>What to do</summary><dl>" + html + "</dl></details>";
}

std::string FindingsAsHtml(const diagnostics::Findings &findings)
{
    std::string html;
    for (const diagnostics::Finding &finding : findings) {
        const diagnostics::Rule &rule = *finding.rule;
        html += rule.weight == diagnostics::Weight::kError ? "<li class=\"error\">" : "<li class=\"warning\">";
        html += "<b>" + Html(rule.sentence) + "</b> <code>" + Html(finding.evidence) +
                "</code><br>The device: " + Html(rule.device) + "." + RemediesAsHtml(rule) + "</li>";
    }
    return html.empty() ? "<p>Request and reply are in order.</p>" : "<ul>" + html + "</ul>";
}

std::string HeaderOf(const diagnostics::Exchange &exchange, std::string_view name)
{
    const auto lines = diagnostics::ReadHeadLines(exchange.request);
    const diagnostics::HeadLine *line = diagnostics::FindLine(lines, name);
    return line == nullptr ? "" : std::string(line->value);
}

std::string SummaryAsHtml(const SeenExchange &seen)
{
    std::string html = "<time>" + token::FormatSortable(seen.at).substr(11) + "</time> " + Html(seen.peer) + " <b>" +
                       (seen.asked.empty() ? "(no request)" : Html(seen.asked)) + "</b> <span class=\"status\">" +
                       std::to_string(seen.status) + "</span>";
    if (!seen.code.empty()) {
        html += " <span class=\"code\">" + Html(seen.code) + ": " + Html(seen.message) + "</span>";
    }
    return html + (seen.fault.empty() ? "" : " <span class=\"fault\">fault " + Html(seen.fault) + "</span>");
}

const char *KindOf(const SeenExchange &seen, const diagnostics::Findings &findings)
{
    return seen.status != 200 ? "refused" : diagnostics::FirstError(findings) != nullptr ? "wrong" : "right";
}

} // namespace

std::string ExchangeAsHtml(Database &database, const SeenExchange &seen)
{
    const diagnostics::Exchange &exchange = seen.exchange;
    const diagnostics::Findings findings = diagnostics::Judge(exchange);
    std::string html = std::string("<details class=\"exchange ") + KindOf(seen, findings) + "\"><summary>" +
                       SummaryAsHtml(seen) + "</summary><h3>Judgement</h3>" + FindingsAsHtml(findings);
    if (exchange.call == diagnostics::Call::kPurchase) {
        html += "<h3>Token</h3>" + TokenAsHtml(database, HeaderOf(exchange, "User-Serial"),
                                               HeaderOf(exchange, "User-ID"), HeaderOf(exchange, "User-Cert"), seen.at);
    }
    html += "<h3>Request</h3>" + HtmlOfBytes(exchange.request) + "<h3>Reply</h3>" + HtmlOfBytes(exchange.reply);
    return html + "</details>";
}

} // namespace shop
