// The stored part of a body, by its announced length and its segments. The first reception
// takes 1024 bytes. Heads with lengths of three and four digits have 40 and 41 bytes, which
// leaves 984 and 983 bytes for the body.
#include "rows.h"

namespace pavonix::e2e {

namespace {

Scenario Row(const RowName &name, const std::vector<std::string> &pieces, const std::string &stored,
             Ending ending = Ending::kWaits)
{
    return {.name = name, .pieces = pieces, .ending = ending, .after = {{"list.xml", stored}}};
}

// `first`, then each byte of `rest`.
std::vector<std::string> Trickled(const std::string &first, const std::string &rest)
{
    std::vector<std::string> pieces = {first};
    for (const char byte : rest) {
        pieces.emplace_back(1, byte);
    }
    return pieces;
}

} // namespace

std::vector<Scenario> BodyRows()
{
    const std::string body = Bytes(1 << 20);
    const auto first = [&](std::size_t count) { return body.substr(0, count); };
    const std::string bare = Head({"HTTP/1.1 200 OK"}); // 19 bytes
    return {
        Row("body_of_0_bytes_stores_the_empty_rest_of_the_first_reception", {Announce(0, "")}, std::string(986, '\0')),
        Row("body_of_1_byte", {Announce(1, "x")}, "x"),
        Row("body_one_below_the_first_reception", {Announce(983 - 1, first(982))}, first(982)),
        Row("body_exactly_up_to_the_first_reception", {Announce(984, first(984))}, first(984)),
        Row("body_one_above_the_first_reception", {Announce(985, first(985))}, first(985)),
        Row("body_of_two_receptions", {Announce(983 + 1024, first(983 + 1024))}, first(983 + 1024)),
        Row("body_of_5000_bytes", {Announce(5000, first(5000))}, first(5000)),
        Row("body_of_1_mb", {Announce(body.size(), body)}, body),

        Row("announced_shorter_within_the_first_reception", {Announce(10, first(500))}, first(10)),
        Row("announced_shorter_keeps_all_of_the_last_reception", {Announce(1000, first(3000))}, first(983 + 1024)),
        Row("announced_longer_than_sent", {Announce(5000, first(2000))}, first(2000), Ending::kCloses),
        Row("announced_longer_than_a_short_first_reception", {Announce(5000, first(300))},
            first(300) + std::string(683, '\0'), Ending::kCloses),
        Row("no_length_stores_the_first_reception", {bare + first(300)}, first(300) + std::string(705, '\0'),
            Ending::kCloses),
        Row("no_length_and_a_long_body", {bare + first(3000)}, first(1005), Ending::kCloses),
        Row("length_0_and_a_body", {Announce(0, first(5))}, first(5) + std::string(981, '\0')),

        Row("body_after_the_head_s_segment_is_stored_as_zeros", {Announce(100, ""), first(100)},
            std::string(100, '\0')),
        Row("body_cut_inside_the_first_reception", {Announce(900, first(400)), body.substr(400, 500)},
            first(400) + std::string(500, '\0')),
        Row("long_body_after_the_head_s_segment", {Announce(5000, ""), first(5000)},
            std::string(983, '\0') + first(4 * 1024)),
        Row("trickled_after_a_full_first_reception", Trickled(Announce(1100, first(983)), body.substr(983, 117)),
            first(1100)),
        Row("trickled_from_the_first_byte_on", Trickled(Announce(50, ""), first(50)), std::string(50, '\0')),
        Row("trickled_longer_than_announced", Trickled(Announce(1000, first(983)), body.substr(983, 40)), first(1000)),
        Row("reset_in_the_middle", {Announce(5000, first(2000))}, first(2000), Ending::kResets),
        Row("reset_after_the_head", {Announce(5000, "")}, std::string(983, '\0'), Ending::kResets),
    };
}

} // namespace pavonix::e2e
