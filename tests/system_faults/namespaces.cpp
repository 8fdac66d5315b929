// Disks and names as they are in the field, in namespaces of this process alone.
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

// Without the right to make the others, a user's own namespace may give it.
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
    // The root of a chroot is not a mount point, so it gets one below /proc, where no other namespace sees it.
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

// Made before the server, which is to live in them.
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

TEST_F(SystemFaults, DisksThatTakeNotAll)
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
        {"becoming full behind an old file", most, 0, 0, "disk/target", body.substr(0, 65536)},
        {"taking no changes", std::nullopt, 0, MS_RDONLY, "disk/target", std::nullopt},
        {"taking no changes, with an old file", old, 0, MS_RDONLY, "disk/target", old},
        {"taking no new folder", std::nullopt, 0, MS_RDONLY, "disk/new/target", std::nullopt},
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

// Of the resolver there is only the socket, which takes questions and says nothing.
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
                {label + "h.test", 0, false}, // a label too long to be asked for
                {"six.test", 0, true},        // which files and resolver have no IPv4 address of
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
