#include "command_line.h"

#include "command_line/usage_error.h"
#include "doctor/doctor_command.h"
#include "doctor/rule_list.h"
#include "downloads.h"
#include "new_profile.h"
#include "profile_check.h"
#include "purchases.h"
#include "watch/watch_command.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace client {

namespace {

// The values of all options. Only those of the given command are used.
struct Options {
    Download list;
    Download good;
    Purchase purchase;
    DoctorOptions doctor;
    WatchOptions watch;
    NewProfile newProfile;
    std::string profile; // to check
};

const CLI::Range kPorts(1, 65535);

void AddCallOptions(CLI::App *command, ShopCall &call)
{
    call.command = command->get_name();
    command
        ->add_option("--url", call.url,
                     "The shop's address for this call, http://host/path without a query; {} in it is replaced by the "
                     "command's name")
        ->envname("PAVONIX_URL")
        ->required();
    command->add_option("--port", call.port, "TCP port to connect to; by default the one in the URL, or 80")
        ->envname("PAVONIX_PORT")
        ->check(kPorts);
    command->add_option("--profile", call.profile, "The device profile")->envname("PAVONIX_PROFILE")->required();
    command->add_option("--timeout", call.seconds, "Give up after this many seconds; the library has no time-out")
        ->envname("PAVONIX_TIMEOUT")
        ->check(CLI::Range(0.001, 86400.0));
    command->add_flag("--trace", call.trace, "Write a trace of the call beside the profile, and show it");
    command->add_flag("--json", call.json, "Print one JSON object");
}

void AddDownloadOptions(CLI::App *command, Download &download)
{
    AddCallOptions(command, download.call);
    command->add_option("--out", download.target, "The file to store the XML in")->required();
    command->add_flag("--force", download.force, "Download and replace the file even if it exists");
}

CLI::App *AddList(CLI::App &app, Download &download)
{
    CLI::App *list = app.add_subcommand("list", "Download one page of the catalogue");
    AddDownloadOptions(list, download);
    download.list.max = 10;
    list->add_option("--type", download.list.type, "Type of goods")->required();
    list->add_option("--category", download.list.category, "Category; 0 means all")->capture_default_str();
    list->add_option("--sort", download.list.sort, "Sort order, a number defined by the shop")->capture_default_str();
    list->add_option("--start", download.list.start, "First item of the page")->capture_default_str();
    list->add_option("--max", download.list.max, "Items on the page")->capture_default_str();
    return list;
}

CLI::App *AddGood(CLI::App &app, Download &download)
{
    CLI::App *good = app.add_subcommand("good", "Download the description of one good");
    AddDownloadOptions(good, download);
    good->add_option("--type", download.good.type, "Type of the good")->required();
    good->add_option("--id", download.good.id, "Id of the good")->required();
    return good;
}

CLI::App *AddBuy(CLI::App &app, Purchase &purchase)
{
    CLI::App *buy = app.add_subcommand("buy", "Buy a good");
    AddCallOptions(buy, purchase.call);
    buy->add_option("--type", purchase.type, "Type of the good")->required();
    buy->add_option("--id", purchase.id, "Id of the good")->required();
    buy->add_flag("--force", purchase.force, "Buy it even if it is already owned");
    return buy;
}

CLI::App *AddDoctor(CLI::App &app, DoctorOptions &options)
{
    CLI::App *doctor = app.add_subcommand("doctor", "Check whether a server is compatible with the devices");
    doctor->add_option("url", options.url, "The address of a download, http://host/path without a query")
        ->envname("PAVONIX_URL")
        ->required();
    doctor->add_option("--port", options.port, "TCP port; by default the one in the URL, or 80")
        ->envname("PAVONIX_PORT")
        ->check(kPorts);
    doctor->add_option("--type", options.type, "Type of goods of the requested page")->capture_default_str();
    doctor->add_option("--good", options.good, "TYPE,ID: download one good instead of a page of the catalogue")
        ->delimiter(',')
        ->expected(2);
    doctor->add_option("--profile", options.profile,
                       "A device profile whose public key is registered in the shop: also try purchases, of a good "
                       "that does not exist");
    doctor->add_option("--buy", options.buy, "TYPE,ID: try purchases of this good, and buy it")
        ->delimiter(',')
        ->expected(2);
    doctor->add_option("--buy-url", options.buyUrl,
                       "The address of purchases; by default the URL with \"buy\" as its last part. If it contains no "
                       "port, the port of the downloads is used");
    doctor
        ->add_option("--tries", options.tries,
                     "Number of downloads; up to ten times as many while no fault is found and two seconds have not "
                     "passed")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    doctor->add_option("--timeout", options.seconds, "Seconds to wait for a connection and for each exchange")
        ->envname("PAVONIX_TIMEOUT")
        ->check(CLI::Range(0.05, 3600.0))
        ->capture_default_str();
    doctor->add_flag("--quiet", options.quiet, "Print only the findings and the verdict");
    doctor->add_flag("--json", options.json, "Print one JSON object");
    return doctor;
}

CLI::App *AddWatch(CLI::App &app, WatchOptions &options)
{
    CLI::App *watch = app.add_subcommand("watch", "Relay between a device and its server; show and diagnose exchanges");
    watch->add_option("--listen", options.port, "Port to listen on for the device; 0 picks a free one")
        ->check(CLI::Range(0, 65535))
        ->required();
    watch->add_option("--to", options.server, "The server, HOST:PORT")->required();
    watch->add_option("--address", options.address, "IPv4 address to listen on")->capture_default_str();
    watch->add_option("--timeout", options.seconds, "End an exchange after this many seconds of silence")
        ->check(CLI::Range(0.05, 3600.0))
        ->capture_default_str();
    watch->add_option("--exchanges", options.exchanges, "Exit after this many exchanges; 0 means never")
        ->check(CLI::Range(0, 1000000))
        ->capture_default_str();
    watch->add_flag("--json", options.json, "Print one JSON object per line for each exchange");
    return watch;
}

CLI::App *AddNewProfile(CLI::App *profile, NewProfile &made)
{
    CLI::App *command = profile->add_subcommand("new", "Generate a key pair and write a profile with it");
    command->add_option("--out", made.file, "The profile to write, readable by its owner only")->required();
    command->add_option("--public-key", made.publicKeyFile,
                        "The file for the public key; by default the profile's name with .pub.xml appended");
    command->add_option("--serial", made.serial, "The device's serial")->required();
    command->add_option("--user-id", made.userId, "The user's id")->required();
    command->add_option("--user-no", made.userNumber, "The user's number; it is never sent")->capture_default_str();
    command->add_option("--user-agent", made.userAgent, "The user agent")->capture_default_str();
    command->add_option("--bits", made.bits, "Size of the key in bits, a multiple of 8; it must fit in a profile line")
        ->check(CLI::Range(512, 16384))
        ->capture_default_str();
    command->add_flag("--force", made.force, "Replace existing files");
    return command;
}

CLI::App *AddProfileCheck(CLI::App *profile, std::string &path)
{
    CLI::App *check = profile->add_subcommand("check", "Show the values of a profile and the problems in it");
    check->add_option("file", path, "The device profile")->required();
    return check;
}

} // namespace

