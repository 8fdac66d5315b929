// After a call, the process holds no text of the private key. Run this with LD_BIND_NOW=1:
// lazy binding saves vector registers on the stack, and memcpy may have moved a part of a key
// through them.
#include "system_faults/shop_calls.h"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <link.h>
#include <set>
#include <unistd.h>
#include <vector>

namespace pavonix {

namespace {

constexpr char kMask = 0x55; // the test itself must not hold these texts
constexpr std::size_t kPieceLength = 16;

// Masked pieces of the private key's numbers in base64, as in the profile.
std::vector<std::string> MaskedPieces()
{
    static char line[8192];
    const int file = open(TEST_DATA_DIR "/device.profile", O_RDONLY);
    const ssize_t length = read(file, line, sizeof line);
    close(file);
    for (volatile char &c : line) {
        c = static_cast<char>(c ^ kMask);
    }
    const auto masked = [](std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), [](char c) { return static_cast<char>(c ^ kMask); });
        return text;
    };
    const std::string text(line, static_cast<std::size_t>(length));
    std::vector<std::string> pieces;
    for (const char *name : {"P", "Q", "DP", "DQ", "InverseQ", "D"}) {
        const std::size_t tag = text.find(masked("<" + std::string(name) + ">"));
        if (tag == std::string::npos) {
            continue;
        }
        const std::size_t start = tag + std::strlen(name) + 2, end = text.find(masked("</"), start);
        for (std::size_t at = start; at + kPieceLength <= end; at += kPieceLength) {
            pieces.push_back(text.substr(at, kPieceLength));
        }
    }
    return pieces;
}

bool IsAt(const volatile char *memory, const std::string &piece)
{
    for (std::size_t i = 0; i < piece.size(); ++i) {
        if (static_cast<char>(memory[i] ^ kMask) != piece[i]) {
            return false;
        }
    }
    return true;
}

// Returns the mappings of this process's writable memory that contain a piece.
std::multiset<std::string> CopiesIn(const std::vector<std::string> &pieces)
{
    std::multiset<std::string> copies;
    std::ifstream maps("/proc/self/maps");
    for (std::string mapping; std::getline(maps, mapping);) {
        std::uintptr_t start = 0, end = 0;
        char access[5] = {};
        if (std::sscanf(mapping.c_str(), "%lx-%lx %4s", &start, &end, access) != 3 || access[1] != 'w') {
            continue;
        }
        bool firsts[256] = {};
        for (const std::string &piece : pieces) {
            firsts[static_cast<unsigned char>(piece[0] ^ kMask)] = true;
        }
        for (std::uintptr_t at = start; at + kPieceLength <= end; ++at) {
            const auto *memory = reinterpret_cast<const volatile char *>(at);
            if (!firsts[static_cast<unsigned char>(*memory)]) {
                continue;
            }
            for (const std::string &piece : pieces) {
                if (IsAt(memory, piece)) {
                    copies.insert(mapping);
                }
            }
        }
    }
    return copies;
}

class KeyCopies : public ShopCalls {};

TEST_F(KeyCopies, TheLibraryIsBoundAtLoad)
{
    const link_map *map = nullptr;
    ASSERT_EQ(dlinfo(library, RTLD_DI_LINKMAP, static_cast<void *>(&map)), 0);
    bool now = false;
    for (const ElfW(Dyn) *entry = map->l_ld; entry->d_tag != DT_NULL; ++entry) {
        now = now || (entry->d_tag == DT_FLAGS && (entry->d_un.d_val & DF_BIND_NOW) != 0);
    }
    EXPECT_TRUE(now);
}

TEST_F(KeyCopies, ACallLeavesNone)
{
    const std::vector<std::string> pieces = MaskedPieces();
    ASSERT_GE(pieces.size(), 25u);
    ASSERT_EQ(CopiesIn(pieces), std::multiset<std::string>()) << "before any call";
    ASSERT_EQ(List(700, target), 200);
    EXPECT_EQ(CopiesIn(pieces), std::multiset<std::string>()) << "after a download";
    ASSERT_EQ(Buy(), 200);
    EXPECT_EQ(CopiesIn(pieces), std::multiset<std::string>()) << "after a purchase";
}

} // namespace

} // namespace pavonix
