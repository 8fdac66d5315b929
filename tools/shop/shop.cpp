#include "shop.h"

#include "access_log.h"
#include "errors.h"
#include "replies.h"

#include <boost/beast/http.hpp>

namespace shop {

namespace http = boost::beast::http;

namespace {

std::string Field(const Request &request, boost::beast::string_view name)
{
    return std::string(request[name]);
}

void RequireMethod(const Request &request, http::verb method)
{
    if (request.method() != method) {
        throw Refusal(kWrongMethod, "it is " + std::string(http::to_string(method)));
    }
}

PurchaseRequest ReadPurchase(const Request &request)
{
    if (!request.has_content_length()) {
        throw Refusal(kLengthRequired);
    }
    const std::string type = Field(request, "Content-Type");
    if (!boost::beast::iequals(type.substr(0, type.find(';')), "application/x-www-form-urlencoded")) {
        throw Refusal(kNotAForm);
    }
    for (const char *name : {"User-Serial", "User-ID", "User-Cert"}) {
        if (request.count(name) != 1) {
            throw Refusal(kWrongParameter, std::string("this header is needed once: ") + name);
        }
    }
    return {Field(request, "User-Serial"), Field(request, "User-ID"), Field(request, "User-Cert"), request.body()};
}

} // namespace

Shop::Connection &Shop::Connect()
{
    try {
        return connection_ ? *connection_ : connection_.emplace(state_);
    } catch (const soci::soci_error &failure) {
        state_.metrics.CountDatabaseError();
        LogError(MessageOf(failure));
        throw Refusal(kShopBusy);
    }
}

std::string Shop::Route(const Request &request)
{
    const std::string target(request.target());
    const std::string path = target.substr(0, target.find('?'));
    const std::string query = target.substr(std::min(path.size() + 1, target.size()));
    if (path == "/shop/list") {
        RequireMethod(request, http::verb::get);
        return Connect().catalogue.List(query);
    }
    if (path == "/shop/good") {
        RequireMethod(request, http::verb::get);
        return Connect().catalogue.Good(query);
    }
    if (path == "/shop/buy") {
        RequireMethod(request, http::verb::post);
        return Connect().checkout.Sell(ReadPurchase(request));
    }
    if (path == "/health") {
        RequireMethod(request, http::verb::get);
        (void)Connect().version();
        return "<healthy/>\n";
    }
    throw Refusal(kUnknownPath);
}

// After a restart of the database server each kept connection is broken. Nothing counts before the commit, so the
// request is repeated over a new connection, unless the commit itself failed (CommitFailed is another exception).
std::string Shop::Retried(const Request &request)
{
    const bool kept = connection_.has_value();
    try {
        return Route(request);
    } catch (const soci::soci_error &) {
        if (!kept || connection_->database.IsConnected()) {
            throw;
        }
        state_.metrics.CountDatabaseError();
        connection_.reset();
        return Route(request);
    }
}

Response Shop::Handle(const Request &request)
{
    try {
        return MakeResponse(http::status::ok, Retried(request));
    } catch (const Refusal &refusal) {
        return MakeErrorResponse(refusal.kind(), refusal.what());
    } catch (const soci::soci_error &failure) {
        return Fail(MessageOf(failure));
    } catch (const std::exception &failure) {
        return Fail(failure.what());
    }
}

Response Shop::Fail(const std::string &message)
{
    state_.metrics.CountDatabaseError();
    connection_.reset();
    LogError(message);
    return MakeErrorResponse(kShopFailure, kShopFailure.text);
}

} // namespace shop
