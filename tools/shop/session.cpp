#include "session.h"

#include "access_log.h"
#include "errors.h"
#include "replies.h"
#include "reply_sender.h"

#include <boost/asio/write.hpp>

namespace shop {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;

namespace {

constexpr std::chrono::seconds kReadTime{30};
constexpr std::chrono::seconds kWriteTime{60};
constexpr std::chrono::milliseconds kNoWait{0};
constexpr std::uint64_t kLongestBody = std::uint64_t{16} * 1024;

const ErrorKind &KindOfReadError(beast::error_code error)
{
    return error == http::error::body_limit || error == http::error::header_limit ? kRequestTooLarge
                                                                                  : kMalformedRequest;
}

bool IsForWatchers(const Request &request)
{
    return request.target() == "/health" || request.target() == "/metrics";
}

diagnostics::End EndOf(const Transmission &sent)
{
    switch (sent.end) {
    case Transmission::End::kReset:
        return diagnostics::End::kReset;
    case Transmission::End::kSilence:
        return diagnostics::End::kTimeOut;
    case Transmission::End::kClose:
        break;
    }
    return diagnostics::End::kClosed;
}

} // namespace

Session::Session(asio::ip::tcp::socket socket, ServerContext &context) : stream_(std::move(socket)), context_(context)
{
}

void Session::Start()
{
    beast::error_code ignored;
    peer_ = stream_.socket().remote_endpoint(ignored).address();
    (void)stream_.socket().set_option(asio::ip::tcp::no_delay(true), ignored);
    stream_.expires_after(kReadTime);
    AwaitRequest();
    Read();
}

void Session::AwaitRequest()
{
    parser_ = std::make_unique<http::request_parser<http::string_body>>();
    parser_->body_limit(kLongestBody);
    parser_->eager(true);
    parsed_ = 0;
}

void Session::Read()
{
    stream_.async_read_some(
        asio::buffer(chunk_),
        [self = shared_from_this()](beast::error_code error, std::size_t count) { self->OnRead(error, count); });
}

void Session::OnRead(beast::error_code error, std::size_t count)
{
    const bool ended = error == asio::error::eof;
    if ((error && !ended) || (ended && received_.empty())) {
        return; // no request, or not in time
    }
    received_.append(chunk_.data(), count);
    Parse(ended);
}

// The parser gets the request piece by piece, as the bytes themselves are kept.
void Session::Parse(bool ended)
{
    beast::error_code error;
    if (ended) {
        parser_->put_eof(error);
    } else {
        parsed_ += parser_->put(asio::buffer(received_) + parsed_, error);
    }
    if (error && error != http::error::need_more) {
        ++context_.exchangesUnderWay;
        since_ = std::chrono::steady_clock::now();
        const ErrorKind &kind = KindOfReadError(error);
        Send(parser_->is_header_done() ? &parser_->get() : nullptr, MakeErrorResponse(kind, kind.text), nullptr);
    } else if (parser_->is_done()) {
        ++context_.exchangesUnderWay;
        since_ = std::chrono::steady_clock::now();
        request_ = parser_->release();
        Handle();
    } else {
        Read();
    }
}

// Health and metrics are for machines nearby. A request that a proxy on this machine forwarded is a stranger's.
bool Session::MayWatch() const
{
    return (peer_.is_loopback() || context_.watchers.contains(peer_)) && request_.count("X-Forwarded-For") == 0;
}

void Session::Handle()
{
    if (Window::IsAskedFor(request_)) {
        --context_.exchangesUnderWay;
        context_.window.Serve(std::move(request_), std::move(stream_), peer_);
        return;
    }
    if (IsForWatchers(request_) && !MayWatch()) {
        Send(&request_, MakeErrorResponse(kUnknownPath, kUnknownPath.text), nullptr);
    } else if (request_.target() == "/metrics") {
        const std::string text = context_.state.metrics.Text();
        Send(&request_, text.empty() ? MakeErrorResponse(kUnknownPath, kUnknownPath.text) : MakePlainResponse(text),
             nullptr);
    } else {
        try {
            const Fault *named = TakeFault(&request_);
            HandleByShop(named == nullptr && !IsForWatchers(request_) ? context_.fault : named);
        } catch (const Refusal &refusal) {
            Send(&request_, MakeErrorResponse(refusal.kind(), refusal.what()), nullptr);
        }
    }
}

void Session::HandleByShop(const Fault *fault)
{
    if (fault != nullptr && fault->answer != nullptr) {
        Send(&request_, fault->answer(), fault);
        return;
    }
    context_.connections.Handle(request_, [self = shared_from_this(), fault](Response response) {
        self->Send(&self->request_, std::move(response), fault);
    });
}

void Session::Send(const Request *request, Response response, const Fault *fault)
{
    const bool stays = context_.keepAlive.count() != 0 && !context_.stopping && fault == nullptr &&
                       request == &request_ && request->keep_alive();
    response.keep_alive(stays);
    if (request != nullptr && IsForWatchers(*request)) {
        response.set(http::field::cache_control, "no-store");
    }
    Transmission sent = fault == nullptr ? AsOnePiece(response) : fault->send(response);
    // Before the reply, so that a client that has it finds its line in the log.
    LogVisit({peer_.to_string(), request, &response, fault == nullptr ? "" : fault->name});
    context_.state.metrics.CountExchange(request, response, std::chrono::steady_clock::now() - since_);
    Show(request, response, fault, sent);
    if (stays) {
        SendAndStay(std::move(sent.pieces.front().bytes));
    } else {
        std::make_shared<ReplySender>(std::move(stream_), std::move(sent))->Start();
    }
    --context_.exchangesUnderWay;
}

// For a balancer, which keeps its connections. A device's library adds a line end after its form that Content-Length
// does not count; a balancer could pass it on.
void Session::SendAndStay(std::string reply)
{
    reply_ = std::move(reply);
    const std::size_t sent = WriteNow(stream_, reply_);
    if (sent == reply_.size()) {
        ReadNext();
        return;
    }
    stream_.expires_after(kWriteTime);
    asio::async_write(stream_, asio::buffer(reply_) + sent,
                      [self = shared_from_this()](beast::error_code error, std::size_t) {
                          if (!error) {
                              self->ReadNext();
                          }
                      });
}

void Session::ReadNext()
{
    stream_.expires_after(context_.keepAlive);
    AwaitRequest();
    received_.erase(0, std::min(received_.find_first_not_of("\r\n"), received_.size()));
    if (received_.empty()) {
        Read();
    } else {
        Parse(false);
    }
}

// Without keep-alive, also returns the bytes after the request.
std::string Session::TakeReceived()
{
    if (context_.keepAlive.count() == 0) {
        return std::move(received_);
    }
    std::string request = received_.substr(0, parsed_);
    received_.erase(0, parsed_);
    return request;
}

void Session::Show(const Request *request, const Response &response, const Fault *fault, const Transmission &sent)
{
    SeenExchange seen;
    seen.at = token::WallTimeNow();
    seen.peer = peer_.to_string();
    seen.fault = fault == nullptr ? "" : fault->name;
    seen.asked = request == nullptr ? "" : std::string(request->method_string()) + " " + std::string(request->target());
    seen.status = response.result_int();
    seen.code = std::string(response["X-Error-Code"]);
    seen.message = std::string(response["X-Error-Message"]);
    diagnostics::Exchange &exchange = seen.exchange;
    const bool purchase = request != nullptr && request->method() == http::verb::post;
    exchange.call = purchase ? diagnostics::Call::kPurchase : diagnostics::Call::kDownload;
    exchange.request = TakeReceived();
    for (const Piece &piece : sent.pieces) {
        exchange.reply += piece.bytes;
    }
    exchange.end = EndOf(sent);
    exchange.firstBytes = sent.pieces.empty() ? 0 : sent.pieces.front().bytes.size();
    exchange.firstByteAfter = sent.pieces.empty() ? kNoWait : sent.pieces.front().wait;
    context_.window.Add(std::move(seen));
}

} // namespace shop
