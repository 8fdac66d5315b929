"""What each archive of the kit holds: place in the archive, and where it comes from, in the source tree if not elsewhere."""

PAGES = ["README.md", "CHANGELOG.md", "CONTRIBUTING.md", "SECURITY.md", "docs/*.md"]
LICENCES = {"LICENSE": "LICENSE", "licenses/LibTomMath.txt": "licenses/LibTomMath.txt"}
# those that ask to be passed on with pavonix.exe, which holds code of these Debian packages
PROGRAM_LICENCES = {f"licenses/pavonix.exe/{package}.txt": f"/usr/share/doc/{package}/copyright"
                    for package in ("libcli11-dev", "nlohmann-json3-dev", "mingw-w64-x86-64-dev")}
SAMPLE_PROFILE = {"profile/sample.profile": "packaging/sample/sample.profile",
                  "profile/sample.profile.pub.xml": "packaging/sample/sample.profile.pub.xml"}
HEADER = {"include/pavonix/pavonix.h": "include/pavonix/pavonix.h"}
CPP_EXAMPLE = {f"examples/cpp/{name}": f"examples/cpp/{name}" for name in ("shop.cpp", "shop_client.h")}
CSHARP_EXAMPLE = {f"examples/csharp/{name}": f"examples/csharp/{name}" for name in ("PavonixClient.cs", "Shop.cs")}
C_EXAMPLE = {f"examples/c/{name}": f"examples/c/{name}" for name in ("shop.c", "buy.c")}


def library(folder, build):
    """The DLL of one build with what links to it."""
    names = ["PAVONIX.dll", "PAVONIX.lib", "libPAVONIX.dll.a", "PAVONIX.def", "PAVONIX.map"]
    return {folder + name: f"build/{build}/{name}" for name in names} | {
        folder + "trace/PAVONIX.dll": f"build/{build}/trace/PAVONIX.dll"}


COMMON = LICENCES | SAMPLE_PROFILE | HEADER | CPP_EXAMPLE | CSHARP_EXAMPLE
ARCHIVES = {
    "ce-armv4": COMMON | library("", "ce-armv4") | {
        "examples/cpp/ShopCe.vcproj": "packaging/vs2005/ShopCe.vcproj",
        "examples/csharp/ShopCe.csproj": "packaging/vs2005/ShopCe.csproj"},
    "windows": COMMON | PROGRAM_LICENCES | C_EXAMPLE | library("x64/", "windows-x64") | library("x86/", "windows-x86") | {
        "x64/pavonix.exe": "build/windows-x64/pavonix.exe",
        "examples/cpp/Shop.vcproj": "packaging/vs2005/Shop.vcproj",
        "examples/csharp/Shop.csproj": "packaging/vs2005/Shop.csproj"},
}
