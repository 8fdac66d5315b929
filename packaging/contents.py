"""The files of each archive of the kit: path in the archive to origin, which is in the source tree unless absolute."""

from components import COMPONENTS, components_of

# For people who have the kit and no source tree.
INDEX = "packaging/index.md"
PAGES = [INDEX, "CHANGELOG.md", "SECURITY.md",
         *(f"docs/{name}.md" for name in ("start", "results", "tools", "protocol", "token"))]
TEXTS = {"README.txt": "packaging/README.txt", "CHANGELOG.txt": "CHANGELOG.md"}
SAMPLE_PROFILE = {f"profile/{name}": f"packaging/sample/{name}" for name in ("sample.profile", "sample.profile.pub.xml")}
HEADER = {"include/pavonix/pavonix.h": "include/pavonix/pavonix.h"}
CPP_EXAMPLE = {f"examples/cpp/{name}": f"examples/cpp/{name}" for name in ("shop.cpp", "shop_client.h")}
CSHARP_EXAMPLE = {f"examples/csharp/{name}": f"examples/csharp/{name}" for name in ("PavonixClient.cs", "Shop.cs")}
C_EXAMPLE = {f"examples/c/{name}": f"examples/c/{name}" for name in ("shop.c", "buy.c")}
PYTHON_EXAMPLE = {"examples/python/verify_token.py": "examples/python/verify_token.py"}
CMAKE_PACKAGE = {"cmake/PavonixConfig.cmake": "packaging/windows/PavonixConfig.cmake",
                 "cmake/PavonixConfigVersion.cmake": "build/windows-x64/PavonixConfigVersion.cmake"}


def library(folder, build):
    """The DLL of one build, its map and import libraries, and the tracing DLL."""
    names = ["PAVONIX.dll", "PAVONIX.lib", "libPAVONIX.dll.a", "PAVONIX.def", "PAVONIX.map", "trace/PAVONIX.dll",
             "trace/PAVONIX.map"]
    return {folder + name: f"build/{build}/{name}" for name in names}


def licences(*builds):
    """Our licence, and those that must be passed on with the files of these builds."""
    names = {name for build in builds for name in components_of(build)}
    return {"LICENSE": "LICENSE", "licenses/LibTomMath.txt": "licenses/LibTomMath.txt"} | {
        f"licenses/{name}.txt": f"/usr/share/doc/{COMPONENTS[name].text}/copyright"
        for name in sorted(names) if COMPONENTS[name].text}


COMMON = TEXTS | SAMPLE_PROFILE | HEADER | CPP_EXAMPLE | CSHARP_EXAMPLE | PYTHON_EXAMPLE
# Each archive's builds, and its files.
BUILDS = {"ce-armv4": ["ce-armv4"], "windows": ["windows-x64", "windows-x86"]}
ARCHIVES = {
    "ce-armv4": COMMON | licences(*BUILDS["ce-armv4"]) | library("", "ce-armv4") | {
        "imports/coredll.def": "cmake/ce/coredll.def", "imports/ws2.def": "cmake/ce/ws2.def",
        "PavonixTest.exe": "build/ce-armv4/PavonixTest.exe",
        "examples/cpp/ShopCe.vcproj": "packaging/vs2005/ShopCe.vcproj",
        "examples/csharp/ShopCe.csproj": "packaging/vs2005/ShopCe.csproj"},
    "windows": COMMON | licences(*BUILDS["windows"]) | C_EXAMPLE | CMAKE_PACKAGE |
    library("x64/", "windows-x64") | library("x86/", "windows-x86") | {
        "demo.cmd": "packaging/windows/demo.cmd",
        "x64/pavonix.exe": "build/windows-x64/pavonix.exe",
        "x64/pavonix-shop.exe": "build/windows-x64/pavonix-shop.exe",
        "examples/cpp/Shop.vcproj": "packaging/vs2005/Shop.vcproj",
        "examples/csharp/Shop.csproj": "packaging/vs2005/Shop.csproj"},
}
# Each application's cabinet: the end of its name, the files for \Windows, and those for the application's own folder.
_LICENCES = ["LICENSE", "licenses/LibTomMath.txt"]
CABINETS = {
    "Pavonix": ("ce-armv4", ["build/ce-armv4/PAVONIX.dll"], _LICENCES),
    "PavonixTest": ("test-ce-armv4", [], ["build/ce-armv4/PavonixTest.exe", "build/ce-armv4/PAVONIX.dll", *_LICENCES]),
}
