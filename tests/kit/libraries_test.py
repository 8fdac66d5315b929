"""The libraries from the archives: programs link to them and run."""

import os
import pathlib
import shutil
import subprocess

from scripted_shop import ExampleTest, reply, run

WINDOWS = pathlib.Path(os.environ["PAVONIX_UNPACKED"], "windows")
HEADERS = ["-I", WINDOWS / "include"]

# Needs no run-time library, because Microsoft's is not available here.
BARE = r"""
#include <pavonix/pavonix.h>
__declspec(dllimport) void __stdcall ExitProcess(unsigned);
void start(void)
{
    OneGoodRequest good = {0, 0, 1, 7};
    ExitProcess(40 + GetOneGoodXml(L"shop\\profile", &good, L"shop\\new.xml", 1, L"https://127.0.0.1/x", 1));
}
"""


class LibrariesTest(ExampleTest):
    def build(self, *command):
        self.assertEqual(run(*command, cwd=self.folder), (0, []))

    def run_beside_the_library(self, program):
        (self.folder / "PAVONIX.dll").write_bytes((WINDOWS / "x64/PAVONIX.dll").read_bytes())
        return run(os.environ["WINE64"], self.folder / program, cwd=self.folder, stderr=subprocess.DEVNULL)

    def test_gnu_tools_link_both_import_libraries(self):
        for library in ("PAVONIX.lib", "libPAVONIX.dll.a"):
            port = self.start_shop(reply("200 OK", b"<goods></goods>"))
            source = (WINDOWS / "examples/c/shop.c").read_text().replace("8080", str(port))
            (self.folder / "shop.c").write_text(source)
            for machine, folder in (("i686", "x86"), ("x86_64", "x64")):
                self.build(f"{machine}-w64-mingw32-gcc", *HEADERS, "shop.c", WINDOWS / folder / library, "-o", "shop.exe")
            self.assertEqual(self.run_beside_the_library("shop.exe"), (0, ["stored list.xml"]))
            self.assertEqual((self.folder / "list.xml").read_bytes(), b"<goods></goods>")

    def test_cmake_finds_the_library(self):
        shutil.copy(WINDOWS / "examples/c/shop.c", self.folder)
        (self.folder / "CMakeLists.txt").write_text(
            "cmake_minimum_required(VERSION 3.16)\nproject(shop C)\nfind_package(Pavonix 1.0 REQUIRED)\n"
            "add_executable(shop shop.c)\ntarget_link_libraries(shop Pavonix::pavonix)\n")
        for machine, processor in (("i686", "x86"), ("x86_64", "x64")):
            code, lines = run("cmake", "-S", self.folder, "-B", self.folder / processor, "-DCMAKE_SYSTEM_NAME=Windows",
                              f"-DCMAKE_C_COMPILER={machine}-w64-mingw32-gcc", f"-DPavonix_DIR={WINDOWS}/cmake")
            self.assertEqual(code, 0, lines)
            code, lines = run("cmake", "--build", self.folder / processor)
            self.assertEqual(code, 0, lines)
        self.assertEqual(self.run_beside_the_library("x64/shop.exe"), (1, ["not stored: the call returned 0"]))

    def test_clang_links_like_visual_studio(self):
        (self.folder / "bare.c").write_text(BARE)
        for machine, folder, mingw in (("i386", "x86", "i686"), ("x86_64", "x64", "x86_64")):
            with self.subTest(machine):
                self.build("clang", "--driver-mode=cl", f"--target={machine}-pc-windows-msvc", "/c", "/GS-",
                           f"/I{WINDOWS / 'include'}", "bare.c", "/Fobare.obj")
                self.build("lld-link", "/entry:start", "/subsystem:console", "/nodefaultlib", "/safeseh:no", "bare.obj",
                           WINDOWS / folder / "PAVONIX.lib", f"/usr/{mingw}-w64-mingw32/lib/libkernel32.a",
                           "/out:bare.exe")
        self.assertEqual(self.run_beside_the_library("bare.exe"), (40, []))
