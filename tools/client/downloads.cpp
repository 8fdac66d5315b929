#include "downloads.h"

#include "interruption.h"
#include "diagnostics/printable.h"
#include "stored_file.h"
#include "wide_text.h"

namespace client {

namespace {

using diagnostics::Finding;

ExitCode ExplainKept(const StoredFile &stored, Report *report)
{
    report->Print(stored.path() + " already exists and was kept (1); use --force to download it again");
    if (const std::string fault = stored.Fault(); !fault.empty()) {
        report->PrintError("warning: it is not a complete XML document: " + fault);
        report->SetText("xml_fault", fault);
    }
    return ExitCode::kKept;
}

// Reports what is missing from the file and, if the exchange shows it, why.
ExitCode ExplainIncomplete(const Outcome &outcome, const StoredFile &stored, const std::string &fault, Report *report)
{
    const Finding *cause = diagnostics::FirstError(outcome.findings);
    report->PrintError("the file is not a complete XML document: " + fault);
    if (const std::size_t zeros = stored.Zeros(); zeros > 0) {
        report->PrintError(std::to_string(zeros) + " bytes of it are zeros because they were not in the first packet");
        report->SetNumber("zeros", static_cast<std::int64_t>(zeros));
    }
    if (cause != nullptr) {
        report->PrintError("cause: " + std::string(cause->rule->sentence));
        report->SetText("cause", cause->rule->name);
    }
    report->AddFindings(outcome.record.exchange, outcome.findings, cause);
    return outcome.record.timedOut ? ExitCode::kTimeOut : ExitCode::kIncompleteFile;
}

ExitCode ExplainStored(const Outcome &outcome, const StoredFile &stored, Report *report)
{
    if (!stored.IsNew()) {
        const std::string reason = stored.WhyNotStored();
        report->PrintError("status 200, but nothing was stored in " + stored.path() + ": " + reason);
        report->SetText("not_stored", reason);
        return ExitCode::kIncompleteFile;
    }
    report->Print("status 200: stored " + std::to_string(stored.Size()) + " bytes in " + stored.path());
    report->Print(stored.FirstLines());
    report->SetNumber("bytes", static_cast<std::int64_t>(stored.Size()));
    const std::string fault = stored.Fault();
    report->SetFlag("whole", fault.empty());
    if (!fault.empty()) {
        report->SetText("xml_fault", fault);
        return ExplainIncomplete(outcome, stored, fault, report);
    }
    report->AddWarnings(outcome.record.exchange, outcome.findings);
    return ExitCode::kDone;
}

template <class Function, class Request>
ExitCode Run(const Download &download, Function ShopLibrary::*function, const Request &request)
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
    Report report(download.call.command, download.call.json);
    report.SetNumber("status", outcome.status);
    report.SetText("file", download.target);
    if (outcome.status == PAVONIX_OK) {
        return report.End(ExplainStored(outcome, stored, &report));
    }
    return report.End(outcome.WasKept() ? ExplainKept(stored, &report) : ExplainFailure(outcome, &report));
}

} // namespace

ExitCode DownloadList(const Download &download)
{
    return Run(download, &ShopLibrary::getGoodListXml, download.list);
}

ExitCode DownloadGood(const Download &download)
{
    return Run(download, &ShopLibrary::getOneGoodXml, download.good);
}

} // namespace client
