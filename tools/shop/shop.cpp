#include "shop.h"

#include "errors.h"
#include "token/time_text.h"
#include "xml_writer.h"

#include <boost/beast/http.hpp>

#include <iostream>

namespace shop {

namespace http = boost::beast::http;

namespace {

// The client gives a message 256 characters, its terminator and the blank before it included.
constexpr std::size_t kLongestMessage = 254;

Response MakeResponse(http::status status, const std::string &body)
{
    Response response(status, 11, body);
    response.set(http::field::server, "pavonix-shop");
    response.set(http::field::content_type, "text/xml; charset=utf-8");
    response.keep_alive(false);
    response.prepare_payload();
    return response;
}

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

Response MakeErrorResponse(const ErrorKind &kind, const std::string &message)
{
    const std::string shown = message.substr(0, kLongestMessage);
    XmlWriter xml;
    xml.Start("error");
    xml.Attribute("code", kind.code);
    xml.Text(shown);
    Response response = MakeResponse(http::int_to_status(static_cast<unsigned>(kind.status)), xml.Finish());
    response.set("X-Error-Code", std::to_string(kind.code));
    response.set("X-Error-Message", shown);
    if (kind.code == kClockOff.code) {
        response.set("X-Server-Timestamp", token::FormatTimeText(token::WallTimeNow()));
    }
    return response;
}

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
    return till_.Sell(
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
