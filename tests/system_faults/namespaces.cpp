// Full or read-only disks and failing names, in namespaces of this process.
#include "system_faults/shop_calls.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>

namespace pavonix {

namespace {

// Without the right to create the namespaces, a user namespace may give it.
bool LeaveNamespaces()
{
    if (unshare(CLONE_NEWNS | CLONE_NEWNET) == 0) {
        return true;
    }
    const std::string user = std::to_string(geteuid()), group = std::to_string(getegid());
    const auto write = [](const char *name, const std::string &text) {
        return (std::ofstream(std::string("/proc/self/") + name) << text).flush().good();
    };
    return unshare(CLONE_NEWUSER | CLONE_NEWNS | CLONE_NEWNET) == 0 && write("setgroups", "deny") &&
           write("uid_map", "0 " + user + " 1") && write("gid_map", "0 " + group + " 1");
}

bool MakeMountsPrivate()
{
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0) {
        return true;
    }
    // The root of a chroot is not a mount point, so it is mounted below /proc, invisible to other namespaces.
    constexpr char kRoot[] = "/proc/fs";
    return mount("none", "/proc", nullptr, MS_PRIVATE, nullptr) == 0 &&
           mount("/", kRoot, nullptr, MS_BIND | MS_REC, nullptr) == 0 &&
           mount("none", kRoot, nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 && chroot(kRoot) == 0 && chdir("/") == 0;
}

bool StartLoopback()
{
    ifreq loopback = {};
    std::strcpy(loopback.ifr_name, "lo");
    loopback.ifr_flags = IFF_UP;
    return ioctl(socket(AF_INET, SOCK_DGRAM, 0), SIOCSIFFLAGS, &loopback) == 0;
}

// Created before the server, which must be inside them.
struct Namespaces {
    static int Make()
    {
        static const int error = LeaveNamespaces() && MakeMountsPrivate() && StartLoopback() ? 0 : errno;
        return error;
    }
    const int error = Make();
};

class SystemFaults : private Namespaces, public ShopCalls {
    void SetUp() override
    {
        if (error != 0) {
            GTEST_SKIP() << "skipped: no right to make namespaces (" << std::strerror(error) << ")";
        }
    }
};

TEST_F(SystemFaults, FullAndReadOnlyDisks)
{
    const std::string old = "old", body(70'000, 'x'), most(60'000, 'o');
    const struct {
        const char *name;
        std::optional<std::string> before;
        std::size_t filler; // of 64 KiB
        unsigned long flags;
        const char *target;
        std::optional<std::string> after;
    } rows[] = {
        {"full", std::nullopt, 65536, 0, "disk/target", ""},
        {"full before a folder is made", std::nullopt, 65536, 0, "disk/new/target", ""},
        {"becoming full", std::nullopt, 0, 0, "disk/target", body.substr(0, 65536)},
        {"becoming full after an old file was deleted", most, 0, 0, "disk/target", body.substr(0, 65536)},
        {"read-only", std::nullopt, 0, MS_RDONLY, "disk/target", std::nullopt},
        {"read-only with an old file", old, 0, MS_RDONLY, "disk/target", old},
        {"read-only, new folder", std::nullopt, 0, MS_RDONLY, "disk/new/target", std::nullopt},
    };
    const std::string disk = box.root() / "disk";
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        box.MakeFolder("disk");
        ASSERT_EQ(mount("none", disk.c_str(), "tmpfs", 0, "size=64k"), 0) << std::strerror(errno);
        if (row.before) {
            box.Write("disk/target", *row.before);
        }
        box.Write("disk/filler", std::string(row.filler, 'f'));
        ASSERT_EQ(mount("none", disk.c_str(), nullptr, MS_REMOUNT | row.flags, "size=64k"), 0);
        EXPECT_EQ(Good(70'000, box.Path(row.target)), 200);
        EXPECT_TRUE(box.Read(row.target) == row.after) << box.Read(row.target).value_or("nothing").size();
        EXPECT_EQ(umount(disk.c_str()), 0) << "a file is still open";
        EXPECT_EQ(Good(5, target), 200) << "the next call";
    }
}

// The resolver is a socket that receives queries and never replies.
TEST_F(SystemFaults, Names)
{
    const std::string label(63, 'h'), longest = label + "." + label + ".test";
    box.Write("hosts", "127.0.0.1 " + longest + "\nfd00::1 six.test\n");
    box.Write("resolv.conf", "nameserver 127.0.0.1\noptions timeout:1 attempts:1\nsearch .\n");
    box.Write("nsswitch.conf", "hosts: files dns\n");
    for (const std::string file : {"hosts", "resolv.conf", "nsswitch.conf"}) {
        ASSERT_EQ(mount((box.root() / file).c_str(), ("/etc/" + file).c_str(), nullptr, MS_BIND, nullptr), 0);
    }
    const int resolver = socket(AF_INET, SOCK_DGRAM, 0);
    const sockaddr_in address = {AF_INET, htons(53), {htonl(INADDR_LOOPBACK)}, {}};
    ASSERT_EQ(bind(resolver, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0) << std::strerror(errno);
    const struct {
        std::string host;
        int result;
        bool asked;
    } rows[] = {{longest, 200, false},
                {label + "h.test", 0, false}, // the label is too long for a query
                {"six.test", 0, true},        // without an IPv4 address
                {"unknown.test", 0, true}};
    for (const auto &[host, result, asked] : rows) {
        EXPECT_EQ(Good(5, target, std::u16string(host.begin(), host.end())), result) << host;
        char question[512];
        EXPECT_EQ(recv(resolver, question, sizeof question, MSG_DONTWAIT) > 0, asked) << host;
        while (recv(resolver, question, sizeof question, MSG_DONTWAIT) > 0) {
        }
    }
    close(resolver);
}

} // namespace

} // namespace pavonix
