#include "checkout.h"

#include "errors.h"
#include "form_fields.h"
#include "xml_writer.h"

#include <boost/algorithm/hex.hpp>

#include <charconv>
#include <ctime>
#include <limits>
#include <optional>

namespace shop {

namespace {

constexpr int kSmallest = std::numeric_limits<int>::min();
constexpr int kLargest = std::numeric_limits<int>::max();

// How long a used token is remembered beyond the time in which the clock check
// lets it pass: clocks without a time zone are set back by an hour in autumn.
constexpr Int64 kTokenMemorySeconds = 24 * 60 * 60;
constexpr Int64 kDeletionInterval = 60;

constexpr std::size_t kMostKeys = 10'000;

int ParseUserId(const std::string &text)
{
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        throw Refusal(kWrongParameter, "User-ID is a number");
    }
    return value;
}

} // namespace

token::PublicKey KeyCache::Read(const std::string &pem)
{
    {
        const std::scoped_lock lock(mutex_);
        if (const auto found = keys_.find(pem); found != keys_.end()) {
            return found->second;
        }
    }
    token::PublicKey key = token::ReadPublicKey(pem);
    const std::scoped_lock lock(mutex_);
    if (keys_.size() >= kMostKeys) {
        keys_.clear();
    }
    keys_[pem] = key;
    return key;
}

Checkout::Checkout(Database &database, CheckoutState &state)
    : database_(database),
      state_(state),
      key_(database, "SELECT public_key FROM device WHERE serial = :serial AND user_id = :user"),
      deleteTokens_(database, "DELETE FROM token WHERE seen_at < :time"),
      useBlock_(database, "INSERT INTO token (block, seen_at) VALUES (:block, :now) ON CONFLICT DO NOTHING"),
      // Until the commit, other purchases of the device wait here.
      balance_(database, std::string("SELECT balance FROM device WHERE serial = :serial AND user_id = :user") +
                             (database.IsPostgresql() ? " FOR UPDATE" : "")),
      priceAndOwned_(database, "SELECT price, CASE WHEN EXISTS (SELECT 1 FROM purchase WHERE serial = :serial "
                               "AND user_id = :user AND purchase.type = good.type AND purchase.id = good.id) "
                               "THEN 1 ELSE 0 END FROM good WHERE type = :type AND id = :id"),
      pay_(database, "UPDATE device SET balance = balance - :price WHERE serial = :serial AND user_id = :user"),
      book_(database, "INSERT INTO purchase (serial, user_id, type, id, price, bought_at) "
                      "VALUES (:serial, :user, :type, :id, :price, :at) RETURNING number")
{
}

Checkout::Order Checkout::ReadOrder(const PurchaseRequest &request) const
{
    const FormFields form(request.form, {"type", "id", "force"});
    return {request.serial, ParseUserId(request.userId), form.Number("type", 1, kLargest),
            form.Number("id", 1, kLargest), form.Number("force", kSmallest, kLargest) != 0};
}

token::Token Checkout::CheckToken(const Order &order, const std::string &headerValue)
{
    const auto pem = key_(order.serial, order.userId);
    if (pem.empty()) {
        throw Refusal(kUnknownDevice);
    }
    auto token = token::OpenToken(headerValue, state_.keys.Read(std::get<0>(pem[0])));
    if (!token) {
        throw Refusal(kInvalidToken);
    }
    // To the second: the fraction of a device's time text is not of its clock.
    const auto difference = token->time - std::chrono::floor<std::chrono::seconds>(token::WallTimeNow());
    if (std::chrono::abs(difference) > state_.maxSkew) {
        throw Refusal(kClockOff);
    }
    return *token;
}

void Checkout::DeleteExpiredTokens()
{
    const Int64 now = std::time(nullptr);
    Int64 last = state_.tokensDeletedAt;
    if (now - last >= kDeletionInterval && state_.tokensDeletedAt.compare_exchange_strong(last, now)) {
        (void)deleteTokens_(now - 2 * state_.maxSkew.count() - kTokenMemorySeconds);
    }
}

void Checkout::UseToken(const token::Token &token)
{
    for (const token::Bytes &block : token.blocks) {
        std::string digits;
        boost::algorithm::hex_lower(block, std::back_inserter(digits));
        (void)useBlock_(digits, std::time(nullptr));
        if (useBlock_.changed() == 0) {
            throw Refusal(kReplayedToken);
        }
    }
}

// Writes nothing, so that the token alone is written when the purchase is refused.
Int64 Checkout::CheckedPrice(const Order &order)
{
    const auto balance = balance_(order.serial, order.userId);
    if (balance.empty()) {
        throw Refusal(kUnknownDevice); // removed a moment ago
    }
    const auto found = priceAndOwned_(order.serial, order.userId, order.type, order.id);
    if (found.empty()) {
        throw Refusal(kUnknownGood);
    }
    const auto [price, owned] = found[0];
    if (owned != 0 && !order.force) {
        throw Refusal(kAlreadyOwned);
    }
    if (std::get<0>(balance[0]) < price) {
        throw Refusal(kBalanceTooLow);
    }
    return price;
}

std::string Checkout::Book(const Order &order, Int64 price)
{
    (void)pay_(price, order.serial, order.userId);
    const std::string boughtAt = token::FormatSortable(token::WallTimeNow());
    const auto number = book_(order.serial, order.userId, order.type, order.id, price, boughtAt);
    XmlWriter xml;
    xml.Start("purchase");
    xml.Attribute("number", std::get<0>(number.at(0)));
    xml.Attribute("type", order.type);
    xml.Attribute("id", order.id);
    xml.Attribute("price", price);
    xml.Attribute("at", boughtAt);
    return xml.Finish();
}

std::string Checkout::Sell(const PurchaseRequest &request)
{
    const Order order = ReadOrder(request);
    const token::Token token = CheckToken(order, request.token);
    DeleteExpiredTokens();
    Transaction transaction(database_);
    UseToken(token);
    std::string receipt;
    std::optional<Refusal> refusal;
    try {
        receipt = Book(order, CheckedPrice(order));
    } catch (const Refusal &caught) {
        refusal = caught;
    }
    transaction.Commit();
    if (refusal) {
        throw *refusal;
    }
    return receipt;
}

} // namespace shop
