// pavonix-shop: the shop, from one desk to several machines.
#include "access_log.h"
#include "command_line.h"
#include "command_line/usage_error.h"
#include "shop/database/schema.h"
#include "server.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace {

void Serve(const shop::Options &options)
{
    (void)shop::OpenShopDatabase(options.database); // reports a bad database before the shop listens
    shop::ShopState state(options.database, std::chrono::seconds(options.maxSkewSeconds));
    shop::Networks networks;
    for (unsigned i = 0; i < options.threads; ++i) {
        networks.emplace_back(1);
    }
    shop::Window window(options.database, options.windowForAll);
    shop::Connections connections(networks.front(), state, options.connections);
    shop::ServerContext context{state, connections, window, shop::FindFault(options.fault)};
    context.keepAlive = std::chrono::seconds(options.keepAliveSeconds);
    for (const std::string &address : options.watchers) {
        context.watchers.insert(boost::asio::ip::make_address(address));
    }
    shop::Server server(networks, context, options.host, options.port);
    std::cout << "listening on http://" << server.address() << ':' << server.port() << "/shop/ with database "
              << shop::ShownPlace(options.database) << std::endl;
    server.Run();
    connections.Join();
}

} // namespace

int main(int argc, char **argv)
{
    try {
        shop::Options options;
        CLI::App app("A goods shop: GET /shop/list and /shop/good, POST /shop/buy.\n"
                     "Without a subcommand it serves until it is interrupted.",
                     "pavonix-shop");
        shop::AddCommands(app, options);
        try {
            app.parse(argc, argv);
        } catch (const CLI::ParseError &error) {
            return command_line::Explain(app, error);
        }
        if (app.get_subcommands().empty()) {
            Serve(options);
        }
        std::cout.flush();
        if (!std::cout) {
            throw std::runtime_error("standard output cannot be written");
        }
        return 0;
    } catch (const soci::soci_error &failure) {
        shop::LogError(shop::MessageOf(failure));
        return 1;
    } catch (const std::exception &failure) {
        std::cerr << "pavonix-shop: " << failure.what() << std::endl;
        return 1;
    }
}
