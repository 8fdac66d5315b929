#include "session.h"

#include "access_log.h"
#include "errors.h"
#include "replies.h"
#include "reply_sender.h"

#include <iostream>

namespace shop {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;

namespace {

constexpr std::chrono::seconds kReadTime{30};
constexpr std::chrono::milliseconds kNoWait{0};
constexpr std::uint64_t kLongestBody = std::uint64_t{16} * 1024;

const ErrorKind &KindOfReadError(beast::error_code error)
{
    return error == http::error::body_limit || error == http::error::header_limit ? kRequestTooLarge
                                                                                  : kMalformedRequest;
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

Session::Session(asio::ip::tcp::socket socket, ServerContext &house) : stream_(std::move(socket)), context_(house)
{
    parser_.body_limit(kLongestBody);
    parser_.eager(true);
}

void Session::Start()
{
    beast::error_code ignored;
    peer_ = stream_.socket().remote_endpoint(ignored).address();
    stream_.expires_after(kReadTime);
    Read();
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
        return; // left without a word, or took too long
    }
    received_.append(chunk_.data(), count);
    Parse(ended);
}

// The parser gets the request piece by piece, as the bytes themselves are kept.
void Session::Parse(bool ended)
{
    beast::error_code error;
    if (ended) {
        parser_.put_eof(error);
    } else {
        parsed_ += parser_.put(asio::buffer(received_) + parsed_, error);
    }
    if (error && error != http::error::need_more) {
        const ErrorKind &kind = KindOfReadError(error);
        Send(parser_.is_header_done() ? &parser_.get() : nullptr, MakeErrorResponse(kind, kind.text), nullptr);
    } else if (parser_.is_done()) {
        Answer();
    } else {
        Read();
    }
}

void Session::Answer()
{
    Request request = parser_.get();
    if (Window::IsAskedFor(request)) {
        AnswerForWindow(request);
        return;
    }
    try {
        const Fault *named = TakeFault(&request);
        const Fault *fault = named == nullptr ? context_.fault : named;
        const bool answers = fault != nullptr && fault->answer != nullptr;
        Send(&request, answers ? fault->answer() : context_.shop.Answer(request), fault);
    } catch (const Refusal &refusal) {
        Send(&request, MakeErrorResponse(refusal.kind(), refusal.what()), nullptr);
    }
}

void Session::AnswerForWindow(const Request &request)
{
    if (context_.window.WantsEvents(request, peer_)) {
        context_.window.Watch(std::move(stream_));
        return;
    }
    const Response response = context_.window.Answer(request, peer_);
    std::make_shared<ReplySender>(std::move(stream_), AsOnePiece(response))->Start();
}

void Session::Send(const Request *request, const Response &response, const Fault *fault)
{
    const Transmission sent = fault == nullptr ? AsOnePiece(response) : fault->send(response);
    std::make_shared<ReplySender>(std::move(stream_), sent)->Start();
    // The reply is on its way by now, so that nobody waits for the log and the window.
    std::cout << LogLine({peer_.to_string(), request, &response, fault == nullptr ? "" : fault->name}) << std::endl;
    Show(request, response, fault, sent);
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
    exchange.request = std::move(received_);
    for (const Piece &piece : sent.pieces) {
        exchange.reply += piece.bytes;
    }
    exchange.end = EndOf(sent);
    exchange.firstBytes = sent.pieces.empty() ? 0 : sent.pieces.front().bytes.size();
    exchange.firstByteAfter = sent.pieces.empty() ? kNoWait : sent.pieces.front().wait;
    context_.window.Add(std::move(seen));
}

} // namespace shop
