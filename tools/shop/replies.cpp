#include "replies.h"

#include "errors.h"
#include "token/time_text.h"
#include "xml_writer.h"

namespace shop {

namespace http = boost::beast::http;

namespace {

// The client gives a message 256 characters, its terminator and the space before it included.
constexpr std::size_t kLongestMessage = 254;

} // namespace

Response MakeResponse(http::status status, const std::string &body)
{
    Response response(status, 11, body);
    response.set(http::field::server, "pavonix-shop");
    response.set(http::field::content_type, "text/xml; charset=utf-8");
    response.keep_alive(false);
    response.prepare_payload();
    return response;
}

Response MakePlainResponse(const std::string &body)
{
    Response response = MakeResponse(http::status::ok, body);
    response.set(http::field::content_type, "text/plain; version=0.0.4; charset=utf-8");
    return response;
}

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

} // namespace shop
