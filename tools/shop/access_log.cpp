#include "access_log.h"

#include "diagnostics/printable.h"
#include "token/time_text.h"

#include <iostream>
#include <mutex>
#include <sstream>

namespace shop {

namespace http = boost::beast::http;

namespace {

std::string Shown(boost::beast::string_view text)
{
    return diagnostics::Printable({text.data(), text.size()}, 200);
}

std::string LineOf(const Visit &visit)
{
    std::ostringstream line;
    line << token::FormatSortable(token::WallTimeNow()) << ' ' << visit.peer << ' ';
    if (visit.request == nullptr) {
        line << "(no request)";
    } else {
        line << Shown(visit.request->method_string()) << ' ' << Shown(visit.request->target());
    }
    const Response &response = *visit.response;
    line << ' ' << response.result_int() << ' ' << response.body().size() << " bytes";
    const bool purchase = visit.request != nullptr && visit.request->method() == http::verb::post;
    if (purchase) {
        const Request &request = *visit.request;
        line << ", serial " << Shown(request["User-Serial"]) << ", user " << Shown(request["User-ID"]) << ", "
             << Shown(request.body());
    }
    if (response.count("X-Error-Code") != 0) {
        line << ", code " << Shown(response["X-Error-Code"]) << ": " << Shown(response["X-Error-Message"]);
    } else if (purchase) {
        line << ", code 0: sold";
    }
    return line.str() + (visit.fault.empty() ? "" : ", fault " + visit.fault);
}

} // namespace

void LogVisit(const Visit &visit)
{
    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    std::cout << LineOf(visit) + "\n" << std::flush;
}

void LogError(const std::string &message)
{
    std::cerr << "pavonix-shop: " + diagnostics::Printable(message, 500) + "\n" << std::flush;
}

} // namespace shop
