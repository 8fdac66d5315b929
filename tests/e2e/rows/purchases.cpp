// Purchases: the form and the token in the request, and the record filled in from the reply.
// Header values keep the space after the colon.
#include "rows.h"

#include "driver/device_key.h"

namespace pavonix::e2e {

namespace {

const std::string kBuyRequest = "POST /buy HTTP/1.1\r\n"
                                "Host: 127.0.0.1\r\n"
                                "Accept: */*\r\n"
                                "User-Agent: Handheld/1.0\r\n"
                                "Connection: Keep-Alive\r\n"
                                "Content-Type: application/x-www-form-urlencoded\r\n"
                                "User-Serial: S-0815\r\n"
                                "User-ID: 42\r\n"
                                "User-Cert: {token}\r\n"
                                "Content-Length: 19\r\n"
                                "\r\n"
                                "type=1&id=7&force=0\r\n";

const std::string kOk = Head({"HTTP/1.1 200 OK", "Content-Length: 0"});

std::string ProfileWith(const std::string &publicKey, const std::string &privateKey)
{
    return kIdentity + ("Public-Key: " + publicKey) + "\nPrivate-Key: " + privateKey + "\n";
}

Scenario Purchase(const RowName &name, const std::string &reply)
{
    return {.name = name,
            .function = Export::kBuy,
            .words = {0, 0, 1, 7, 0},
            .url = u"http://127.0.0.1/buy",
            .pieces = {reply},
            .ending = Ending::kCloses,
            .request = kBuyRequest};
}

// A purchase that is signed with `key` and gets this reply.
Scenario Signed(const RowName &name, const DeviceKey &key, const std::string &reply, int result, const Record &record)
{
    Scenario row = Purchase(name, reply);
    row.profile = ProfileWith(key.PublicXml(), key.PrivateXml());
    row.result = result;
    row.signer = &key;
    row.record = record;
    return row;
}

// An accepted purchase with these keys, by a newly loaded library.
Scenario Keys(const RowName &name, const std::string &publicKey, const std::string &privateKey, const DeviceKey *signer)
{
    Scenario row = Purchase(name, kOk);
    row.freshLibrary = true;
    row.profile = ProfileWith(publicKey, privateKey);
    row.signer = signer;
    return row;
}

Scenario NotSent(const RowName &name, const std::u16string &url, Server server)
{
    Scenario row = Purchase(name, "");
    row.url = url;
    row.server = server;
    row.request = std::nullopt;
    row.result = 0;
    return row;
}

Scenario WithRequest(Scenario row, const std::vector<int> &words, const std::u16string &url, const std::string &request)
{
    row.words = words;
    row.url = url;
    row.request = request;
    return row;
}

// `head` with a line of this name added, so that it has 1024 bytes.
std::string Filled(const std::string &head, const std::string &name)
{
    const std::size_t room = 1024 - head.size() - name.size() - 4;
    return head.substr(0, head.size() - 2) + name + ": " + std::string(room, 'm') + "\r\n\r\n";
}

std::u16string Value(std::size_t letters)
{
    return u" " + std::u16string(letters, u'm');
}

// The private key without its last parts, as after an interrupted copy.
std::string CutOff(const std::string &xml, const std::string &last)
{
    return xml.substr(0, xml.find(last) + last.size());
}

std::vector<Scenario> Replies(const DeviceKey &key)
{
    const std::string plain = Head({"HTTP/1.1 403 Forbidden", "X-Error-Code: 12"});   // 44 bytes
    const std::string skewed = Head({"HTTP/1.1 403 Forbidden", "X-Error-Code: 906"}); // 45 bytes
    const std::string wordy =
        Head({"HTTP/1.1 403 No", "X-Error-Code: 906", "X-Error-Message: " + std::string(400, 'm')});
    return {
        Signed("accepted", key, kOk, 200, {}),
        Signed("accepted_with_error_headers", key,
               Head({"HTTP/1.1 200 OK", "X-Error-Code: 906", "X-Error-Message: m", "X-Server-Timestamp: t"}), 200, {}),
        Signed("refused_for_the_clock", key,
               Head({"HTTP/1.1 403 Forbidden", "X-Error-Code: 906", "X-Error-Message: The clock is off",
                     "X-Server-Timestamp: 2026-3-5 9:7:3.042"}),
               403, {906, u" The clock is off", {}, u" 2026-3-5 9:7:3.042"}),
        Signed("refused_for_another_reason", key,
               Head({"HTTP/1.1 402 Payment Required", "X-Error-Message: Too dear", "X-Server-Timestamp: 2026-3-5",
                     "X-Error-Code: 12"}),
               402, {12, u" Too dear", {}, {}}),
        Signed("refused_with_a_negative_code_and_no_message", key, Head({"HTTP/1.1 403 No", "X-Error-Code:-3"}), 403,
               {-3, {}, {}, {}}),
        Signed("refused_with_an_empty_message", key, Head({"HTTP/1.1 403 No", "X-Error-Code: 5", "X-Error-Message:"}),
               403, {5, u"", {}, {}}),
        Signed("refused_for_the_clock_without_texts", key, skewed, 403, {906, {}, {}, {}}),
        Signed("no_code_takes_the_body_for_the_message", key,
               Head({"HTTP/1.1 500 Internal Server Error", "Content-Length: 12"}) + "Out of order", 500,
               {0, {}, u"Out of order", {}}),
        Signed("code_0_replaces_the_message_by_the_body", key,
               Head({"HTTP/1.1 500 Oops", "X-Error-Code: none", "X-Error-Message: hidden", "Content-Length: 9"}) +
                   "Shut down and more",
               500, {0, u" hidden", u"Shut down", {}}),
        Signed("messages_in_the_code_page", key,
               Head({"HTTP/1.1 403 No", "X-Error-Code: 906", "X-Error-Message: G\xfcnstig \x80 5 \x96 \x8Eut",
                     "X-Server-Timestamp: \xdc"}),
               403, {906, u" G\u00fcnstig \u20ac 5 \u2013 \u017dut", {}, u" \u00dc"}),
        Signed("error_headers_are_found_in_the_body_too", key,
               Head({"HTTP/1.1 403 No", "Content-Length: 47"}) + "X-Error-Code: 5\r\nX-Error-Message: in the body\r\n",
               403, {5, u" in the body", {}, {}}),
        Signed("message_without_line_end_is_ignored", key,
               Head({"HTTP/1.1 403 No", "X-Error-Code: 5"}) + "X-Error-Message: no end", 403, {5, {}, {}, {}}),
        Signed("longest_message", key, Filled(plain, "X-Error-Message"), 403, {12, Value(961), {}, {}}),
        Signed("longest_timestamp", key, Filled(skewed, "X-Server-Timestamp"), 403, {906, {}, {}, Value(957)}),
        Signed("long_message_and_timestamp", key, Filled(wordy, "X-Server-Timestamp"), 403,
               {906, Value(400), {}, Value(545)}),
        // The request was sent, so the record has code 0 and an empty body.
        Signed("purchase_without_a_reply", key, "", 0, {0, {}, u"", {}}),
        Signed("longest_body_as_message", key, Head({"HTTP/1.1 500 "}) + std::string(3000, 'm'), 500,
               {0, {}, std::u16string(1007, u'm'), {}}),
        Signed("incomplete_head_is_the_message_without_its_first_two_bytes", key,
               "HTTP/1.1 5 " + std::string(1013, 'm'), 0, {0, {}, u"TP/1.1 5 " + std::u16string(1013, u'm'), {}}),
    };
}

std::vector<Scenario> Requests(const DeviceKey &key)
{
    std::string extremes = kBuyRequest, root = kBuyRequest;
    extremes.replace(extremes.find("19\r\n"), std::string::npos,
                     "43\r\n\r\ntype=%2D2147483648&id=2147483647&force=%2D1\r\n");
    root.replace(0, root.find(" HTTP"), "POST ");
    const Scenario accepted = Signed("negative_words_are_escaped", key, kOk, 200, {});
    std::vector<Scenario> rows = {
        WithRequest(accepted, {9, -9, -2147483647 - 1, 2147483647, -1}, accepted.url, extremes),
        WithRequest(accepted, accepted.words, u"http://127.0.0.1/", root),
    };
    rows[1].name = "address_of_one_slash_sends_an_empty_target";
    return rows;
}

std::vector<Scenario> KeyRows(const DeviceKey &key)
{
    static const DeviceKey small(512), large(2048);
    const std::string publicXml = key.PublicXml(), privateXml = key.PrivateXml();
    return {
        Keys("keys_of_1024_bits", publicXml, privateXml, &key),
        Keys("keys_of_512_bits_need_two_blocks", small.PublicXml(), small.PrivateXml(), &small),
        Keys("no_public_key", "", privateXml, &key),
        Keys("empty_keys", "", "", nullptr),
        Keys("private_key_that_is_not_xml", publicXml, "not a key", nullptr),
        Keys("private_key_cut_off", publicXml, CutOff(privateXml, "</P>"), nullptr),
        Keys("public_key_in_the_private_key_s_place", publicXml, publicXml, nullptr),
        Keys("private_key_in_too_long_a_line", "", large.PrivateXml(), nullptr),
    };
}

} // namespace

std::vector<Scenario> PurchaseRows()
{
    static const DeviceKey key(1024);
    std::vector<Scenario> rows = {
        NotSent("purchase_refused_connection", u"http://127.0.0.1/buy", Server::kRefuses),
        NotSent("purchase_without_path", u"http://127.0.0.1", Server::kReplies),
        NotSent("purchase_by_another_scheme", u"https://127.0.0.1/buy", Server::kReplies),
        NotSent("purchase_address_too_long", u"http://127.0.0.1/" + std::u16string(239, u'p'), Server::kReplies),
    };
    for (const auto &group : {Replies(key), Requests(key), KeyRows(key)}) {
        rows.insert(rows.end(), group.begin(), group.end());
    }
    return rows;
}

} // namespace pavonix::e2e
