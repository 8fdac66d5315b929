"""The Python verifier with the library's tokens and with forged ones."""

import base64
import datetime
import hashlib
import re
import sys

from scripted_shop import SOURCE, PROGRAMS, ExampleTest, reply, run
from shop_fixture import Key, time_text

VERIFIER = SOURCE / "examples/python/verify_token.py"


class TokenTest(ExampleTest):
    def use_key(self, key):
        lines = [line for line in self.profile.read_text().splitlines() if "-Key: " not in line]
        lines += ["Public-Key: " + key.public_xml(), "Private-Key: " + key.private_xml()]
        self.profile.write_text("\n".join(lines) + "\n")
        self.key_file = self.folder / "key.xml"
        self.key_file.write_text(key.public_xml())

    def token_of_the_library(self):
        port = self.start_shop(reply("200 OK", b"<sold/>"))
        code, lines = run(PROGRAMS / "pavonix", "buy", "--url", "http://127.0.0.1/shop/buy", "--port", port, "--profile",
                          self.profile, "--type", "1", "--id", "7")
        self.assertEqual(code, 0, lines)
        return re.search("\r\nUser-Cert: (.*)\r\n", self.requests[-1])[1]

    def verify(self, token, *more):
        return run(sys.executable, "-B", VERIFIER, self.key_file, token, *more)

    def test_tokens_of_the_library(self):
        # 512 bits take the text in one or two blocks; a longer key than the last does not fit a profile line
        for bits, blocks in ((512, (1, 2)), (1024, (1,)), (1488, (1,))):
            with self.subTest(bits=bits):
                self.use_key(Key(bits))
                token = self.token_of_the_library()
                self.assertIn(len(base64.b64decode(token)), [count * bits // 8 for count in blocks])
                code, [text] = self.verify(token)
                self.assertEqual(code, 0)
                made = datetime.datetime.strptime(text.partition(".")[0], "%Y-%m-%d %H:%M:%S")
                self.assertLess(abs((datetime.datetime.now() - made).total_seconds()), 60)

    def test_clock(self):
        key = Key(512)
        self.use_key(key)
        text = time_text(-20, "-042")
        self.assertGreater(len(text), 19)
        self.assertEqual(self.verify(key.token(text), "10"),
                         (3, [text, "the clock is off: refuse with error code 906 and the server's own time"]))
        self.assertEqual(self.verify(key.token(text), "60"), (0, [text]))

    def test_refused(self):
        key = Key(1024)
        self.use_key(key)
        token = self.token_of_the_library()
        raw = base64.b64decode(token)
        beyond = (key.n + 1).to_bytes(key.size, "big")
        table = [("", "not whole"), (token[:-4], "not whole"), ("*" + token, "not base64"),
                 (base64.b64encode(bytes([raw[0] ^ 1]) + raw[1:]).decode(), ""),
                 (base64.b64encode(beyond).decode(), "below the modulus"),
                 (base64.b64encode(raw + raw).decode(), "not a time"), (Key(1024).token(time_text()), ""),
                 (key.token(time_text(), lambda data=b"": hashlib.sha1(data or b"a label")), ""),
                 (key.token("hello"), "not a time"), (key.token("2026-02-30 1:2:3.004"), "not a time")]
        for wrong, reason in table:
            with self.subTest(reason, token=wrong):
                code, lines = self.verify(wrong)
                self.assertEqual((code, len(lines)), (1, 1))
                self.assertIn("not genuine: ", lines[0])
                self.assertIn(reason, lines[0])
