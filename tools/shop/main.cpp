// pavonix-shop: a small shop to try a client on.
#include "command_line.h"
#include "diagnostics/printable.h"
#include "server.h"
#include "shop_database.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace {

void Serve(const shop::Options &options)
{
    shop::Database database = shop::OpenShopDatabase(options.database);
    shop::Shop goodsShop(database, std::chrono::seconds(options.maxSkewSeconds));
    boost::asio::io_context context;
    shop::Window window(context, database, options.windowForAll);
    shop::Server server(context, {goodsShop, window, shop::FindFault(options.fault)}, options.host, options.port);
    std::cout << "listening on http://" << server.address() << ':' << server.port() << "/shop/ with database "
              << diagnostics::Printable(options.database) << std::endl;
    server.Run();
}

// Answers the exit code. A word that is none is behind most errors, whatever the
// parser makes of it.
int PrintError(const CLI::App &app, const CLI::ParseError &error)
{
    const std::vector<std::string> unknown = app.remaining(true);
    if (error.get_exit_code() != 0 && !unknown.empty()) {
        std::cerr << "pavonix-shop: there is no " << diagnostics::Printable(unknown.front())
                  << " here; --help says what there is" << std::endl;
        return 2;
    }
    return app.exit(error) == 0 ? 0 : 2;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        shop::Options options;
        CLI::App app("A sample goods shop: GET /shop/list and /shop/good, POST /shop/buy.\n"
                     "Without a subcommand it serves until it is interrupted.");
        shop::AddCommands(app, options);
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError &error) {
            return PrintError(app, error);
        }
        if (app.get_subcommands().empty()) {
            Serve(options);
        }
        std::cout.flush();
        if (!std::cout) {
            throw std::runtime_error("standard output cannot be written");
        }
        return 0;
    } catch (const std::exception &failure) {
        std::cerr << "pavonix-shop: " << failure.what() << std::endl;
        return 1;
    }
}
