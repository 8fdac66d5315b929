"""The installed library, used like other projects do: by pkg-config, by find_package, and as a subdirectory."""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ["PAVONIX_PROGRAMS"])
VERSION = re.findall(r'PAVONIX_VERSION "(.*)"', (SOURCE / "include/pavonix/pavonix.h").read_text())[0]

CONSUMER = """
cmake_minimum_required(VERSION 3.16)
project(consumer C)
%s
add_executable(consumer consumer.c)
target_compile_options(consumer PRIVATE -fshort-wchar)
target_link_libraries(consumer PRIVATE Pavonix::pavonix)
"""
PROGRAM = """
#include <pavonix/pavonix.h>
#include <stdio.h>
int main(void)
{
    OneGoodRequest good = {0, 0, 1, 7};
    printf("%s %d\\n", PAVONIX_VERSION, GetOneGoodXml(L"none", &good, L"none", 1, L"https://127.0.0.1/x", 1));
    return 0;
}
"""


def run(*command, **environment):
    done = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          timeout=300, env={**os.environ, **environment})
    assert done.returncode == 0, done.stdout.decode()
    return done.stdout.decode()


class InstallTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.top = pathlib.Path(cls.folder.name)
        cls.prefix = cls.top / "prefix"
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        (cls.top / "consumer.c").write_text(PROGRAM)

    def expect_output(self, program):
        self.assertEqual(run(program, LD_LIBRARY_PATH=str(self.prefix / "lib")), f"{VERSION} 0\n")

    def build_with_cmake(self, name, finds, *options):
        source = self.top / name
        source.mkdir()
        (source / "consumer.c").write_text(PROGRAM)
        (source / "CMakeLists.txt").write_text(CONSUMER % finds)
        run("cmake", "-S", source, "-B", source / "build", "-G", "Ninja", *options)
        run("cmake", "--build", source / "build")
        self.expect_output(source / "build/consumer")
        return source / "build"

    def test_pkg_config(self):
        search = {"PKG_CONFIG_PATH": str(self.prefix / "lib/pkgconfig")}
        self.assertEqual(run("pkg-config", "--modversion", "pavonix", **search).strip(), VERSION)
        flags = run("pkg-config", "--cflags", "--libs", "pavonix", **search).split()
        program = self.top / "by-pkg-config"
        run("gcc", "-std=c89", "-fshort-wchar", self.top / "consumer.c", "-o", program, *flags)
        self.expect_output(program)

    def test_find_package(self):
        finds = f"find_package(Pavonix {VERSION} REQUIRED)"
        self.build_with_cmake("found", finds, f"-DCMAKE_PREFIX_PATH={self.prefix}")

    def test_a_subdirectory_adds_only_the_library(self):
        build = self.build_with_cmake("inside", f"add_subdirectory({SOURCE} pavonix)")
        targets = run("cmake", "--build", build, "--target", "help")
        self.assertNotRegex(targets, r"(?m)^(pavonix-shop|pavonix_trac\w+|unit_tests|bench)\b")
        run("cmake", "--install", build, "--prefix", self.top / "nothing")
        self.assertFalse((self.top / "nothing").exists())
        run("cmake", "-DPAVONIX_INSTALL=ON", build)
        run("cmake", "--install", build, "--prefix", self.top / "asked")
        self.assertTrue((self.top / "asked/lib/libpavonix.so").exists())
        self.assertFalse((self.top / "asked/bin").exists())

    def test_only_the_three_calls_are_visible(self):
        library = self.prefix / f"lib/libpavonix.so.{VERSION}"
        symbols = {line.split()[-1] for line in run("nm", "-D", "--defined-only", library).splitlines()}
        self.assertEqual(symbols, {"GetGoodListXml", "GetOneGoodXml", "GetBuyGood"})
        self.assertIn("[libpavonix.so.1]", run("readelf", "-d", library))
