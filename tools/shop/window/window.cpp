#include "shop/window/window.h"

#include "shop/window/exchange_view.h"
#include "shop/window/files.h"
#include "shop/window/shop_view.h"

#include <algorithm>
#include <iostream>

namespace shop {

namespace asio = boost::asio;
namespace http = boost::beast::http;

namespace {

constexpr std::chrono::milliseconds kTick{200};
// More exchanges in a tick are not rendered: nobody could read them, and rendering
// takes time from the exchanges themselves.
constexpr std::uint64_t kMostPerTick = 10;
constexpr std::size_t kMostViewers = 8;
constexpr const char *kEvents = "/window/events";

Response PageResponse(http::status status, const char *type, std::string_view body)
{
    Response response(status, 11, std::string(body));
    response.set(http::field::content_type, std::string(type) + "; charset=utf-8");
    response.set(http::field::cache_control, "no-store");
    response.set("X-Content-Type-Options", "nosniff");
    // Texts of strangers are escaped; should one slip through, it still runs nothing.
    response.set("Content-Security-Policy", "default-src 'none'; style-src 'self'; script-src 'self'; "
                                            "connect-src 'self'; img-src data:; frame-ancestors 'none'; "
                                            "base-uri 'none'; form-action 'none'");
    response.keep_alive(false);
    response.prepare_payload();
    return response;
}

bool IsLoopback(const asio::ip::address &address)
{
    return address.is_v6() && address.to_v6().is_v4_mapped()
               ? asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6()).is_loopback()
               : address.is_loopback();
}

// A page of a stranger can make his own name mean this machine; the name tells.
bool NamesLoopback(std::string host)
{
    const std::size_t bracket = host.find(']');
    host = host.starts_with('[') && bracket != std::string::npos ? host.substr(1, bracket - 1)
                                                                 : host.substr(0, host.rfind(':'));
    boost::system::error_code error;
    const auto address = asio::ip::make_address(host, error);
    return boost::beast::iequals(host, "localhost") || (!error && IsLoopback(address));
}

} // namespace

Window::Window(asio::io_context &context, Database &database, bool forAll)
    : database_(database), forAll_(forAll), timer_(context)
{
}

bool Window::IsAskedFor(const Request &request)
{
    return request.target() == "/" || request.target().starts_with("/window/");
}

bool Window::MayLook(const Request &request, const asio::ip::address &peer) const
{
    return forAll_ || (IsLoopback(peer) && NamesLoopback(std::string(request[http::field::host])));
}

bool Window::WantsEvents(const Request &request, const asio::ip::address &peer)
{
    return request.method() == http::verb::get && request.target() == kEvents && MayLook(request, peer) &&
           Viewers().size() < kMostViewers;
}

Response Window::Answer(const Request &request, const asio::ip::address &peer)
{
    if (!MayLook(request, peer)) {
        return PageResponse(http::status::forbidden, "text/plain",
                            "The shop's window is shown on its own machine only; --window-for-all shows it to all.\n");
    }
    if (request.method() != http::verb::get) {
        return PageResponse(http::status::method_not_allowed, "text/plain", "The window is for looking: GET only.\n");
    }
    if (request.target() == "/") {
        return PageResponse(http::status::ok, "text/html", Page());
    }
    if (request.target() == "/window/style.css") {
        return PageResponse(http::status::ok, "text/css", kStyle);
    }
    if (request.target() == "/window/script.js") {
        return PageResponse(http::status::ok, "text/javascript", kScript);
    }
    return request.target() == kEvents
               ? PageResponse(http::status::service_unavailable, "text/plain", "Too many are looking already.\n")
               : PageResponse(http::status::not_found, "text/plain", "The window has no such file.\n");
}

std::string Window::Page()
{
    std::string page;
    std::string_view rest = kPage;
    for (std::size_t mark = rest.find("{{"); mark != std::string_view::npos; mark = rest.find("{{")) {
        const std::size_t end = rest.find("}}", mark);
        page += rest.substr(0, mark);
        page += rest.substr(mark, end - mark) == "{{shop" ? ShopAsHtml(database_) : Exchanges();
        rest.remove_prefix(end + 2);
    }
    return page.append(rest);
}

std::string Window::Exchanges()
{
    std::string html;
    for (auto seen = exchanges_.all().rbegin(); seen != exchanges_.all().rend(); ++seen) {
        html += ExchangeAsHtml(database_, *seen);
    }
    return html;
}

// Another text after each change, of this program or another one.
std::string Window::Counter()
{
    return database_.execAndGet("PRAGMA data_version").getString() + " " + std::to_string(database_.getTotalChanges());
}

std::vector<std::shared_ptr<Viewer>> Window::Viewers()
{
    std::erase_if(viewers_, [](const std::weak_ptr<Viewer> &viewer) { return viewer.expired(); });
    std::vector<std::shared_ptr<Viewer>> viewers;
    for (const std::weak_ptr<Viewer> &viewer : viewers_) {
        viewers.push_back(viewer.lock());
    }
    return viewers;
}

void Window::Watch(boost::beast::tcp_stream stream)
{
    if (Viewers().empty()) {
        shown_ = exchanges_.newest();
    }
    const auto viewer = std::make_shared<Viewer>(std::move(stream));
    viewers_.push_back(viewer);
    viewer->Start();
    viewer->Send("shop", ShopAsHtml(database_));
    viewer->Send("exchanges", Exchanges());
    if (!ticking_) {
        ticking_ = true;
        Tick();
    }
}

void Window::Tick()
{
    timer_.expires_after(kTick);
    timer_.async_wait([this](boost::system::error_code error) {
        ticking_ = !error && !Viewers().empty();
        if (ticking_) {
            Publish();
            Tick();
        }
    });
}

void Window::Publish()
{
    const auto viewers = Viewers();
    const auto sendAll = [&](std::string_view name, const std::string &html) {
        for (const std::shared_ptr<Viewer> &viewer : viewers) {
            viewer->Send(name, html);
        }
    };
    const std::uint64_t newest = exchanges_.newest();
    shown_ = std::max(shown_, newest - std::min(newest, kMostPerTick));
    for (const SeenExchange &seen : exchanges_.all()) {
        if (seen.number > shown_) {
            sendAll("exchange", ExchangeAsHtml(database_, seen));
        }
    }
    shown_ = newest;
    if (std::string counter = Counter(); counter != counter_) {
        counter_ = std::move(counter);
        sendAll("shop", ShopAsHtml(database_));
    }
}

} // namespace shop
