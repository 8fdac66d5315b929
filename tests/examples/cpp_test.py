"""The C++ caller, built as C++98 for both desktops and run with the 64-bit DLL under Wine."""

import os
import subprocess

from scripted_shop import ORIGIN, SOURCE, ExampleTest, reply, run


class CppTest(ExampleTest):
    def test_compiles_and_shops(self):
        program = self.folder / "shop.exe"
        for machine in ("i686", "x86_64"):
            self.assertEqual(run(f"{machine}-w64-mingw32-g++", "-std=c++98", "-pedantic-errors", "-Wall", "-Wextra",
                                 "-Wshadow", "-Werror", "-Wno-cast-function-type", "-municode", "-static",
                                 "-I", ORIGIN / "include", ORIGIN / "examples/cpp/shop.cpp", "-o", program, "-lws2_32"),
                             (0, []))
        page = b"<goods>" + b"x" * 5000 + b"</goods>"
        refusal = reply("403 Forbidden", b"<error/>", X_Error_Code="906", X_Error_Message="The clock is off",
                        X_Server_Timestamp="2026-11-21 9:7:3.042")
        port = self.start_shop(reply("200 OK", page), reply("200 OK", b"<good>\0"), refusal)
        library = "Z:" + os.environ["PAVONIX_WINDOWS_DLL"].replace("/", "\\")
        self.assertEqual(run(os.environ["WINE64"], program, library, "shop\\profile", "new", "http://127.0.0.1/shop",
                             port, cwd=self.folder, stderr=subprocess.DEVNULL),
                         (1, ["list: 200, new\\list.xml is complete", "good: 200, new\\good.xml is missing or incomplete",
                              "buy: 403, code 906: The clock is off", "the server's time: 2026-11-21 9:7:3.042"]))
        self.assertEqual((self.folder / "new/list.xml").read_bytes(), page)
        self.assertEqual([request.split(" HTTP")[0] for request in self.requests],
                         ["GET /shop/list?type=1&category=1&sort=4&start=0&max=10", "GET /shop/good?type=1&id=7",
                          "POST /shop/buy"])
        self.assertTrue(self.requests[2].endswith("\r\n\r\ntype=1&id=7&force=0\r\n"))

    def test_reports_why_the_library_cannot_be_loaded(self):
        program = self.folder / "shop.exe"
        self.assertEqual(run("x86_64-w64-mingw32-g++", "-municode", "-static", "-I", ORIGIN / "include",
                             ORIGIN / "examples/cpp/shop.cpp", "-o", program, "-lws2_32"), (0, []))
        narrow = self.folder / "narrow.dll"
        self.assertEqual(run("i686-w64-mingw32-gcc", "-shared", "-x", "c", "/dev/null", "-o", narrow), (0, []))
        for library, words in (("narrow.dll", "not for a program of 64 bits"), ("none.dll", "was not found"),
                               ("ws2_32.dll", "cannot be loaded: error 127")):
            code, lines = run(os.environ["WINE64"], program, library, "p", ".", "http://127.0.0.1/shop", 9,
                              cwd=self.folder, stderr=subprocess.DEVNULL)
            self.assertEqual((code, len(lines)), (3, 1))
            self.assertIn(f"{library} {words}" if words[0] != "n" else words, lines[0])

    def test_keeps_the_winsock_of_its_application(self):
        program = self.folder / "own_winsock.exe"
        self.assertEqual(run("x86_64-w64-mingw32-g++", "-municode", "-static", "-I", ORIGIN / "include",
                             "-I", ORIGIN / "examples/cpp", SOURCE / "tests/examples/own_winsock.cpp", "-o", program,
                             "-lws2_32"), (0, []))
        self.assertEqual(run(os.environ["WINE64"], program, os.environ["PAVONIX_WINDOWS_DLL"], cwd=self.folder,
                             stderr=subprocess.DEVNULL), (0, []))
