// Checks who buys, and sells each good once whatever happens at the same time, also on other servers.
#pragma once

#include "shop/database/database.h"
#include "token/token.h"

#include <atomic>
#include <chrono>
#include <map>
#include <mutex>
#include <string>

namespace shop {

// A purchase as the request has it.
struct PurchaseRequest {
    std::string serial; // "User-Serial"
    std::string userId; // "User-ID"
    std::string token;  // "User-Cert"
    std::string form;   // type, id and force
};

// Public keys by their PEM texts: parsing a key takes several times as long as opening a token with it. All
// connections share it.
class KeyCache {
public:
    [[nodiscard]] token::PublicKey Read(const std::string &pem);

private:
    std::mutex mutex_;
    std::map<std::string, token::PublicKey> keys_;
};

// Shared by the connections of a process.
struct CheckoutState {
    explicit CheckoutState(std::chrono::seconds skew) : maxSkew(skew) {}

    std::chrono::seconds maxSkew; // by which a device's clock may be off
    KeyCache keys;
    std::atomic<Int64> tokensDeletedAt = 0;
};

class Checkout {
public:
    Checkout(Database &database, CheckoutState &state);

    // Sells and returns the receipt as XML. The purchase, the new balance and the
    // used token are one transaction, on the disk before this returns. Throws
    // Refusal; a refusal for the good or the balance uses the token up as well,
    // so that it cannot be used again by somebody who saw it.
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
    void DeleteExpiredTokens();
    void UseToken(const token::Token &token);
    Int64 CheckedPrice(const Order &order);
    std::string Book(const Order &order, Int64 price);

    using None = std::tuple<>;
    Database &database_;
    CheckoutState &state_;
    Statement<std::tuple<std::string>, std::string, int> key_;
    Statement<None, Int64> deleteTokens_;
    Statement<None, std::string, Int64> useBlock_;
    Statement<std::tuple<Int64>, std::string, int> balance_;
    Statement<std::tuple<Int64, int>, std::string, int, int, int> priceAndOwned_;
    Statement<None, Int64, std::string, int> pay_;
    Statement<std::tuple<Int64>, std::string, int, int, int, Int64, std::string> book_;
};

} // namespace shop
