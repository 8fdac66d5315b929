#include "shop/window/exchange_view.h"

#include "diagnostics/exchange_view.h"
#include "diagnostics/head_lines.h"
#include "shop/errors.h"
#include "shop/form_fields.h"
#include "shop/texts.h"
#include "shop/window/token_view.h"

#include <algorithm>
#include <limits>

namespace shop {

namespace {

std::string Html(std::string_view text)
{
    return shop::Html(std::string(text));
}

std::string FixesAsHtml(const std::vector<std::string> &fixes)
{
    std::string html;
    for (const std::string &fix : fixes) {
        html += "<li>" + Html(fix) + "</li>";
    }
    return html.empty() ? "" : "<details><summary>What to do</summary><ul>" + html + "</ul></details>";
}

std::string FindingsAsHtml(const std::vector<diagnostics::FindingView> &findings, bool refused)
{
    std::string html;
    for (const diagnostics::FindingView &finding : findings) {
        html += "<li class=\"" + finding.severity + "\"><b>" + Html(finding.sentence) + "</b> <code>" +
                Html(finding.seen) + "</code><br>The device: " + Html(finding.device) + "." +
                FixesAsHtml(finding.fixes) + "</li>";
    }
    if (html.empty()) {
        return refused ? "<p>The shop refused this. No fault was found in the bytes of request and reply.</p>"
                       : "<p>No fault was found.</p>";
    }
    return "<ul>" + html + "</ul>";
}

std::string MessageAsHtml(const diagnostics::MessageView &message)
{
    std::string html = "<pre>";
    for (const std::string &line : message.head) {
        html += Html(line) + "\n";
    }
    return html + Html(message.body) + "</pre>" +
           (message.bodySize == 0 ? "" : "<p>body: " + std::to_string(message.bodySize) + " bytes</p>");
}

std::string HeaderOf(const diagnostics::Exchange &exchange, std::string_view name)
{
    const auto lines = diagnostics::ReadHeadLines(exchange.request);
    const diagnostics::HeadLine *line = diagnostics::FindLine(lines, name);
    return line == nullptr ? "" : std::string(line->value);
}

// Buyer and good of a purchase; empty if the request does not name them.
std::string PurchaseAsHtml(Database &database, const diagnostics::Exchange &exchange)
{
    const std::string form =
        exchange.request.substr(std::min(exchange.request.find("\r\n\r\n"), exchange.request.size()));
    int type = 0;
    int id = 0;
    try {
        const FormFields fields(form.substr(std::min<std::size_t>(4, form.size()), form.find_last_not_of("\r\n") - 3),
                                {"type", "id", "force"});
        type = fields.Number("type", 1, std::numeric_limits<int>::max());
        id = fields.Number("id", 1, std::numeric_limits<int>::max());
    } catch (const Refusal &) {
        return "";
    }
    const auto title =
        Select<std::string>(database, "SELECT title FROM good WHERE type = :type AND id = :id", type, id);
    return " <q>" + (title.empty() ? "unknown good" : Html(std::get<0>(title[0]))) + "</q> (" + std::to_string(type) +
           "/" + std::to_string(id) + ") for " + Html(HeaderOf(exchange, "User-Serial")) + ", user " +
           Html(HeaderOf(exchange, "User-ID"));
}

std::string SummaryAsHtml(Database &database, const SeenExchange &seen)
{
    std::string html = "<time>" + token::FormatSortable(seen.at).substr(11) + "</time> " + Html(seen.peer) + " <b>" +
                       (seen.asked.empty() ? "(no request)" : Html(seen.asked)) + "</b> <span class=\"status\">" +
                       std::to_string(seen.status) + "</span>";
    if (seen.exchange.call == diagnostics::Call::kPurchase) {
        html += PurchaseAsHtml(database, seen.exchange);
    }
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
    const diagnostics::Findings findings = diagnostics::Diagnose(exchange);
    const diagnostics::ExchangeView view = diagnostics::ViewOf(exchange, findings);
    std::string html = std::string("<details class=\"exchange ") + KindOf(seen, findings) + "\"><summary>" +
                       SummaryAsHtml(database, seen) + "</summary><h3>Diagnosis</h3>" +
                       FindingsAsHtml(view.findings, seen.status != 200);
    if (exchange.call == diagnostics::Call::kPurchase) {
        html += "<h3>Token</h3>" + TokenAsHtml(database, HeaderOf(exchange, "User-Serial"),
                                               HeaderOf(exchange, "User-ID"), HeaderOf(exchange, "User-Cert"), seen.at);
    }
    html += "<h3>Request</h3>" + MessageAsHtml(view.request) + "<h3>Reply</h3>" + MessageAsHtml(view.reply);
    return html + "</details>";
}

} // namespace shop
