#include "doctor/doctor_command.h"

#include "doctor/doctor.h"
#include "shop_call.h"

#include <CLI/CLI.hpp>

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
};

// The purchase's path stands beside the download's, if nothing else is said.
std::string BesideIt(const std::string &url)
{
    const std::size_t slash = url.rfind('/');
    return slash == std::string::npos ? url : url.substr(0, slash + 1) + "buy";
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
    examination.buyUrl = examination.buyUrl.empty() ? BesideIt(examination.url) : examination.buyUrl;
    examination.patience = std::chrono::milliseconds(static_cast<int>(options->seconds * 1000));
    if (!options->good.empty()) {
        examination.good = OneGoodRequest{0, 0, options->good[0], options->good[1]};
    }
    if (!options->buy.empty()) {
        examination.buy = {options->buy[0], options->buy[1]};
    }
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
        report.Print("purchases are asked for at " + examination.buyUrl);
    }
    Doctor doctor(examination);
    const Diagnosis &diagnosis = doctor.Examine();
    diagnosis.Show(&report);
    report.Print(diagnosis.HasErrors() ? "This server will not do for the devices as it is."
                                       : "No error was found: this server will do for the devices.");
    return report.End(diagnosis.HasErrors() ? ExitCode::kServerProblems : ExitCode::kDone);
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
    doctor.add_option("--type", examination.list.type, "Type of goods of the page that is asked for")
        ->capture_default_str();
    doctor.add_option("--good", options.good, "TYPE,ID: ask for one good instead of a page of the catalogue")
        ->delimiter(',')
        ->expected(2);
    doctor.add_option("--profile", examination.profile,
                      "A device profile: also try purchases, of a good that does not exist");
    doctor.add_option("--buy", options.buy, "TYPE,ID: try the purchases with this good, and buy it")
        ->delimiter(',')
        ->expected(2);
    doctor.add_option("--buy-url", examination.buyUrl,
                      "The address of a purchase; without it the URL with \"buy\" for its last part");
    doctor.add_option("--tries", examination.tries, "Downloads whose first segment must have been seen")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    doctor.add_option("--timeout", options.seconds, "Seconds to wait for a connection and for each exchange")
        ->envname("PAVONIX_TIMEOUT")
        ->check(CLI::Range(0.05, 3600.0))
        ->capture_default_str();
    doctor.add_option("--library", examination.library, "The library to compare with")->envname("PAVONIX_LIBRARY");
    doctor.add_flag("--json", options.json, "Answer with one JSON object");
}

} // namespace

void AddDoctorCommand(CLI::App &app, ExitCode *exitCode)
{
    const auto options = std::make_shared<Options>();
    CLI::App *doctor = app.add_subcommand("doctor", "Examine a server: will it do for these devices?");
    AddOptions(*doctor, *options);
    doctor->callback([=] { *exitCode = Examine(*options); });
}

} // namespace client
