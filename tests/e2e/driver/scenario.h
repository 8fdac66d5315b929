// One end-to-end scenario: the files, the call, the server's reply, and the expected
// outcome. The same rows run on every flavour.
#pragma once

#include <map>
#include <optional>
#include <source_location>
#include <string>
#include <vector>

namespace pavonix::e2e {

enum class Export { kList, kGood, kBuy };

enum class Server {
    kReplies,      // reads the request, sends the pieces
    kNeverAccepts, // leaves the connection in the queue, then stops listening
    kRefuses,      // no process listens on the port
};

// The server's action after the last piece.
enum class Ending {
    kWaits,  // waits for the client to close
    kCloses, // an orderly close of its side
    kResets, // a reset
};

class DeviceKey;

// Files and folders by their path in the row's folder, '/' between the names and
// UTF-8; a name that ends in '/' is a folder and has no content.
using Tree = std::map<std::string, std::string>;

// The expected purchase record; a field without a value must not be written. The texts are
// written in this order, each with its terminator.
struct Record {
    std::optional<int> errorCode;
    std::optional<std::u16string> message;
    std::optional<std::u16string> body; // in the message's place
    std::optional<std::u16string> timestamp;
};

inline constexpr char kIdentity[] = "User-Agent: Handheld/1.0\nUser-Serial: S-0815\nUser-Id: 42\n";

inline constexpr char kListRequest[] = "GET /goods?type=1&category=2&sort=3&start=4&max=5 HTTP/1.1\r\n"
                                       "Host: 127.0.0.1\r\n"
                                       "Accept: */*\r\n"
                                       "User-Agent: Handheld/1.0\r\n"
                                       "Connection: Keep-Alive\r\n"
                                       "User-Serial: S-0815\r\n"
                                       "User-ID: 42\r\n"
                                       "\r\n";

// A row's name and its line in the table, which a failure reports.
struct RowName {
    RowName(const char *given, std::source_location at = std::source_location::current()) : text(given), place(at) {}

    const char *text;
    std::source_location place;
};

struct Scenario {
    RowName name;

    // Before the call.
    bool freshLibrary = false;                      // unloads the library and loads it again
    std::optional<std::string> profile = kIdentity; // nullopt: there is no such file
    Tree before = {};

    // The call.
    Export function = Export::kList;
    std::vector<int> words = {0, 0, 1, 2, 3, 4, 5}; // the request record
    std::u16string target = u"list.xml";            // in the row's folder, '\' between the names
    int force = 1;
    std::u16string url = u"http://127.0.0.1/goods";
    int portOffset = 0; // added to the server's port

    // The server. Each piece is sent at once, after the client has received all earlier ones.
    Server server = Server::kReplies;
    std::vector<std::string> pieces = {};
    Ending ending = Ending::kWaits;

    // The expected outcome.
    std::optional<std::string> request = kListRequest; // all bytes; nullopt: no connection was made
    int result = 200;
    Tree after = {};
    const DeviceKey *signer = nullptr; // whose token replaces "{token}" in the request; null: the token is empty
    Record record = {};
};

// The lines of a head, each ended by CR LF, and the blank line.
std::string Head(const std::vector<std::string> &lines);
// A reply of status 200 with "Content-Length: announced" as its only header.
std::string Announce(std::size_t announced, const std::string &body);
// `count` pseudo-random bytes, so that no two parts are equal.
std::string Bytes(std::size_t count);
// The body bytes that the library takes from the first reception: always 1024 bytes without
// the head, zeros after the received bytes.
std::string FirstReception(const std::string &reply);

} // namespace pavonix::e2e
