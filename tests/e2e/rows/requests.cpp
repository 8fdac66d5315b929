// The bytes of a download's request: the two queries, the address in its forms,
// the port.
#include "rows.h"

namespace pavonix::e2e {

namespace {

const std::string kReply = Announce(6, "<xml/>");
const Tree kStored = {{"list.xml", "<xml/>"}};

// The usual request but for its first two lines.
std::string ListRequest(const std::string &path, const std::string &host)
{
    return "GET " + path + "?type=1&category=2&sort=3&start=4&max=5 HTTP/1.1\r\nHost: " + host +
           "\r\n"
           "Accept: */*\r\n"
           "User-Agent: Handheld/1.0\r\n"
           "Connection: Keep-Alive\r\n"
           "User-Serial: S-0815\r\n"
           "User-ID: 42\r\n"
           "\r\n";
}

} // namespace

std::vector<Scenario> RequestRows()
{
    const std::u16string longestPath = u"/" + std::u16string(199, u'p');
    return {
        {.name = "list_of_goods",
         .pieces = {kReply},
         .request = "GET /goods?type=1&category=2&sort=3&start=4&max=5 HTTP/1.1\r\n"
                    "Host: 127.0.0.1\r\n"
                    "Accept: */*\r\n"
                    "User-Agent: Handheld/1.0\r\n"
                    "Connection: Keep-Alive\r\n"
                    "User-Serial: S-0815\r\n"
                    "User-ID: 42\r\n"
                    "\r\n",
         .after = kStored},
        {.name = "one_good",
         .function = Export::kGood,
         .words = {0, 0, 3, 42},
         .target = u"good.xml",
         .pieces = {kReply},
         .request = "GET /goods?type=3&id=42 HTTP/1.1\r\n"
                    "Host: 127.0.0.1\r\n"
                    "Accept: */*\r\n"
                    "User-Agent: Handheld/1.0\r\n"
                    "Connection: Keep-Alive\r\n"
                    "User-Serial: S-0815\r\n"
                    "User-ID: 42\r\n"
                    "\r\n",
         .after = {{"good.xml", "<xml/>"}}},
        {.name = "list_words_at_their_limits_and_the_caller_s_own_words_unread",
         .words = {-1, 99, -2147483647 - 1, 2147483647, -1, 0, 100},
         .pieces = {kReply},
         .request = "GET /goods?type=-2147483648&category=2147483647&sort=-1&start=0&max=100 HTTP/1.1\r\n"
                    "Host: 127.0.0.1\r\n"
                    "Accept: */*\r\n"
                    "User-Agent: Handheld/1.0\r\n"
                    "Connection: Keep-Alive\r\n"
                    "User-Serial: S-0815\r\n"
                    "User-ID: 42\r\n"
                    "\r\n",
         .after = kStored},
        {.name = "a_port_in_the_address_goes_into_the_host_line_only",
         .url = u"http://127.0.0.1:8080/goods",
         .pieces = {kReply},
         .request = ListRequest("/goods", "127.0.0.1:8080"),
         .after = kStored},
        {.name = "address_without_scheme",
         .url = u"127.0.0.1:8080/goods",
         .pieces = {kReply},
         .request = ListRequest("/goods", "127.0.0.1:8080"),
         .after = kStored},
        {.name = "scheme_in_capitals",
         .url = u"HTTP://127.0.0.1/goods",
         .pieces = {kReply},
         .request = ListRequest("/goods", "127.0.0.1"),
         .after = kStored},
        {.name = "host_by_name",
         .url = u"http://localhost/goods",
         .pieces = {kReply},
         .request = ListRequest("/goods", "localhost"),
         .after = kStored},
        {.name = "path_of_one_slash",
         .url = u"http://127.0.0.1/",
         .pieces = {kReply},
         .request = ListRequest("/", "127.0.0.1"),
         .after = kStored},
        {.name = "path_with_double_slashes",
         .url = u"http://127.0.0.1//shop//goods",
         .pieces = {kReply},
         .request = ListRequest("//shop//goods", "127.0.0.1"),
         .after = kStored},
        {.name = "address_beyond_ascii_in_the_code_page_and_outside",
         .url = u"http://127.0.0.1/k\u00e4se/\u20ac/\u732b",
         .pieces = {kReply},
         .request = ListRequest("/k\xe4se/\x80/?", "127.0.0.1"),
         .after = kStored},
        {.name = "longest_address_that_fits", // 255 bytes with the query
         .url = u"http://127.0.0.1" + longestPath,
         .pieces = {kReply},
         .request = ListRequest("/" + std::string(199, 'p'), "127.0.0.1"),
         .after = kStored},
        {.name = "address_one_byte_too_long_with_its_query",
         .before = kStored,
         .url = u"http://127.0.0.1" + longestPath + u"p",
         .request = std::nullopt,
         .result = 0,
         .after = kStored},
        {.name = "address_too_long_by_far",
         .before = kStored,
         .url = u"http://127.0.0.1/" + std::u16string(5000, u'\u732b'),
         .request = std::nullopt,
         .result = 0,
         .after = kStored},
        {.name = "port_above_65535", .portOffset = 65536, .pieces = {kReply}, .after = kStored},
        {.name = "negative_port", .portOffset = -65536, .pieces = {kReply}, .after = kStored},
    };
}

} // namespace pavonix::e2e