ExitCode RunCommandLine(std::vector<std::string> words)
{
    CLI::App app("Calls a goods shop through the client library and explains the result.", "pavonix");
    app.allow_windows_style_options(false); // a path may begin with a slash
    app.footer(kExitCodeHelp);
    app.set_version_flag("--version", "pavonix " CLIENT_VERSION);
    app.require_subcommand(1);
    Options options;
    ExitCode code = ExitCode::kDone;
    AddList(app, options.list)->callback([&] { code = DownloadList(options.list); });
    AddGood(app, options.good)->callback([&] { code = DownloadGood(options.good); });
    AddBuy(app, options.purchase)->callback([&] { code = Buy(options.purchase); });
    AddDoctor(app, options.doctor)->callback([&] { code = ExamineServer(options.doctor); });
    AddWatch(app, options.watch)->callback([&] { code = WatchExchanges(options.watch); });
    app.add_subcommand("rules", "List everything that the other commands can find at a server")->callback([&] {
        code = ListRules();
    });
    CLI::App *profile = app.add_subcommand("profile", "Make and check device profiles");
    profile->require_subcommand(1);
    AddNewProfile(profile, options.newProfile)->callback([&] { code = options.newProfile.Write(); });
    AddProfileCheck(profile, options.profile)->callback([&] { code = CheckProfile(options.profile); });
    try {
        std::reverse(words.begin(), words.end()); // the parser takes them from the end
        app.parse(std::move(words));
    } catch (const CLI::ParseError &error) {
        return command_line::Explain(app, error) == 0 ? ExitCode::kDone : ExitCode::kUsage;
    }
    return code;
}

} // namespace client
