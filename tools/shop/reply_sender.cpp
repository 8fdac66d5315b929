#include "reply_sender.h"

#include <boost/asio/write.hpp>

namespace shop {

namespace asio = boost::asio;
namespace beast = boost::beast;

namespace {

constexpr std::chrono::seconds kWriteTime{60};
constexpr std::chrono::seconds kDrainTime{2};
constexpr std::chrono::seconds kSilenceTime{60};

} // namespace

std::size_t WriteNow(beast::tcp_stream &stream, const std::string &bytes)
{
    beast::error_code error; // the next operation reports it again
    (void)stream.socket().non_blocking(true, error);
    return stream.socket().write_some(asio::buffer(bytes), error);
}

ReplySender::ReplySender(beast::tcp_stream stream, Transmission transmission)
    : stream_(std::move(stream)), transmission_(std::move(transmission)), pause_(stream_.get_executor())
{
}

void ReplySender::Start()
{
    if (next_ == transmission_.pieces.size()) {
        Finish();
    } else if (transmission_.pieces[next_].wait.count() == 0) {
        Write();
    } else {
        pause_.expires_after(transmission_.pieces[next_].wait);
        pause_.async_wait([self = shared_from_this()](beast::error_code) { self->Write(); });
    }
}

void ReplySender::Write()
{
    const std::string &bytes = transmission_.pieces[next_++].bytes;
    const std::size_t sent = WriteNow(stream_, bytes);
    if (sent == bytes.size()) {
        Start();
        return;
    }
    stream_.expires_after(kWriteTime);
    asio::async_write(stream_, asio::buffer(bytes) + sent,
                      [self = shared_from_this()](beast::error_code error, std::size_t) {
                          if (!error) {
                              self->Start();
                          }
                      });
}

void ReplySender::Finish()
{
    beast::error_code ignored;
    switch (transmission_.end) {
    case Transmission::End::kReset:
        (void)stream_.socket().set_option(asio::socket_base::linger(true, 0), ignored);
        stream_.close();
        return;
    case Transmission::End::kSilence:
        stream_.expires_after(kSilenceTime);
        break;
    case Transmission::End::kClose:
        (void)stream_.socket().shutdown(asio::socket_base::shutdown_send, ignored);
        stream_.expires_after(kDrainTime);
        break;
    }
    Drain();
}

// The device sends a line end after its form that Content-Length does not
// count. Closing with such bytes unread would reset the connection, and the
// reply could be lost with it: so read and drop until the device closes.
void ReplySender::Drain()
{
    stream_.async_read_some(asio::buffer(dropped_), [self = shared_from_this()](beast::error_code error, std::size_t) {
        if (!error) {
            self->Drain();
        }
    });
}

} // namespace shop
