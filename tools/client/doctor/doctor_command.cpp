#include "doctor/doctor_command.h"

#include "doctor/doctor.h"
#include "interruption.h"
#include "shop_call.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <memory>

namespace client {

namespace {

struct Options {
    Examination examination;
    std::optional<int> port;
    double seconds = 10;
    std::vector<int> good;
    std::vector<int> buy;
    bool json = false;
    bool quiet = false;
};

// The purchase's path is next to the download's unless --buy-url gives it.
std::string NextTo(const std::string &url)
{
    const std::size_t slash = url.rfind('/');
    return slash == std::string::npos ? url : url.substr(0, slash + 1) + "buy";
}

bool HasPort(const std::string &url)
{
    return PortIn(url, 0) != 0;
}

void Complete(Options *options)
{
    Examination &examination = options->examination;
    if (const std::size_t place = examination.url.find("{}"); place != std::string::npos) {
        examination.buyUrl =
            examination.buyUrl.empty() ? std::string(examination.url).replace(place, 2, "buy") : examination.buyUrl;
        examination.url.replace(place, 2, options->good.empty() ? "list" : "good");
    }
    examination.port = options->port ? *options->port : PortIn(examination.url);
    examination.buyPort = HasPort(examination.buyUrl) ? PortIn(examination.buyUrl) : examination.port;
    examination.buyUrl = examination.buyUrl.empty() ? NextTo(examination.url) : examination.buyUrl;
    examination.patience = std::chrono::milliseconds(static_cast<int>(options->seconds * 1000));
    examination.showSteps = !options->json && !options->quiet && isatty(STDERR_FILENO) != 0;
    if (!options->good.empty()) {
        examination.good = OneGoodRequest{0, 0, options->good[0], options->good[1]};
    }
    if (!options->buy.empty()) {
        examination.buy = {options->buy[0], options->buy[1]};
    }
}

constexpr const char *kAddProfile =
    "purchases: add --profile FILE; register the profile's public key in the shop first (pavonix-shop device add)";
constexpr const char *kAddBuy = "an accepted purchase: add --buy TYPE,ID, which buys that good";

// With n downloads without a fault, one that occurs in 3 of n is missed once in twenty times.
std::string MissedFaults(int downloads)
{
    return "A fault that occurs in fewer than 3 of " + std::to_string(downloads) +
           " downloads may have been missed; --tries examines more.";
}

ExitCode ShowVerdict(const Options &options, const Doctor &doctor, const Diagnosis &diagnosis, Report *report)
{
    const bool downloadsOnly = options.examination.profile.empty();
    const std::string notTested = doctor.hasBought() ? "" : downloadsOnly ? kAddProfile : kAddBuy;
    report->json["downloads"] = diagnosis.downloads();
    report->json["compatible"] = !diagnosis.HasErrors();
    if (diagnosis.HasErrors()) {
        report->Print("This server is not compatible with the devices.");
        return ExitCode::kServerProblems;
    }
    report->json["not_tested"] = notTested;
    report->Print(downloadsOnly        ? "Downloads from this server are compatible with the devices."
                  : doctor.hasBought() ? "This server is compatible with the devices."
                                       : "Downloads and refused purchases are compatible with the devices.");
    if (!notTested.empty()) {
        report->Print("Not tested: " + notTested + ".");
    }
    report->Print(MissedFaults(diagnosis.downloads()));
    return ExitCode::kDone;
}

ExitCode Examine(Options options)
{
    Complete(&options);
    const Examination &examination = options.examination;
    if (examination.buy && examination.profile.empty()) {
        throw Failure(ExitCode::kUsage, "--buy needs --profile");
    }
    Report report("doctor", options.json);
    report.json["url"] = examination.url;
    report.json["port"] = examination.port;
    if (!examination.profile.empty()) {
        report.json["buy_url"] = examination.buyUrl;
        report.json["buy_port"] = examination.buyPort;
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

void AddOptions(CLI::App &doctor, Options &options)
{
    Examination &examination = options.examination;
    doctor.add_option("url", examination.url, "The address of a download, http://host/path without a query")
        ->envname("PAVONIX_URL")
        ->required();
    doctor.add_option("--port", options.port, "TCP port; without it the one in the URL, or 80")
        ->envname("PAVONIX_PORT")
        ->check(CLI::Range(1, 65535));
    examination.list = {0, 0, 1, 0, 0, 0, 10};
    doctor.add_option("--type", examination.list.type, "Type of goods of the requested page")->capture_default_str();
    doctor.add_option("--good", options.good, "TYPE,ID: download one good instead of a page of the catalogue")
        ->delimiter(',')
        ->expected(2);
    doctor.add_option(
        "--profile", examination.profile,
        "A device profile, its public key registered in the shop: also try purchases, of a good that does "
        "not exist");
    doctor.add_option("--buy", options.buy, "TYPE,ID: try the purchases with this good, and buy it")
        ->delimiter(',')
        ->expected(2);
    doctor.add_option(
        "--buy-url", examination.buyUrl,
        "The address of purchases; without it the URL with \"buy\" for its last part. Without a port in it "
        "the port of the downloads");
    doctor
        .add_option("--tries", examination.tries,
                    "How many downloads to examine; up to ten times as many while there is no fault and two "
                    "seconds have not passed")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    doctor.add_option("--timeout", options.seconds, "Seconds to wait for a connection and for each exchange")
        ->envname("PAVONIX_TIMEOUT")
        ->check(CLI::Range(0.05, 3600.0))
        ->capture_default_str();
    doctor.add_flag("--quiet", options.quiet, "Print only what is wrong, and the verdict");
    doctor.add_flag("--json", options.json, "Write one JSON object");
}

} // namespace

void AddDoctorCommand(CLI::App &app, ExitCode *exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App *doctor = app.add_subcommand("doctor", "Examine a server: is it compatible with the devices?");
    AddOptions(*doctor, *options);
    doctor->callback([=] { *exitCode = Examine(*options); });
}

} // namespace client
