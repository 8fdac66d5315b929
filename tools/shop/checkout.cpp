#include "checkout.h"

#include "devices.h"
#include "errors.h"
#include "form_fields.h"
#include "xml_writer.h"

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
constexpr std::int64_t kTokenMemorySeconds = 24 * 60 * 60;

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

Checkout::Order Checkout::ReadOrder(const PurchaseRequest &request) const
{
    const FormFields form(request.form, {"type", "id", "force"});
    return {request.serial, ParseUserId(request.userId), form.Number("type", 1, kLargest),
            form.Number("id", 1, kLargest), form.Number("force", kSmallest, kLargest) != 0};
}

token::Token Checkout::CheckToken(const Order &order, const std::string &headerValue)
{
    const token::PublicKey key = FindDeviceKey(database_, order.serial, order.userId);
    if (key == nullptr) {
        throw Refusal(kUnknownDevice);
    }
    auto token = token::OpenToken(headerValue, key);
    if (!token) {
        throw Refusal(kInvalidToken);
    }
    // To the second: the fraction of a device's time text is not of its clock.
    const auto difference = token->time - std::chrono::floor<std::chrono::seconds>(token::WallTimeNow());
    if (std::chrono::abs(difference) > maxSkew_) {
        throw Refusal(kClockOff);
    }
    return *token;
}

void Checkout::UseToken(const token::Token &token)
{
    const std::int64_t now = std::time(nullptr);
    Run(database_, "DELETE FROM token WHERE seen_at < ?", now - 2 * maxSkew_.count() - kTokenMemorySeconds);
    Statement insert(database_, "INSERT OR IGNORE INTO token (ciphertext, seen_at) VALUES (?, ?)");
    insert.bind(1, token.ciphertext.data(), static_cast<int>(token.ciphertext.size()));
    insert.bind(2, now);
    if (insert.exec() == 0) {
        throw Refusal(kReplayedToken);
    }
}

std::int64_t Checkout::CheckedPrice(const Order &order)
{
    Statement good = Query(database_, "SELECT price FROM good WHERE type = ? AND id = ?", order.type, order.id);
    if (!good.executeStep()) {
        throw Refusal(kUnknownGood);
    }
    if (!order.force &&
        Query(database_, "SELECT 1 FROM purchase WHERE serial = ? AND user_id = ? AND type = ? AND id = ?",
              order.serial, order.userId, order.type, order.id)
            .executeStep()) {
        throw Refusal(kAlreadyOwned);
    }
    return good.getColumn(0).getInt64();
}

std::string Checkout::Book(const Order &order, std::int64_t price)
{
    if (Run(database_, "UPDATE device SET balance = balance - ?3 WHERE serial = ?1 AND user_id = ?2 AND balance >= ?3",
            order.serial, order.userId, price) == 0) {
        throw Refusal(kBalanceTooLow);
    }
    const std::string boughtAt = token::FormatSortable(token::WallTimeNow());
    Run(database_, "INSERT INTO purchase (serial, user_id, type, id, price, bought_at) VALUES (?, ?, ?, ?, ?, ?)",
        order.serial, order.userId, order.type, order.id, price, boughtAt);
    XmlWriter xml;
    xml.Start("purchase");
    xml.Attribute("number", database_.getLastInsertRowid());
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
    Transaction transaction(database_);
    UseToken(token);
    std::string receipt;
    std::optional<Refusal> refusal;
    try {
        receipt = Book(order, CheckedPrice(order));
    } catch (const Refusal &caught) {
        refusal = caught; // nothing of the purchase is written at this point, the token is
    }
    transaction.commit();
    if (refusal) {
        throw *refusal;
    }
    return receipt;
}

} // namespace shop
