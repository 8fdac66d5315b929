// Handles the requests for the shop's paths.
#pragma once

#include "catalogue.h"
#include "checkout.h"
#include "metrics.h"
#include "transmission.h"

#include <optional>

namespace shop {

// Shared by all connections to the database.
struct ShopState {
    ShopState(std::string databasePlace, std::chrono::seconds maxSkew)
        : place(std::move(databasePlace)), checkout(maxSkew)
    {
    }

    std::string place;
    TypeSummaries summaries;
    CheckoutState checkout;
    Metrics metrics;
};

//   GET  /shop/list?type=&category=&sort=&start=&max=   one page of the catalogue
//   GET  /shop/good?type=&id=                           one good
//   POST /shop/buy   form type=&id=&force=              a purchase
//   GET  /health                                        200 if the database can be read
//
// Each has a connection to the database, made at the first request and again after it was lost; used by one thread
// at a time.
class Shop {
public:
    explicit Shop(ShopState &state) : state_(state) {}

    // Errors become error responses.
    [[nodiscard]] Response Handle(const Request &request);

private:
    struct Connection {
        explicit Connection(ShopState &state)
            : database(state.place),
              catalogue(database, state.summaries),
              checkout(database, state.checkout),
              version(database, "SELECT version FROM shop")
        {
        }

        Database database;
        Catalogue catalogue;
        Checkout checkout;
        Statement<std::tuple<int>> version;
    };

    Connection &Connect();
    std::string Route(const Request &request);
    std::string Retried(const Request &request);
    Response Fail(const std::string &message);

    ShopState &state_;
    std::optional<Connection> connection_;
};

} // namespace shop
