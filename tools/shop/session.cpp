#include "session.h"

#include "errors.h"
#include "token/time_text.h"

#include <boost/asio/write.hpp>
#include <boost/beast/http.hpp>

#include <iostream>
#include <sstream>

namespace shop {

namespace beast = boost::beast;
namespace http = beast::http;

namespace {

constexpr std::chrono::seconds kReadTime{30};
constexpr std::chrono::seconds kWriteTime{60};
constexpr std::chrono::seconds kDrainTime{2};
constexpr std::uint64_t kLongestBody = 16 * 1024;

const ErrorKind &KindOfReadError(beast::error_code error)
{
    return error == http::error::body_limit || error == http::error::header_limit ? kRequestTooLarge
                                                                                  : kMalformedRequest;
}

// The log is read on terminals, and a target may hold any byte above ASCII.
std::string Printable(boost::beast::string_view text)
{
    std::string printable(text);
    std::replace_if(
        printable.begin(), printable.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return printable;
}

} // namespace

Session::Session(boost::asio::ip::tcp::socket socket, Shop &shop) : stream_(std::move(socket)), shop_(shop)
{
    parser_.body_limit(kLongestBody);
}

void Session::Start()
{
    stream_.expires_after(kReadTime);
    http::async_read(stream_, buffer_, parser_,
                     [self = shared_from_this()](beast::error_code error, std::size_t) { self->OnRead(error); });
}

void Session::OnRead(beast::error_code error)
{
    if (!error) {
        Send(shop_.Answer(parser_.get()));
    } else if (error == http::error::end_of_stream || !stream_.socket().is_open()) {
        return; // left without a word, or took too long, which closes the connection
    } else {
        const ErrorKind &kind = KindOfReadError(error);
        Send(MakeErrorResponse(kind, kind.text));
    }
}

// The device reads head and first body bytes with one receive of 1024 bytes and
// never asks again for the rest of them: the whole reply is one buffer and one
// write, so that the first segment is as full as it can be.
void Session::Send(const Response &response)
{
    std::ostringstream text;
    text << response;
    reply_ = text.str();
    Log(response);
    beast::error_code ignored;
    stream_.socket().set_option(boost::asio::ip::tcp::no_delay(true), ignored);
    stream_.expires_after(kWriteTime);
    boost::asio::async_write(stream_, boost::asio::buffer(reply_),
                             [self = shared_from_this()](beast::error_code error, std::size_t) {
                                 if (!error) {
                                     self->stream_.socket().shutdown(boost::asio::socket_base::shutdown_send, error);
                                     self->stream_.expires_after(kDrainTime);
                                     self->Drain();
                                 }
                             });
}

// The device sends a line end behind its form that Content-Length does not
// count. Closing with such bytes unread would reset the connection, and the
// reply could be lost with it: so read and drop until the device closes.
void Session::Drain()
{
    stream_.async_read_some(boost::asio::buffer(dropped_),
                            [self = shared_from_this()](beast::error_code error, std::size_t) {
                                if (!error) {
                                    self->Drain();
                                }
                            });
}

void Session::Log(const Response &response) const
{
    beast::error_code error;
    const auto peer = stream_.socket().remote_endpoint(error);
    std::cout << token::FormatTimeText(token::WallTimeNow()) << ' ' << peer.address().to_string() << ' ';
    if (parser_.is_header_done()) {
        std::cout << Printable(parser_.get().method_string()) << ' ' << Printable(parser_.get().target());
    } else {
        std::cout << "(no request)";
    }
    std::cout << ' ' << response.result_int() << ' ' << response.body().size() << " bytes";
    if (response.count("X-Error-Code") != 0) {
        std::cout << ", code " << response["X-Error-Code"] << ": " << response["X-Error-Message"];
    }
    std::cout << std::endl;
}

} // namespace shop
