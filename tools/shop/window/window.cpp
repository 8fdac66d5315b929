#include "shop/window/window.h"

#include "shop/files.h"
#include "shop/reply_sender.h"
#include "shop/window/exchange_view.h"
#include "shop/texts.h"
#include "shop/window/shop_view.h"

#include <boost/asio/post.hpp>

#include <algorithm>

namespace shop {

namespace asio = boost::asio;
namespace http = boost::beast::http;

namespace {

constexpr std::chrono::milliseconds kTick{200};
constexpr std::chrono::seconds kShopInterval{1};
// More exchanges in a tick are not rendered: they could not be read, and rendering
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

// A page of another site can give its own name the address of this machine; the name in the request shows that.
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

Window::Window(std::string place, bool forAll) : place_(std::move(place)), forAll_(forAll), timer_(thread_) {}

Window::~Window()
{
    thread_.stop();
    thread_.join();
}

bool Window::IsAskedFor(const Request &request)
{
    return request.target() == "/" || request.target().starts_with("/window/");
}

bool Window::MayLook(const Request &request, const asio::ip::address &peer) const
{
    return forAll_ || (IsLoopback(peer) && NamesLoopback(std::string(request[http::field::host])));
}

void Window::Serve(Request request, boost::beast::tcp_stream stream, const asio::ip::address &peer)
{
    asio::post(thread_, [this, request = std::move(request), stream = std::move(stream), peer]() mutable {
        const bool events = request.method() == http::verb::get && request.target() == kEvents;
        if (events && MayLook(request, peer) && Viewers().size() < kMostViewers) {
            Watch(std::move(stream));
        } else {
            std::make_shared<ReplySender>(std::move(stream), AsOnePiece(Answer(request, peer)))->Start();
        }
    });
}

Response Window::Answer(const Request &request, const asio::ip::address &peer)
{
    if (!MayLook(request, peer)) {
        return PageResponse(http::status::forbidden, "text/plain",
                            "This page is for browsers on the shop's own machine; --window-for-all shows it to all.\n");
    }
    if (request.method() != http::verb::get) {
        return PageResponse(http::status::method_not_allowed, "text/plain", "This page is read with GET only.\n");
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
               ? PageResponse(http::status::service_unavailable, "text/plain",
                              "Eight browsers watch this page already.\n")
               : PageResponse(http::status::not_found, "text/plain", "There is no such file.\n");
}

std::string Window::Page()
{
    std::string page;
    std::string_view rest = kPage;
    for (std::size_t mark = rest.find("{{"); mark != std::string_view::npos; mark = rest.find("{{")) {
        const std::size_t end = rest.find("}}", mark);
        page += rest.substr(0, mark);
        page += rest.substr(mark, end - mark) == "{{shop" ? Shop() : Exchanges();
        rest.remove_prefix(end + 2);
    }
    return page.append(rest);
}

// The connection is made when it is needed, and again after a failure.
std::string Window::Rendered(const std::function<std::string(Database &)> &render)
{
    try {
        return render(database_ ? *database_ : database_.emplace(place_));
    } catch (const std::exception &failure) {
        database_.reset();
        return "<p class=\"error\">The database cannot be read: " + Html(failure.what()) + "</p>";
    }
}

std::string Window::Exchanges()
{
    return Rendered([this](Database &database) {
        std::string html;
        const auto all = exchanges_.Newer(0);
        for (auto seen = all.rbegin(); seen != all.rend(); ++seen) {
            html += ExchangeAsHtml(database, *seen);
        }
        return html;
    });
}

std::string Window::Shop()
{
    return Rendered(ShopAsHtml);
}

std::vector<std::shared_ptr<Viewer>> Window::Viewers()
{
    std::vector<std::shared_ptr<Viewer>> viewers;
    std::erase_if(viewers_, [&](const std::weak_ptr<Viewer> &weak) {
        auto viewer = weak.lock();
        if (viewer != nullptr) {
            viewers.push_back(std::move(viewer));
            return false;
        }
        return true;
    });
    return viewers;
}

void Window::Watch(boost::beast::tcp_stream stream)
{
    if (Viewers().empty()) {
        shown_ = exchanges_.newest();
        shop_ = Shop();
    }
    const auto viewer = std::make_shared<Viewer>(std::move(stream));
    viewers_.push_back(viewer);
    viewer->Start();
    viewer->Send("shop", shop_);
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
        } else {
            database_.reset();
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
    const bool busy = newest != shown_;
    shown_ = std::max(shown_, newest - std::min(newest, kMostPerTick));
    for (const SeenExchange &seen : exchanges_.Newer(shown_)) {
        sendAll("exchange", Rendered([&](Database &database) { return ExchangeAsHtml(database, seen); }));
        shown_ = seen.number;
    }
    // Other programs change the database, too.
    const auto now = std::chrono::steady_clock::now();
    if (busy || now - shopAt_ > kShopInterval) {
        shopAt_ = now;
        if (std::string shop = Shop(); shop != shop_) {
            shop_ = std::move(shop);
            sendAll("shop", shop_);
        }
    }
}

} // namespace shop
