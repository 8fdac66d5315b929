#include "model/drawn_call.h"
#include "model/reply_model.h"

#include <algorithm>
#include <numeric>
#include <sstream>

namespace pavonix::e2e {

namespace {

struct ProfileModel {
    std::string agent, serial;
    int id = 0;

    explicit ProfileModel(const std::string &file)
    {
        std::istringstream lines(file);
        for (std::string line; std::getline(lines, line) && line.size() < 1024;) {
            Take(line.c_str()); // up to the first NUL
        }
        agent = agent.empty() ? "Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.1; SV1; .NET CLR 2.0.50727; "
                                "InfoPath.2; .NET CLR 3.0.4506.2152; .NET CLR 3.5.30729)"
                              : agent;
    }

    void Take(const std::string &line)
    {
        for (const char *key : {"User-Agent", "Public-Key", "Private-Key", "User-Serial", "User-Id"}) {
            const std::size_t at = line.find(key);
            if (at == std::string::npos) {
                continue;
            }
            const std::size_t separator = line.find(": ", at);
            const std::string value = separator == std::string::npos ? line : line.substr(separator + 2);
            agent = key == std::string("User-Agent") ? value : agent;
            serial = key == std::string("User-Serial") ? value : serial;
            id = key == std::string("User-Id") ? NumberOf(value) : id;
            return;
        }
    }
};

struct AddressModel {
    std::string host, target; // empty host: no request is sent

    explicit AddressModel(const std::string &url)
    {
        std::string start = url.substr(0, 7);
        std::transform(start.begin(), start.end(), start.begin(), [](char c) { return static_cast<char>(tolower(c)); });
        const bool slashes = url.find("//") != std::string::npos;
        const std::size_t hostAt = slashes ? 7 : 0, path = url.find('/', hostAt);
        if (path == std::string::npos || path == hostAt || url[hostAt] == ':' || (slashes && start != "http://")) {
            return;
        }
        host = url.substr(hostAt, path - hostAt);
        target = url.substr(path) == "/" ? "" : url.substr(path);
    }
};

std::string Pairs(const Scenario &call)
{
    const std::vector<std::vector<const char *>> names = {
        {"type", "category", "sort", "start", "max"}, {"type", "id"}, {"type", "id", "force"}};
    std::string pairs;
    for (std::size_t i = 2; i < call.words.size(); ++i) {
        pairs += std::string(i > 2 ? "&" : "") + names[static_cast<std::size_t>(call.function)][i - 2] + "=" +
                 std::to_string(call.words[i]);
    }
    return pairs;
}

// Nullopt if no connection is made.
std::optional<std::string> Request(const Scenario &call)
{
    std::string url(call.url.begin(), call.url.end()); // the URL is Latin-1
    const bool buys = call.function == Export::kBuy;
    std::string form = Pairs(call);
    url += buys || url.empty() ? "" : "?" + form;
    const AddressModel address(url);
    if (url.size() > 255 || address.host.empty()) {
        return std::nullopt;
    }
    const ProfileModel profile(call.profile.value_or(""));
    std::string request = (buys ? "POST " : "GET ") + address.target + " HTTP/1.1\r\nHost: " + address.host +
                          "\r\nAccept: */*\r\nUser-Agent: " + profile.agent + "\r\nConnection: Keep-Alive\r\n" +
                          (buys ? "Content-Type: application/x-www-form-urlencoded\r\n" : "") +
                          "User-Serial: " + profile.serial + "\r\nUser-ID: " + std::to_string(profile.id) + "\r\n";
    if (buys) {
        for (std::size_t minus; (minus = form.find('-')) != std::string::npos;) {
            form.replace(minus, 1, "%2D");
        }
        request += "User-Cert: {token}\r\nContent-Length: " + std::to_string(form.size()) + "\r\n\r\n" + form;
    }
    return request + "\r\n";
}

std::string TargetName(const Scenario &call)
{
    std::string name(call.target.begin(), call.target.end());
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

// The row's folder after the body was stored.
Tree Stored(const Scenario &call, const std::string &body)
{
    Tree after = call.before;
    const std::string name = TargetName(call), folder = name.substr(0, name.rfind('/') + 1);
    const std::string above = folder.substr(0, folder.rfind('/', folder.size() - 2) + 1);
    const bool reachable =
        folder.find('/') == folder.rfind('/') || std::any_of(after.begin(), after.end(), [&](const auto &entry) {
            return entry.first.starts_with(above);
        }); // only the last folder is created
    if (!name.empty() && reachable && !after.contains(name + "/")) {
        after[name] = body;
    }
    return after;
}

} // namespace

void PredictOutcome(Scenario *call)
{
    call->after = call->before;
    call->request = std::nullopt;
    call->record = {};
    call->signer = nullptr;
    if (call->function != Export::kBuy && call->force == 0 && call->before.contains(TargetName(*call))) {
        call->result = 1;
        return;
    }
    call->request = Request(*call);
    const Receptions receptions = CutAt(SIZE_MAX, call->pieces);
    const ReplyModel reply(receptions);
    call->result = call->request ? reply.status : 0;
    if (!call->request) {
        return;
    }
    if (call->function == Export::kBuy) {
        call->record = reply.PurchaseRecord();
        call->signer = &DrawnKey();
    } else if (call->result == 200) {
        const Receptions writes = BodyWrites(receptions);
        call->after = Stored(*call, std::accumulate(writes.begin(), writes.end(), std::string()));
    }
}

} // namespace pavonix::e2e
