#include "command_line.h"

#include "devices.h"
#include "diagnostics/printable.h"
#include "shop/faults/fault_table.h"
#include "shop/admin/goods_table.h"
#include "shop/admin/lists.h"
#include "shop/database/schema.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>

namespace shop {

namespace {

std::string ReadFile(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file) {
        throw std::runtime_error(diagnostics::Printable(name) + " cannot be read");
    }
    return text;
}

void AddDevice(const Options &options)
{
    const token::PublicKey key = token::ReadPublicKey(ReadFile(options.keyFile));
    Database database = OpenShopDatabase(options.database);
    RegisterDevice(database, options.serial, options.userId, key, options.balance);
    std::cout << "registered device " << options.serial << ", user " << options.userId << ", a key of "
              << token::ModulusBits(key) << " bits, balance " << options.balance << std::endl;
}

void RemoveDeviceAsked(const Options &options)
{
    Database database = OpenShopDatabase(options.database);
    RemoveDevice(database, options.serial, options.userId, options.withPurchases);
    std::cout << "removed device " << options.serial << ", user " << options.userId << std::endl;
}

void TopUp(const Options &options)
{
    Database database = OpenShopDatabase(options.database);
    const Int64 balance = TopUpDevice(database, options.serial, options.userId, options.amount);
    std::cout << "device " << options.serial << ", user " << options.userId << ": balance " << balance << std::endl;
}

void Import(const Options &options)
{
    Database database = OpenShopDatabase(options.database);
    try {
        Transaction transaction(database);
        const ImportCount count = ImportGoods(database, ReadFile(options.goodsFile));
        transaction.Commit();
        std::cout << count.added << " goods added, " << count.changed << " changed" << std::endl;
    } catch (const std::exception &failure) {
        throw std::runtime_error(diagnostics::Printable(options.goodsFile) + ": " + failure.what() +
                                 "; nothing was imported");
    }
}

void Export(const Options &options)
{
    Database database = OpenShopDatabase(options.database);
    if (options.goodsFile.empty()) {
        ExportGoods(database, std::cout);
        return;
    }
    std::ofstream file(options.goodsFile, std::ios::binary);
    ExportGoods(database, file);
    file.close();
    if (!file) {
        throw std::runtime_error(diagnostics::Printable(options.goodsFile) + " cannot be written");
    }
}

void CopyRows(const Options &options)
{
    const Int64 rows = CopyDatabase(options.from, options.to);
    std::cout << "copied " << rows << " rows to " << ShownPlace(options.to) << std::endl;
}

void ListFaults()
{
    const auto print = [](const std::string &name, const std::string &download, const std::string &sale,
                          const std::string &refusal, const std::string &does) {
        std::cout << std::left << std::setw(20) << name << std::setw(14) << download << std::setw(14) << sale
                  << std::setw(16) << refusal << does << '\n';
    };
    print("fault", "list, good", "sale", "refusal", "the shop");
    for (const Fault &fault : AllFaults()) {
        print(fault.name, fault.download, fault.sale, fault.refusal, fault.does);
    }
}

std::string CheckFault(const std::string &name)
{
    return FindFault(name) != nullptr
               ? ""
               : "unknown fault " + diagnostics::Printable(name) + "; pavonix-shop faults lists them";
}

std::string CheckSerial(const std::string &serial)
{
    const bool plain =
        !serial.empty() && std::all_of(serial.begin(), serial.end(), [](char c) { return c > ' ' && c <= '~'; });
    return plain ? "" : "a serial is printable ASCII without spaces";
}

CLI::Validator Money()
{
    return CLI::Range(Int64{0}, kMostMoney);
}

CLI::App *AddDeviceCommand(CLI::App *device, Options &options, const char *name, const char *help)
{
    CLI::App *command = device->add_subcommand(name, help);
    command->add_option("--serial", options.serial, "The device's serial, its header User-Serial")
        ->check(CheckSerial)
        ->required();
    command->add_option("--user-id", options.userId, "Its user, the header User-ID")->required();
    return command;
}

void AddDeviceCommands(CLI::App &app, Options &options)
{
    CLI::App *device = app.add_subcommand("device", "Manage devices")->require_subcommand(1);
    CLI::App *add = AddDeviceCommand(device, options, "add", "Register a device, or give it a new key and balance");
    add->add_option("--public-key", options.keyFile, "File with its public key, XML (RSAKeyValue) or PEM")
        ->check(CLI::ExistingFile)
        ->required();
    add->add_option("--balance", options.balance, "What it can spend, in cents")->check(Money())->required();
    add->callback([&options] { AddDevice(options); });

    device->add_subcommand("list", "List all devices, with balances in cents")->callback([&options] {
        Database database = OpenShopDatabase(options.database);
        ListDevices(database, std::cout);
    });
    CLI::App *topUp = AddDeviceCommand(device, options, "top-up", "Add to a device's balance");
    topUp->add_option("--amount", options.amount, "How much, in cents")->check(Money())->required();
    topUp->callback([&options] { TopUp(options); });
    CLI::App *remove = AddDeviceCommand(device, options, "remove", "Remove a device");
    remove->add_flag("--with-purchases", options.withPurchases, "Even if it has purchases, and these too");
    remove->callback([&options] { RemoveDeviceAsked(options); });
}

void AddGoodsCommands(CLI::App &app, Options &options)
{
    CLI::App *goods = app.add_subcommand("goods", "Manage goods")->require_subcommand(1);
    goods->add_subcommand("list", "List all goods, with prices in cents")->callback([&options] {
        Database database = OpenShopDatabase(options.database);
        ListGoods(database, std::cout);
    });
    CLI::App *imported = goods->add_subcommand("import", "Add and change goods from a CSV file, all rows or none");
    imported->add_option("file", options.goodsFile, "Columns as goods export writes them")
        ->check(CLI::ExistingFile)
        ->required();
    imported->callback([&options] { Import(options); });
    CLI::App *exported = goods->add_subcommand("export", "Write all goods as CSV");
    exported->add_option("file", options.goodsFile, "The file to write, instead of standard output");
    exported->callback([&options] { Export(options); });
}

void AddDatabaseCommands(CLI::App &app, Options &options)
{
    CLI::App *database = app.add_subcommand("db", "Manage the database")->require_subcommand(1);
    database->add_subcommand("create", "Make the tables without goods for demonstration")->callback([&options] {
        (void)OpenShopDatabase(options.database, FirstGoods::kNone);
    });
    database->add_subcommand("upgrade", "Upgrade a database that an older version made")->callback([&options] {
        const std::string done = UpgradeDatabase(options.database);
        std::cout << ShownPlace(options.database) << ' ' << done << std::endl;
    });
    CLI::App *copy = database->add_subcommand("copy", "Copy a database, as it is now, into an empty one");
    copy->add_option("from", options.from, "File or URL")->required();
    copy->add_option("to", options.to, "File or URL")->required();
    copy->callback([&options] { CopyRows(options); });
}

void AddServingOptions(CLI::App &app, Options &options)
{
    app.add_option("--host", options.host, "Address or name to listen on")->capture_default_str();
    app.add_option("--port", options.port, "Port to listen on, 0 picks a free one and prints it")
        ->capture_default_str();
    app.add_option("--threads", options.threads, "Threads that receive requests")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    app.add_option("--connections", options.connections,
                   "Connections to the database, each with a thread that makes the replies")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    app.add_option("--keep-alive", options.keepAliveSeconds,
                   "Seconds for which a connection stays open for another request: for a balancer, not for devices")
        ->check(CLI::Range(0, 3600))
        ->capture_default_str();
    app.add_option("--metrics-for", options.watchers, "Addresses besides loopback that get /health and /metrics")
        ->check(CLI::ValidIPV4);
    app.add_option("--max-skew", options.maxSkewSeconds, "Seconds by which the clock of a device may be off")
        ->check(CLI::Range(0, 1'000'000'000))
        ->capture_default_str();
    app.add_option("--fault", options.fault, "Send every reply with this fault; /fault/NAME before a path does it once")
        ->check(CheckFault);
    app.add_flag("--window-for-all", options.windowForAll, "Show the window, the page at /, to other machines too");
}

} // namespace

void AddCommands(CLI::App &app, Options &options)
{
    app.fallthrough();
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", std::string("pavonix-shop ") + SHOP_VERSION);
    app.add_option("--db", options.database,
                   "Database: a file, made with goods for demonstration when missing, or postgresql://USER@HOST/NAME")
        ->capture_default_str();
    AddServingOptions(app, options);
    AddDeviceCommands(app, options);
    AddGoodsCommands(app, options);
    AddDatabaseCommands(app, options);
    CLI::App *purchases = app.add_subcommand("purchases", "List all purchases");
    purchases->add_flag("--csv", options.csv, "As CSV instead of columns separated by tabs");
    purchases->callback([&options] {
        Database database = OpenShopDatabase(options.database);
        ListPurchases(database, options.csv ? ListForm::kCsv : ListForm::kTabs, std::cout);
    });
    app.add_subcommand("faults", "List the faults, and the library's result for each")->callback(ListFaults);
}

} // namespace shop
