// Requests made from profile files, including odd and broken ones.
#include "rows.h"

namespace pavonix::e2e {

namespace {

constexpr char kDefaultAgent[] =
    "Mozilla/4.0 (compatible; MSIE 6.0; Windows NT 5.1; SV1; .NET CLR 2.0.50727; InfoPath.2; "
    ".NET CLR 3.0.4506.2152; .NET CLR 3.5.30729)";

std::string RequestAs(const std::string &agent, const std::string &serial, const std::string &id)
{
    return "GET /goods?type=1&category=2&sort=3&start=4&max=5 HTTP/1.1\r\n"
           "Host: 127.0.0.1\r\n"
           "Accept: */*\r\n"
           "User-Agent: " +
           agent + "\r\nConnection: Keep-Alive\r\nUser-Serial: " + serial + "\r\nUser-ID: " + id + "\r\n\r\n";
}

Scenario Row(const RowName &name, std::optional<std::string> profile, const std::string &request)
{
    return {.name = name,
            .profile = std::move(profile),
            .pieces = {Announce(6, "<xml/>")},
            .request = request,
            .after = {{"list.xml", "<xml/>"}}};
}

} // namespace

std::vector<Scenario> ProfileRows()
{
    using namespace std::string_literals;
    const std::string longSerial(1010, 's'); // "User-Serial: " and these make 1023
    const std::string longLine(1023, 'x');
    return {
        Row("no_profile", std::nullopt, RequestAs(kDefaultAgent, "", "0")),
        Row("empty_profile", "", RequestAs(kDefaultAgent, "", "0")),
        Row("default_user_agent", "User-Serial: S\nUser-Id: 7\n", RequestAs(kDefaultAgent, "S", "7")),
        Row("user_agent_key_without_value", "User-Agent: \nUser-Id: 7\n", RequestAs(kDefaultAgent, "", "7")),
        Row("last_line_without_line_feed", "User-Agent: U\n\n\nUser-Id: 7\nUser-Serial: S", RequestAs("U", "S", "7")),
        Row("carriage_returns_stay", "User-Agent: U\r\nUser-Serial: S\r\nUser-Id: 7\r\n", RequestAs("U\r", "S\r", "7")),
        Row("line_of_1023_characters", "User-Serial: " + longSerial + "\nUser-Id: 7\nUser-Agent: U\n",
            RequestAs("U", longSerial, "7")),
        Row("last_line_of_1023_characters", "User-Agent: U\nUser-Serial: " + longSerial,
            RequestAs("U", longSerial, "0")),
        Row("line_of_1024_characters_ends_the_reading",
            "User-Agent: U\nUser-Serial: " + longSerial + "s\nUser-Serial: S\nUser-Id: 7\n", RequestAs("U", "", "0")),
        Row("unknown_line_of_1023_characters", longLine + "\nUser-Serial: S\n", RequestAs(kDefaultAgent, "S", "0")),
        Row("unknown_line_of_1024_characters_ends_the_reading", "User-Id: 7\n" + longLine + "x\nUser-Serial: S\n",
            RequestAs(kDefaultAgent, "", "7")),
        Row("text_before_a_key", "X: 1 User-Serial: S\n# User-Id: 7\n", RequestAs(kDefaultAgent, "S", "7")),
        Row("key_inside_a_value_wins_by_order",
            "User-Serial: S\nUser-Agent: U\nUser-Serial: T User-Agent: V\nUser-No: 5 User-Id: 6\n",
            RequestAs("V", "S", "6")),
        Row("no_separator_after_the_key", "User-Serial=S\nX: User-Agent\nUser-Id:42\n",
            RequestAs("X: User-Agent", "User-Serial=S", "0")),
        Row("separators_inside_a_value", "User-Serial: a: b: c \n", RequestAs(kDefaultAgent, "a: b: c ", "0")),
        Row("the_last_of_equal_keys_counts", "User-Serial: 1\nUser-Id: 1\nUser-Serial: 2\nUser-Id: 2\n",
            RequestAs(kDefaultAgent, "2", "2")),
        Row("keys_are_case_sensitive", "user-serial: S\nUSER-ID: 7\nUser-agent: U\n",
            RequestAs(kDefaultAgent, "", "0")),
        Row("negative_id_with_spaces_and_a_tail", "User-Id:  \t-7x\n", RequestAs(kDefaultAgent, "", "-7")),
        Row("id_beyond_32_bits", "User-Id: 99999999999\n", RequestAs(kDefaultAgent, "", "2147483647")),
        Row("bytes_beyond_ascii_pass_as_they_are", "User-Agent: K\xe4se\x80\nUser-Serial: \xff\xfe\xa4\n",
            RequestAs("K\xe4se\x80", "\xff\xfe\xa4", "0")),
        Row("nul_ends_a_line_s_text", "User-Serial: a\0b\nX\0User-Id: 7\n"s, RequestAs(kDefaultAgent, "a", "0")),
    };
}

} // namespace pavonix::e2e
