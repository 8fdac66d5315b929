// What the shop answers at which path.
#pragma once

#include "catalogue.h"
#include "checkout.h"
#include "transmission.h"

namespace shop {

//   GET  /shop/list?type=&category=&sort=&start=&max=   one page of the catalogue
//   GET  /shop/good?type=&id=                           one good
//   POST /shop/buy   form type=&id=&force=              a purchase
class Shop {
public:
    Shop(Database &database, std::chrono::seconds maxSkew) : catalogue_(database), checkout_(database, maxSkew) {}

    // Always answers: what goes wrong becomes an error response.
    [[nodiscard]] Response Answer(const Request &request);

private:
    std::string Route(const Request &request);
    std::string Sell(const Request &request);

    Catalogue catalogue_;
    Checkout checkout_;
};

} // namespace shop
