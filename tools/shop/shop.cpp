#include "shop.h"

#include "errors.h"
#include "replies.h"

#include <boost/beast/http.hpp>

#include <iostream>

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

} // namespace

std::string Shop::Sell(const Request &request)
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
            throw Refusal(kWrongParameter, std::string("needed once is the header ") + name);
        }
    }
    return checkout_.Sell(
        {Field(request, "User-Serial"), Field(request, "User-ID"), Field(request, "User-Cert"), request.body()});
}

std::string Shop::Route(const Request &request)
{
    const std::string target(request.target());
    const std::string path = target.substr(0, target.find('?'));
    const std::string query = target.substr(std::min(path.size() + 1, target.size()));
    if (path == "/shop/list") {
        RequireMethod(request, http::verb::get);
        return catalogue_.List(query);
    }
    if (path == "/shop/good") {
        RequireMethod(request, http::verb::get);
        return catalogue_.Good(query);
    }
    if (path == "/shop/buy") {
        RequireMethod(request, http::verb::post);
        return Sell(request);
    }
    throw Refusal(kUnknownPath);
}

Response Shop::Answer(const Request &request)
{
    try {
        return MakeResponse(http::status::ok, Route(request));
    } catch (const Refusal &refusal) {
        return MakeErrorResponse(refusal.kind(), refusal.what());
    } catch (const std::exception &failure) {
        std::cerr << "pavonix-shop: " << failure.what() << std::endl;
        return MakeErrorResponse(kShopFailure, kShopFailure.text);
    }
}

} // namespace shop
