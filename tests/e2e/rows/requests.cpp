// The bytes of a download's request: the two queries, forms of the URL, the port.
#include "rows.h"

namespace pavonix::e2e {

namespace {

const std::string kReply = Announce(6, "<xml/>");
const Tree kStored = {{"list.xml", "<xml/>"}};

// The usual request with other first two lines.
std::string RequestOf(const std::string &target, const std::string &host)
{
    const std::string usual = kListRequest;
    return "GET " + target + " HTTP/1.1\r\nHost: " + host + usual.substr(usual.find("\r\nAccept"));
}

Scenario Address(const RowName &name, const std::u16string &url, const std::string &path, const std::string &host)
{
    return {.name = name,
            .url = url,
            .pieces = {kReply},
            .request = RequestOf(path + "?type=1&category=2&sort=3&start=4&max=5", host),
            .after = kStored};
}

Scenario NotSent(const RowName &name, const std::u16string &url)
{
    return {.name = name, .before = kStored, .url = url, .request = std::nullopt, .result = 0, .after = kStored};
}

} // namespace

std::vector<Scenario> RequestRows()
{
    const std::u16string longest = u"http://127.0.0.1/" + std::u16string(199, u'p'); // 255 bytes with its query
    return {
        {.name = "list_of_goods", .pieces = {kReply}, .request = kListRequest, .after = kStored},
        {.name = "one_good",
         .function = Export::kGood,
         .words = {0, 0, 3, 42},
         .target = u"good.xml",
         .pieces = {kReply},
         .request = RequestOf("/goods?type=3&id=42", "127.0.0.1"),
         .after = {{"good.xml", "<xml/>"}}},
        {.name = "list_numbers_at_their_limits_and_reserved_words_ignored",
         .words = {-1, 99, -2147483647 - 1, 2147483647, -1, 0, 100},
         .pieces = {kReply},
         .request = RequestOf("/goods?type=-2147483648&category=2147483647&sort=-1&start=0&max=100", "127.0.0.1"),
         .after = kStored},
        Address("a_port_in_the_address_goes_into_the_host_line_only", u"http://127.0.0.1:8080/goods", "/goods",
                "127.0.0.1:8080"),
        Address("address_without_scheme", u"127.0.0.1:8080/goods", "/goods", "127.0.0.1:8080"),
        Address("scheme_in_capitals", u"HTTP://127.0.0.1/goods", "/goods", "127.0.0.1"),
        Address("host_by_name", u"http://localhost/goods", "/goods", "localhost"),
        Address("path_of_one_slash", u"http://127.0.0.1/", "/", "127.0.0.1"),
        Address("path_with_double_slashes", u"http://127.0.0.1//shop//goods", "//shop//goods", "127.0.0.1"),
        Address("address_beyond_ascii_in_the_code_page_and_outside",
                u"http://127.0.0.1/k\u00e4se/\u20ac/\u732b\u0105\uff21\u03a9\U0001f600", "/k\xe4se/\x80/?????",
                "127.0.0.1"),
        Address("longest_address_that_fits", longest, "/" + std::string(199, 'p'), "127.0.0.1"),
        NotSent("address_one_byte_too_long_with_its_query", longest + u"p"),
        NotSent("address_too_long_by_far", u"http://127.0.0.1/" + std::u16string(5000, u'\u732b')),
        {.name = "port_above_65535", .portOffset = 65536, .pieces = {kReply}, .after = kStored},
        {.name = "negative_port", .portOffset = -65536, .pieces = {kReply}, .after = kStored},
    };
}

} // namespace pavonix::e2e
