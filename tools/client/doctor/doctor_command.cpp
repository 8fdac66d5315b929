#include "doctor/doctor_command.h"

#include "doctor/doctor.h"
#include "interruption.h"
#include "shop_call.h"

#include <unistd.h>

namespace client {

namespace {

// Where purchases are sent unless --buy-url says otherwise.
std::string PurchaseUrlBeside(const std::string &url)
{
    const std::size_t slash = url.rfind('/');
    return slash == std::string::npos ? url : url.substr(0, slash + 1) + "buy";
}

bool HasPort(const std::string &url)
{
    return PortIn(url, 0) != 0;
}

Examination ExaminationOf(const DoctorOptions &options)
{
    Examination examination;
    examination.url = options.url;
    examination.buyUrl = options.buyUrl;
    if (const std::size_t place = options.url.find("{}"); place != std::string::npos) {
        examination.url.replace(place, 2, options.good.empty() ? "list" : "good");
        if (examination.buyUrl.empty()) {
            examination.buyUrl = std::string(options.url).replace(place, 2, "buy");
        }
    }
    examination.port = options.port ? *options.port : PortIn(examination.url);
    examination.buyPort = HasPort(examination.buyUrl) ? PortIn(examination.buyUrl) : examination.port;
    if (examination.buyUrl.empty()) {
        examination.buyUrl = PurchaseUrlBeside(examination.url);
    }
    examination.list = {0, 0, options.type, 0, 0, 0, 10};
    if (!options.good.empty()) {
        examination.good = OneGoodRequest{0, 0, options.good[0], options.good[1]};
    }
    examination.profile = options.profile;
    if (!options.buy.empty()) {
        examination.buy = {options.buy[0], options.buy[1]};
    }
    examination.tries = options.tries;
    examination.patience = std::chrono::milliseconds(static_cast<int>(options.seconds * 1000));
    examination.showProgress = !options.json && !options.quiet && isatty(STDERR_FILENO) != 0;
    return examination;
}

constexpr const char *kAddProfile =
    "purchases; use --profile FILE, with its public key registered in the shop (pavonix-shop device add)";
constexpr const char *kAddBuy = "an accepted purchase; use --buy TYPE,ID, which buys that good";

// If all of n downloads are clean, a fault that occurs in 3 of n is missed with a
// probability of 5 %.
std::string MissedFaults(int downloads)
{
    return "A fault that occurs in fewer than 3 of " + std::to_string(downloads) +
           " downloads may have been missed; --tries makes more downloads.";
}

ExitCode ShowVerdict(const DoctorOptions &options, const Doctor &doctor, const Diagnosis &diagnosis, Report *report)
{
    const bool downloadsOnly = options.profile.empty();
    const std::string notTested = doctor.hasBought() ? "" : downloadsOnly ? kAddProfile : kAddBuy;
    report->SetNumber("downloads", diagnosis.downloads());
    report->SetFlag("compatible", !diagnosis.HasErrors());
    if (diagnosis.HasErrors()) {
        report->Print("This server is not compatible with the devices.");
        return ExitCode::kServerProblems;
    }
    report->SetText("not_tested", notTested);
    report->Print(downloadsOnly        ? "Downloads from this server are compatible with the devices."
                  : doctor.hasBought() ? "This server is compatible with the devices."
                                       : "Downloads and refused purchases are compatible with the devices.");
    if (!notTested.empty()) {
        report->Print("Not tested: " + notTested + ".");
    }
    report->Print(MissedFaults(diagnosis.downloads()));
    return ExitCode::kDone;
}

} // namespace

ExitCode ExamineServer(const DoctorOptions &options)
{
    if (!options.buy.empty() && options.profile.empty()) {
        throw Failure(ExitCode::kUsage, "--buy needs --profile");
    }
    const Examination examination = ExaminationOf(options);
    Report report("doctor", options.json);
    report.SetText("url", examination.url);
    report.SetNumber("port", examination.port);
    if (!examination.profile.empty()) {
        report.SetText("buy_url", examination.buyUrl);
        report.SetNumber("buy_port", examination.buyPort);
        report.Print("purchases are sent to " + examination.buyUrl + ", port " + std::to_string(examination.buyPort));
    }
    const StopRequest stop;
    Doctor doctor(examination);
    const Diagnosis &diagnosis = doctor.Examine();
    diagnosis.Show(&report, options.quiet);
    if (StopRequest::IsMade()) {
        report.Print("Interrupted after " + std::to_string(diagnosis.downloads()) + " downloads: no verdict.");
        return report.End(ExitCode::kInterrupted);
    }
    return report.End(ShowVerdict(options, doctor, diagnosis, &report));
}

} // namespace client
