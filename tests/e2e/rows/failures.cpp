// Calls without a reply: the result is 0 and the old file stays.
#include "rows.h"

namespace pavonix::e2e {

namespace {

const Tree kOld = {{"list.xml", "old"}};

Scenario NoReply(const RowName &name, Server server, Ending ending, std::optional<std::string> request)
{
    return {.name = name,
            .before = kOld,
            .server = server,
            .ending = ending,
            .request = std::move(request),
            .result = 0,
            .after = kOld};
}

Scenario NothingSent(const RowName &name, const std::u16string &url)
{
    return {.name = name, .before = kOld, .url = url, .request = std::nullopt, .result = 0, .after = kOld};
}

} // namespace

std::vector<Scenario> FailureRows()
{
    return {
        NoReply("no_reply", Server::kReplies, Ending::kCloses, kListRequest),
        NoReply("reset_before_the_reply", Server::kReplies, Ending::kResets, kListRequest),
        NoReply("never_accepted", Server::kNeverAccepts, Ending::kCloses, kListRequest),
        NoReply("refused_connection", Server::kRefuses, Ending::kCloses, std::nullopt),
        // Labels have at most 63 letters; a resolver refuses this one without a query.
        NothingSent("unknown_host", u"http://" + std::u16string(64, u'h') + u"/goods"),
        NothingSent("empty_address", u""),
        NothingSent("no_path_in_the_address", u"http://127.0.0.1"),
        NothingSent("no_host_in_the_address", u"http:///goods"),
        NothingSent("a_port_and_no_host_in_the_address", u"http://:8080/goods"),
        // the host would be valid if seven characters were skipped like "http://"
        NothingSent("other_scheme", u"ftp://x127.0.0.1/goods"),
        NothingSent("double_slash_after_an_address_without_scheme", u"127.0.0.1/a//b"),
        NothingSent("slashes_without_scheme", u"//127.0.0.1/goods"),
        NothingSent("secure_scheme", u"https://127.0.0.1/goods"),
        NothingSent("scheme_with_a_wrong_first_letter", u"xttp://127.0.0.1/goods"),
        // setting bit 5 turns these into the characters of "http://"
        NothingSent("a_control_character_for_the_colon", u"http\x1a//127.0.0.1/goods"),
        NothingSent("control_characters_for_the_slashes", u"http:\x0f\x0f"
                                                          u"127.0.0.1//goods"),
    };
}

} // namespace pavonix::e2e
