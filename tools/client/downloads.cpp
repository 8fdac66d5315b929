#include "downloads.h"

#include "interruption.h"
#include "diagnostics/printable.h"
#include "shop_call.h"
#include "stored_file.h"
#include "wide_text.h"

#include <memory>

namespace client {

namespace {

using diagnostics::Finding;

struct Download {
    ShopCall call;
    std::string target;
    bool force = false;
    GoodListRequest list{};
    OneGoodRequest good{};
};

void AddOptions(CLI::App &command, Download &download)
{
    download.call.AddOptions(command);
    command.add_option("--out", download.target, "The file to store the XML in")->required();
    command.add_flag("--force", download.force, "Download even if the file exists, and replace it");
}

ExitCode ExplainKept(const StoredFile &stored, Report *report)
{
    report->Print(stored.path() + " already exists and was kept (1); use --force to download it again");
    if (const std::string fault = stored.Fault(); !fault.empty()) {
        report->PrintError("warning: it is not a complete XML document: " + fault);
        report->json["xml_fault"] = fault;
    }
    return ExitCode::kKept;
}

// What is missing from the file, and why, as far as the exchange shows it.
ExitCode ExplainIncomplete(const Outcome &outcome, const StoredFile &stored, const std::string &fault, Report *report)
{
    const Finding *cause = diagnostics::FirstError(outcome.findings);
    report->PrintError("this is not a complete XML document: " + fault);
    if (const std::size_t zeros = stored.Zeros(); zeros > 0) {
        report->PrintError(std::to_string(zeros) + " zeros replace bytes that were not in the first packet");
        report->json["zeros"] = zeros;
    }
    if (cause != nullptr) {
        report->PrintError("cause: " + std::string(cause->rule->sentence));
        report->json["cause"] = cause->rule->name;
    }
    report->AddFindings(outcome.record.exchange, outcome.findings, cause);
    return outcome.record.timedOut ? ExitCode::kTimeOut : ExitCode::kNothingWhole;
}

ExitCode ExplainStored(const Outcome &outcome, const StoredFile &stored, Report *report)
{
    if (!stored.IsNew()) {
        const std::string reason = stored.WhyNotStored();
        report->PrintError("status 200, but nothing was stored in " + stored.path() + ": " + reason);
        report->json["not_stored"] = reason;
        return ExitCode::kNothingWhole;
    }
    report->Print("status 200: stored " + std::to_string(stored.Size()) + " bytes in " + stored.path());
    report->Print(stored.FirstLines());
    report->json["bytes"] = stored.Size();
    const std::string fault = stored.Fault();
    report->json["whole"] = fault.empty();
    if (!fault.empty()) {
        report->json["xml_fault"] = fault;
        return ExplainIncomplete(outcome, stored, fault, report);
    }
    report->AddWarnings(outcome.record.exchange, outcome.findings);
    return ExitCode::kDone;
}

template <class Function, class Request>
ExitCode Run(const std::string &command, const Download &download, Function ShopLibrary::*function,
             const Request &request)
{
    const StoredFile stored(download.target);
    const WideText profile = download.call.WideProfile();
    const WideText target = ToWidePath(download.target);
    const WideText url = ToWide(download.call.Url());
    const Outcome outcome = [&] {
        const Interruption interruption(stored);
        return download.call.Make(diagnostics::Call::kDownload, [&](const ShopLibrary &library) {
            return (library.*function)(profile.c_str(), &request, target.c_str(), download.force ? 1 : 0, url.c_str(),
                                       download.call.Port());
        });
    }();
    Report report(command, download.call.json);
    report.json["status"] = outcome.status;
    report.json["file"] = download.target;
    if (outcome.status == PAVONIX_OK) {
        return report.End(ExplainStored(outcome, stored, &report));
    }
    return report.End(outcome.WasKept() ? ExplainKept(stored, &report) : ExplainFailure(outcome, &report));
}

} // namespace

void AddDownloadCommands(CLI::App &app, ExitCode *exitCode)
{
    const auto listed = std::make_shared<Download>();
    CLI::App *list = app.add_subcommand("list", "Store one page of the catalogue");
    AddOptions(*list, *listed);
    list->add_option("--type", listed->list.type, "Type of goods")->required();
    list->add_option("--category", listed->list.category, "Category, 0 for all")->capture_default_str();
    list->add_option("--sort", listed->list.sort, "Sort order, a number that the shop defines")->capture_default_str();
    list->add_option("--start", listed->list.start, "First item of the page")->capture_default_str();
    listed->list.max = 10;
    list->add_option("--max", listed->list.max, "Items on the page")->capture_default_str();
    list->callback([=] { *exitCode = Run("list", *listed, &ShopLibrary::getGoodListXml, listed->list); });

    const auto single = std::make_shared<Download>();
    CLI::App *good = app.add_subcommand("good", "Store the description of one good");
    AddOptions(*good, *single);
    good->add_option("--type", single->good.type, "Type of the good")->required();
    good->add_option("--id", single->good.id, "Its id")->required();
    good->callback([=] { *exitCode = Run("good", *single, &ShopLibrary::getOneGoodXml, single->good); });
}

} // namespace client
