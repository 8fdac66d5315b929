// The till: checks who buys and sells, once, whatever happens meanwhile.
#pragma once

#include "database.h"
#include "token/token.h"

#include <chrono>
#include <string>

namespace shop {

// What a purchase request says, as it stands in the request.
struct PurchaseRequest {
    std::string serial; // "User-Serial"
    std::string userId; // "User-ID"
    std::string token;  // "User-Cert"
    std::string form;   // type, id and force
};

class Checkout {
public:
    // maxSkew: how far the clock of a device may be from the shop's.
    Checkout(Database &database, std::chrono::seconds maxSkew) : database_(database), maxSkew_(maxSkew) {}

    // Sells and answers the receipt as XML. The purchase, the new balance and the
    // used token are one transaction, on the disk before this returns. Throws
    // Refusal; a refusal for the good or the balance uses the token up as well,
    // so that nobody who saw it can try again.
    [[nodiscard]] std::string Sell(const PurchaseRequest &request);

private:
    struct Order {
        std::string serial;
        int userId;
        int type;
        int id;
        bool force;
    };

    Order ReadOrder(const PurchaseRequest &request) const;
    token::Token CheckToken(const Order &order, const std::string &headerValue);
    void UseToken(const token::Token &token);
    std::int64_t CheckedPrice(const Order &order);
    std::string Book(const Order &order, std::int64_t price);

    Database &database_;
    std::chrono::seconds maxSkew_;
};

} // namespace shop
