// The shop's window: a web page that shows what the shop holds and what happens.
//
//   GET /                   the page
//   GET /window/style.css, /window/script.js
//   GET /window/events      what happens from now on, as server-sent events
#pragma once

#include "shop/database.h"
#include "shop/transmission.h"
#include "shop/window/exchange_log.h"
#include "shop/window/viewer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/address.hpp>
#include <boost/asio/steady_timer.hpp>

#include <memory>
#include <vector>

namespace shop {

class Window {
public:
    // forAll: shown to other machines too.
    Window(boost::asio::io_context &context, Database &database, bool forAll);

    // Whether the request is for the window. If so, it is to be answered by Watch, if
    // WantsEvents, or by Answer; and is none of the exchanges to be shown.
    [[nodiscard]] static bool IsAskedFor(const Request &request);

    [[nodiscard]] bool WantsEvents(const Request &request, const boost::asio::ip::address &peer);
    void Watch(boost::beast::tcp_stream stream);
    [[nodiscard]] Response Answer(const Request &request, const boost::asio::ip::address &peer);

    // Keeps the exchange, and shows it within a moment.
    void Add(SeenExchange seen) { exchanges_.Add(std::move(seen)); }

private:
    bool MayLook(const Request &request, const boost::asio::ip::address &peer) const;
    std::string Page();
    std::string Exchanges();
    std::string Counter();
    std::vector<std::shared_ptr<Viewer>> Viewers();
    void Tick();
    void Publish();

    Database &database_;
    bool forAll_;
    ExchangeLog exchanges_;
    std::vector<std::weak_ptr<Viewer>> viewers_;
    std::uint64_t shown_ = 0; // number of the last exchange that viewers got
    std::string counter_;     // of the database, when viewers got the shop
    boost::asio::steady_timer timer_;
    bool ticking_ = false;
};

} // namespace shop
