// The shop's window: a web page that shows goods, devices, purchases and exchanges.
//
//   GET /                   the page
//   GET /window/style.css, /window/script.js
//   GET /window/events      new exchanges, as server-sent events
#pragma once

#include "shop/database/database.h"
#include "shop/transmission.h"
#include "shop/window/exchange_log.h"
#include "shop/window/viewer.h"

#include <boost/asio/ip/address.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace shop {

// Has a thread and a connection to the database of its own, the connection only while it is looked at: rendering must
// not delay the shop.
class Window {
public:
    // place: of the database. forAll: shown to other machines too.
    Window(std::string place, bool forAll);
    ~Window();

    // Whether the request is for the window, and thus for Serve. Such requests are not among the exchanges shown.
    [[nodiscard]] static bool IsAskedFor(const Request &request);

    // Takes over the connection.
    void Serve(Request request, boost::beast::tcp_stream stream, const boost::asio::ip::address &peer);

    // Keeps the exchange, and shows it within a moment.
    void Add(SeenExchange seen) { exchanges_.Add(std::move(seen)); }

private:
    bool MayLook(const Request &request, const boost::asio::ip::address &peer) const;
    Response Answer(const Request &request, const boost::asio::ip::address &peer);
    std::string Page();
    std::string Exchanges();
    std::string Shop();
    std::string Rendered(const std::function<std::string(Database &)> &render);
    std::vector<std::shared_ptr<Viewer>> Viewers();
    void Watch(boost::beast::tcp_stream stream);
    void Tick();
    void Publish();

    std::string place_;
    bool forAll_;
    ExchangeLog exchanges_;
    // Everything below is used by the one thread only.
    std::optional<Database> database_;
    std::vector<std::weak_ptr<Viewer>> viewers_;
    std::uint64_t shown_ = 0; // number of the last exchange that viewers got
    std::string shop_;        // as viewers got it
    std::chrono::steady_clock::time_point shopAt_;
    bool ticking_ = false;
    boost::asio::thread_pool thread_{1};
    boost::asio::steady_timer timer_;
};

} // namespace shop
