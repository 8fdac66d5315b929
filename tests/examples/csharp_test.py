"""The C# client, a managed caller, against libpavonix.so on Mono."""


from scripted_shop import ORIGIN, PROGRAMS, ExampleTest, reply, run


class CsharpTest(ExampleTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.sources = [ORIGIN / "examples/csharp" / name for name in ("PavonixClient.cs", "Shop.cs")]

    def test_missing_library(self):
        self.build()
        code, lines = run("mono", self.program, "p", ".", "http://127.0.0.1/shop", 9, cwd=self.folder)
        self.assertEqual((code, lines[1:]), (3, ["PAVONIX.dll must be beside this program, and be made for 64 bits."]))

    def build(self):
        """Compiles the example as its oldest readers would."""
        self.program = self.folder / "Shop.exe"
        self.assertEqual(run("mcs", "-langversion:ISO-2", "-warn:4", "-warnaserror", f"-out:{self.program}",
                             *self.sources), (0, []))

    def shop(self, *replies):
        """Builds and runs the example; returns its exit code and its lines."""
        self.build()
        (self.folder / "Shop.exe.config").write_text(
            f'<configuration><dllmap dll="PAVONIX.dll" target="{PROGRAMS}/libpavonix.so"/></configuration>')
        port = self.start_shop(*replies)
        return run("mono", self.program, "shop\\profile", "shöp", "http://127.0.0.1/shop", port, cwd=self.folder)

    def test_download_and_refusals(self):
        page, good = b"<goods>" + b"x" * 5000 + b"</goods>", b"<good></good>"
        refusal = reply("403 Forbidden", b"<error/>", X_Error_Code="906", X_Error_Message="Die Uhr geht nach, 5 €",
                        X_Server_Timestamp="2026-11-21 9:7:3.042")
        refusal = refusal.replace(b"Timestamp: ", b"Timestamp:")  # so the record has no space there
        self.assertEqual(self.shop(reply("200 OK", page), reply("200 OK", good), refusal),
                         (1, ["list: 200, shöp\\list.xml is complete", "good: 200, shöp\\good.xml is complete",
                              "buy: 403, code 906: Die Uhr geht nach, 5 €",
                              "the server's time: 2026-11-21 9:7:3.042"]))
        self.assertEqual((self.folder / "shöp/list.xml").read_bytes(), page)
        self.assertEqual((self.folder / "shöp/good.xml").read_bytes(), good)
        self.assertEqual([request.split(" HTTP")[0] for request in self.requests],
                         ["GET /shop/list?type=1&category=1&sort=4&start=0&max=10", "GET /shop/good?type=1&id=7",
                          "POST /shop/buy"])
        self.assertTrue(self.requests[2].endswith("\r\n\r\ntype=1&id=7&force=0\r\n"))

        # the good is there now; a message of more than its room stays inside the record
        message = "m" * 900
        self.assertEqual(self.shop(reply("404 Not Found", b""), reply("409 Conflict", b"", X_Error_Code="-8",
                                                                        X_Error_Message=message)),
                         (1, ["list: 404, nothing was stored", "good: 1, shöp\\good.xml is complete",
                              f"buy: 409, code -8: {message}"]))

        self.assertEqual(self.shop(reply("200 OK", page[:-8]), reply("200 OK", b"<sold/>")),
                         (1, ["list: 200, shöp\\list.xml is missing or incomplete",
                              "good: 1, shöp\\good.xml is complete", "buy: 200, bought"]))
