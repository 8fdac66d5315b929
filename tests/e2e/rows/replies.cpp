// Correct and odd heads of replies: the status, the announced length, the head's end.
#include "rows.h"

namespace pavonix::e2e {

namespace {

const Tree kOld = {{"list.xml", "old"}};

// A reply without a body to store: the old file stays.
Scenario Status(const RowName &name, const std::string &reply, int result)
{
    return {
        .name = name, .before = kOld, .pieces = {reply}, .ending = Ending::kCloses, .result = result, .after = kOld};
}

// Status 200; `stored` is the new file.
Scenario Stored(const RowName &name, const std::string &reply, const std::string &stored)
{
    return {.name = name, .before = kOld, .pieces = {reply}, .after = {{"list.xml", stored}}};
}

Scenario StoredToTheEnd(const RowName &name, const std::string &reply, const std::string &stored)
{
    Scenario row = Stored(name, reply, stored);
    row.ending = Ending::kCloses;
    return row;
}

// A head of `size` bytes in all that announces `length` bytes.
std::string HeadOfSize(std::size_t size, const std::string &length)
{
    const std::string start = "HTTP/1.1 200 OK\r\nContent-Length: " + length + "\r\nX-Padding: ";
    return start + std::string(size - start.size() - 4, 'p') + "\r\n\r\n";
}

std::string Lengths(const std::vector<std::string> &lines)
{
    std::vector<std::string> all = {"HTTP/1.1 200 OK"};
    all.insert(all.end(), lines.begin(), lines.end());
    return Head(all) + "hello, world";
}

} // namespace

std::vector<Scenario> ReplyRows()
{
    const std::string body = Bytes(3000);
    const std::string beyond = Lengths({"Content-Length: 4294967301"}) + body;
    const std::string negative = Lengths({"Content-Length: -1"}) + body;
    return {
        Stored("http_1_0", Head({"HTTP/1.0 200 Fine", "Content-Length: 2"}) + "ok", "ok"),
        Status("part_of_the_page", Head({"HTTP/1.1 206 Partial Content", "Content-Length: 2"}) + "ok", 206),
        Status("not_modified", Head({"HTTP/1.1 304 Not Modified"}), 304),
        Status("not_found_with_a_page", Head({"HTTP/1.0 404 Not Found", "Content-Length: 3000"}) + body, 404),
        Status("server_error", Head({"HTTP/1.1 500 Internal Server Error", "Content-Length: 4"}) + "oops", 500),
        Status("status_of_one_digit", Head({"HTTP/1.1 7 Odd"}), 7),
        Status("status_of_one_digit_at_the_line_end", Head({"HTTP/1.1 7"}), 7),
        Status("status_of_two_digits", Head({"HTTP/1.1 20"}), 20),
        Status("status_after_two_spaces", Head({"HTTP/1.1  200 OK"}), 20),
        Status("negative_status", Head({"HTTP/1.1 -12 OK"}), -12),
        Status("status_of_letters", Head({"HTTP/1.1 abc OK"}), 0),
        Status("status_zero_passes_through", Head({"HTTP/1.1 0 Zero"}), 0),
        Status("status_one_passes_through", Head({"HTTP/1.1 1 One"}), 1),
        Status("space_ends_the_status_line", Head({"HTTP/1.1 "}), 0),
        Status("no_space_at_all", "HTTP/1.1\r\nServer:x\r\n\r\n", 0),
        Stored("status_of_four_digits", Head({"HTTP/1.1 2001 OK", "Content-Length: 2"}) + "ok", "ok"),
        Status("space_in_a_later_line_only", Head({"HTTP/1.1", "X: 200", "Content-Length: 2"}) + "ok", 0),
        Status("space_after_a_bare_line_feed_only", "HTTP/1.1\nX: 200\r\n\r\n", 0),
        Stored("status_after_an_empty_line", "\r\n" + Head({"HTTP/1.1 200 OK", "Content-Length: 2"}) + "ok", "ok"),
        Stored("status_after_a_leading_space", Head({" 200 OK", "Content-Length: 2"}) + "ok", "ok"),
        Status("blank_line_first", "\r\n\r\n" + Head({"HTTP/1.1 200 OK"}), 0),

        Status("head_without_its_end", "HTTP/1.1 200 OK\r\nContent-Length: 5\r\n", 0),
        Status("head_without_its_end_of_1024_bytes", "HTTP/1.1 200 OK\r\nX: " + std::string(2000, 'x'), 0),
        Status("bare_line_feeds_do_not_end_the_head", "HTTP/1.1 200 OK\nContent-Length: 5\n\nhello", 0),
        {.name = "head_in_two_segments",
         .before = kOld,
         .pieces = {"HTTP/1.1 200 OK\r\nContent-", "Length: 5\r\n\r\nhello"},
         .result = 0,
         .after = kOld},
        Stored("head_of_1023_bytes", HeadOfSize(1023, "2000") + body.substr(0, 2000), body.substr(0, 2000)),
        Stored("head_of_exactly_1024_bytes", HeadOfSize(1024, "2000") + body.substr(0, 2000), body.substr(0, 2000)),
        Stored("head_of_exactly_1024_bytes_and_length_0", HeadOfSize(1024, "0") + "never read", ""),
        Status("head_of_1025_bytes", HeadOfSize(1025, "5") + "hello", 0),

        Stored("length_without_space", Lengths({"Content-Length:5"}), "hello"),
        Stored("length_with_spaces_and_a_tail", Lengths({"Content-Length:   5 bytes"}), "hello"),
        Stored("the_first_of_two_lengths_counts", Lengths({"Content-Length: 5", "Content-Length: 2"}), "hello"),
        Stored("name_inside_an_earlier_name_counts", Lengths({"X-Content-Length: 2", "Content-Length: 5"}), "he"),
        Stored("name_in_an_earlier_value_hides_the_length", Lengths({"Vary: Content-Length", "Content-Length: 5"}),
               FirstReception(Lengths({"Vary: Content-Length", "Content-Length: 5"}))),
        Stored("name_without_colon", Lengths({"Content-Length 5"}), FirstReception(Lengths({"Content-Length 5"}))),
        Stored("length_in_lower_case_is_ignored", Lengths({"content-length: 5"}),
               FirstReception(Lengths({"content-length: 5"}))),
        Stored("length_of_letters_is_ignored", Lengths({"Content-Length: five"}),
               FirstReception(Lengths({"Content-Length: five"}))),
        StoredToTheEnd("negative_length_reads_to_the_end", negative, negative.substr(negative.find("hello"))),
        StoredToTheEnd("length_beyond_32_bits_reads_to_the_end", beyond, beyond.substr(beyond.find("hello"))),
    };
}

} // namespace pavonix::e2e
