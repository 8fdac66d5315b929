// pavonix-shop: a small shop to try a client on.
#include "devices.h"
#include "judgement/printable.h"
#include "server.h"
#include "shop_database.h"

#include <CLI/CLI.hpp>

#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>

namespace {

struct Options {
    std::string database = "shop.db";
    std::string host = "127.0.0.1";
    unsigned short port = 8080;
    int maxSkewSeconds = 300;
    std::string serial;
    int userId = 0;
    std::string keyFile;
    std::int64_t balance = 0;
    std::string fault;
};

void Serve(const Options &options)
{
    shop::Database database = shop::OpenShopDatabase(options.database);
    shop::Shop goodsShop(database, std::chrono::seconds(options.maxSkewSeconds));
    shop::Server server({goodsShop, shop::FindFault(options.fault)}, options.host, options.port);
    std::cout << "listening on http://" << server.address() << ':' << server.port() << "/shop/ with database "
              << options.database << std::endl;
    server.Run();
}

void AddDevice(const Options &options)
{
    std::ifstream file(options.keyFile, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const token::PublicKey key = token::ReadPublicKey(text);
    shop::Database database = shop::OpenShopDatabase(options.database);
    shop::RegisterDevice(database, options.serial, options.userId, key, options.balance);
    std::cout << "registered device " << options.serial << ", user " << options.userId << ", a key of "
              << EVP_PKEY_get_bits(key.get()) << " bits, balance " << options.balance << std::endl;
}

// One line a purchase, columns separated by tabs.
void ListPurchases(const Options &options)
{
    shop::Database database = shop::OpenShopDatabase(options.database);
    std::cout << "number\tserial\tuser\ttype\tid\tprice\tbought at\ttitle\n";
    shop::Statement row = database.Query("SELECT number, serial, user_id, type, id, purchase.price, bought_at, title "
                                         "FROM purchase JOIN good USING (type, id) ORDER BY number");
    while (row.Step()) {
        for (int column = 0; column < 8; ++column) {
            std::cout << row.Text(column) << (column < 7 ? '\t' : '\n');
        }
    }
}

void ListFaults()
{
    const auto print = [](const std::string &name, const std::string &download, const std::string &sale,
                          const std::string &refusal, const std::string &does) {
        std::cout << std::left << std::setw(20) << name << std::setw(14) << download << std::setw(14) << sale
                  << std::setw(16) << refusal << does << '\n';
    };
    print("fault", "list, good", "sale", "refusal", "the shop");
    for (const shop::Fault &fault : shop::AllFaults()) {
        print(fault.name, fault.download, fault.sale, fault.refusal, fault.does);
    }
}

std::string CheckFault(const std::string &name)
{
    return shop::FindFault(name) != nullptr
               ? ""
               : "there is no fault " + judgement::Printable(name) + ", pavonix-shop faults lists them";
}

std::string CheckSerial(const std::string &serial)
{
    const bool plain =
        !serial.empty() && std::all_of(serial.begin(), serial.end(), [](char c) { return c > ' ' && c <= '~'; });
    return plain ? "" : "a serial is printable ASCII without blanks";
}

void AddCommands(CLI::App &app, Options &options)
{
    app.fallthrough();
    app.require_subcommand(0, 1);
    app.add_option("--db", options.database, "Database file, made with demonstration goods when missing")
        ->capture_default_str();
    app.add_option("--host", options.host, "Address to listen on")->capture_default_str();
    app.add_option("--port", options.port, "Port to listen on, 0 picks a free one and prints it")
        ->capture_default_str();
    app.add_option("--max-skew", options.maxSkewSeconds, "Seconds by which the clock of a device may be off")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    app.add_option("--fault", options.fault, "Send every reply with this fault; /fault/NAME before a path does it once")
        ->check(CheckFault);

    CLI::App *device = app.add_subcommand("device", "Manage devices")->require_subcommand(1);
    CLI::App *add = device->add_subcommand("add", "Register a device, or give it a new key and balance");
    add->add_option("--serial", options.serial, "The device's serial, its header User-Serial")
        ->check(CheckSerial)
        ->required();
    add->add_option("--user-id", options.userId, "Its user, the header User-ID")->required();
    add->add_option("--public-key", options.keyFile, "File with its public key, XML (RSAKeyValue) or PEM")
        ->check(CLI::ExistingFile)
        ->required();
    add->add_option("--balance", options.balance, "What it can spend, in cents")
        ->check(CLI::NonNegativeNumber)
        ->required();
    add->callback([&options] { AddDevice(options); });
    app.add_subcommand("faults", "List the faults, and what the library makes of each")->callback(ListFaults);
    app.add_subcommand("purchases", "List all purchases")->callback([&options] { ListPurchases(options); });
}

} // namespace

int main(int argc, char **argv)
{
    Options options;
    CLI::App app("A sample goods shop: GET /shop/list and /shop/good, POST /shop/buy.\n"
                 "Without a subcommand it serves until it is interrupted.");
    AddCommands(app, options);
    try {
        app.parse(argc, argv);
        if (app.get_subcommands().empty()) {
            Serve(options);
        }
        return 0;
    } catch (const CLI::ParseError &error) {
        return app.exit(error) == 0 ? 0 : 2;
    } catch (const std::exception &failure) {
        std::cerr << "pavonix-shop: " << failure.what() << std::endl;
        return 1;
    }
}
