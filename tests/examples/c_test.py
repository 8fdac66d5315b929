"""The header in the supported languages, and the C example."""

import textwrap

from scripted_shop import SOURCE, PROGRAMS, ExampleTest, reply, run

INCLUDE = ["-I", SOURCE / "include"]
STRICT = ["-pedantic-errors", "-Wall", "-Wextra", "-Wshadow", "-Werror"]
LANGUAGES = [("gcc", "c", "c89"), ("gcc", "c", "c17"), ("g++", "c++", "c++98"), ("g++", "c++", "c++20")]
TARGETS = [("", []), ("", ["-fshort-wchar"]), ("x86_64-w64-mingw32-", []), ("i686-w64-mingw32-", [])]
EXAMPLES = [SOURCE / "examples/c" / name for name in ("shop.c", "buy.c")]

# One negative size fails the compilation.
LAYOUT = """
#include <pavonix/pavonix.h>
#include <stddef.h>
#define MUST(name, holds) typedef char name[(holds) ? 1 : -1]
MUST(unit, sizeof(PavonixChar) == 2);
MUST(list, sizeof(GoodListRequest) == 28 && offsetof(GoodListRequest, max) == 24);
MUST(good, sizeof(OneGoodRequest) == 16 && offsetof(OneGoodRequest, id) == 12);
MUST(buy, sizeof(BuyGoodRequest) == 20 && offsetof(BuyGoodRequest, force) == 16);
MUST(code, offsetof(BuyGoodResult, errorCode) == 8 && offsetof(BuyGoodResult, message) == 12);
MUST(timestamp, offsetof(BuyGoodResult, serverTimestamp) == 524);
MUST(room, sizeof(BuyGoodResult) == 652 && sizeof(BuyGoodRoomyResult) == 2572);
"""


class CTest(ExampleTest):
    def test_header_and_example_compile(self):
        layout = self.folder / "layout.c"
        layout.write_text(LAYOUT)
        for compiler, language, standard in LANGUAGES:
            for prefix, options in TARGETS:
                wide_texts = prefix or options  # where L"text" has the type of the calls' texts
                for source in [layout, *EXAMPLES] if wide_texts else [layout]:
                    command = [prefix + compiler, "-x", language, f"-std={standard}", *STRICT, *options, *INCLUDE,
                               "-c", source, "-o", self.folder / "made.o"]
                    with self.subTest(" ".join(map(str, command))):
                        self.assertEqual(run(*command), (0, []))

    def test_wrong_arguments_do_not_compile(self):
        source = EXAMPLES[1].read_text()
        for options, text, needle in (
                ([], source, "GetBuyGood"),  # L"..." of 32-bit units
                (["-fshort-wchar", "-Werror"], source.replace("BuyGoodRoomyResult", "BuyGoodResult"), "PAVONIX_RESULT")):
            code, lines = run("gcc", "-x", "c", "-std=c89", *options, *INCLUDE, "-c", "-", "-o", "/dev/null",
                              input=text.encode())
            with self.subTest(needle):
                self.assertEqual(code, 1)
                self.assertTrue(any(needle in line for line in lines), lines)

    def test_readme_shows_a_part_of_the_example(self):
        part = (SOURCE / "README.md").read_text().partition("```c\n")[2].partition("```")[0]
        self.assertIn(textwrap.indent(part, "    "), EXAMPLES[0].read_text())

    def build(self, source, port, standard="c89", language="c"):
        program = self.folder / "try-shop"
        self.assertEqual(run("gcc" if language == "c" else "g++", "-x", language, f"-std={standard}", "-fshort-wchar",
                             "-fstack-protector-all", *INCLUDE, "-", "-o", program, "-L", PROGRAMS, "-lpavonix",
                             f"-Wl,-rpath,{PROGRAMS}", input=source.read_text().replace("8080", str(port)).encode()),
                         (0, []))
        return program

    def test_a_long_message_does_not_overrun_the_purchase(self):
        answer = reply("403 Forbidden", b"", X_Error_Code=77, X_Error_Message="m" * 700)
        program = self.build(EXAMPLES[1], self.start_shop(answer))
        self.assertEqual(run(program, cwd=self.folder), (1, ["not bought (403), code 77"]))

    def test_example_stores_a_page(self):
        body, short = b"<goods>" + bytes(range(256)) * 20 + b"</goods>", b"<goods></goods>"
        incomplete = (1, ["list.xml is missing or incomplete, though the status was 200"])
        ends = [(body, (0, ["stored list.xml"])), (short, (0, ["stored list.xml"])), (body[:-1], incomplete)]
        languages = [LANGUAGES[0], LANGUAGES[2]]
        port = self.start_shop(*[reply("200 OK", sent) for sent, _ in ends] * 2, reply("404 Not Found", b""),
                               reply("200 OK", body))
        for _, language, standard in languages:
            program = self.build(EXAMPLES[0], port, standard, language)
            for sent, expected in ends:
                self.assertEqual(run(program, cwd=self.folder), expected)
                self.assertEqual((self.folder / "list.xml").read_bytes(), sent)
        self.assertEqual(run(program, cwd=self.folder), (1, ["not stored: the call returned 404"]))
        (self.folder / "list.xml").unlink()
        (self.folder / "list.xml").mkdir()
        self.assertEqual(run(program, cwd=self.folder), incomplete)
        self.assertTrue(self.requests[0].startswith(
            "GET /shop/list?type=1&category=0&sort=0&start=0&max=10 HTTP/1.1\r\nHost: 127.0.0.1\r\n"))
