#include "shop/window/viewer.h"

#include <boost/asio/dispatch.hpp>
#include <boost/asio/write.hpp>

namespace shop {

namespace asio = boost::asio;
namespace beast = boost::beast;

namespace {

constexpr std::size_t kMostWaiting = std::size_t{1} << 20;

constexpr char kHead[] = "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream; charset=utf-8\r\n"
                         "Cache-Control: no-store\r\nConnection: close\r\n\r\nretry: 1000\n\n";

} // namespace

void Viewer::Start()
{
    asio::dispatch(stream_.get_executor(), [self = shared_from_this()] {
        self->stream_.expires_never();
        self->Queue(kHead);
        self->Watch();
    });
}

void Viewer::Send(std::string_view name, std::string_view html)
{
    std::string text = "event: " + std::string(name) + "\n";
    while (!html.empty()) {
        const std::string_view line = html.substr(0, html.find('\n'));
        text.append("data: ").append(line).append("\n");
        html.remove_prefix(std::min(line.size() + 1, html.size()));
    }
    asio::dispatch(stream_.get_executor(), [self = shared_from_this(), text = std::move(text) + "\n"]() mutable {
        self->Queue(std::move(text));
    });
}

void Viewer::Queue(std::string text)
{
    if (waiting_.size() <= kMostWaiting) {
        waiting_ += text;
    }
    if (underWay_.empty()) {
        Write();
    }
}

void Viewer::Write()
{
    underWay_ = std::exchange(waiting_, {});
    if (underWay_.empty()) {
        return;
    }
    asio::async_write(stream_, asio::buffer(underWay_),
                      [self = shared_from_this()](beast::error_code error, std::size_t) {
                          self->underWay_.clear();
                          if (!error) {
                              self->Write();
                          }
                      });
}

// A browser sends nothing more; the end of the connection ends the viewer.
void Viewer::Watch()
{
    stream_.async_read_some(asio::buffer(dropped_), [self = shared_from_this()](beast::error_code error, std::size_t) {
        if (error) {
            self->stream_.close();
        } else {
            self->Watch();
        }
    });
}

} // namespace shop
