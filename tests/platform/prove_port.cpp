// Checks a port of the platform contract where systems are known to differ, with the calls
// that the library makes. Uses no test framework, so that it builds for every port.
//
//   prove_port FOLDER    FOLDER: an empty folder, as an absolute path
#include "platform/code_pages.h"
#include "platform/files.h"
#include "platform/random.h"
#include "platform/sockets.h"

#include <cstdio>
#include <cstring>

using namespace pavonix;
using namespace pavonix::platform;

namespace {

#if defined(_WIN32)
#define W(text) L##text
#else
#define W(text) u##text
#endif

int faults = 0;

#define CHECK(condition) Check((condition), __LINE__, #condition)

void Check(bool holds, int line, const char *condition)
{
    if (!holds) {
        std::printf("line %d: %s does not hold\n", line, condition);
        ++faults;
    }
}

// FOLDER with a tail appended, with '\' as the separator.
class Path {
public:
    explicit Path(const WideChar *tail)
    {
        int length = 0;
        for (const char *unit = folder; *unit != 0; ++unit) {
            text_[length++] = static_cast<WideChar>(*unit == '/' ? '\\' : *unit);
        }
        while (*tail != 0) {
            text_[length++] = *tail++;
        }
        text_[length] = 0;
    }
    operator const WideChar *() const { return text_; }

    static const char *folder;

private:
    WideChar text_[260];
};

const char *Path::folder = nullptr;

enum Found { kNothing, kFolder, kFile };

// Returns the kind of the first entry that a search finds, and counts the entries.
Found Search(const WideChar *path, int *count = nullptr)
{
    FindRecord record = {};
    FindHandle *search = FindFirst(path, &record);
    if (search == nullptr) {
        return kNothing;
    }
    const Found first = (record.attributes & kAttributeDirectory) != 0 ? kFolder : kFile;
    int entries = 1;
    while (FindNext(search, &record)) {
        ++entries;
    }
    EndFind(search);
    if (count != nullptr) {
        *count = entries;
    }
    return first;
}

bool Append(const WideChar *path, const char *text)
{
    Stream *stream = OpenStream(path, StreamMode::kAppend);
    const auto length = static_cast<std::uint32_t>(std::strlen(text));
    return stream != nullptr && WriteStream(stream, text, length) == length && CloseStream(stream);
}

void CheckFolders()
{
    CHECK(CreateFolder(Path(W("\\shop"))));
    CHECK(!CreateFolder(Path(W("\\shop"))));
    CHECK(!CreateFolder(Path(W("\\none\\deep"))));
    CHECK(Search(Path(W("\\shop"))) == kFolder);
    CHECK(Search(Path(W("\\shop\\"))) == kFolder);
    CHECK(Search(Path(W("\\shop\\\\"))) == kFolder);
    CHECK(Search(Path(W("\\none\\"))) == kNothing);
    CHECK(Search(W("\\")) == kFolder);
    CHECK(Search(W("")) == kNothing);
    CHECK(Search(Path(W("\\shop\\*"))) == kNothing); // neither "." nor ".."
    CHECK(CreateFolder(Path(W("\\made\\"))));
    CHECK(Search(Path(W("\\made"))) == kFolder);
}

void CheckStreams()
{
    const Path file(W("\\shop\\\x20AC.xml"));
    CHECK(OpenStream(file, StreamMode::kRead) == nullptr);
    CHECK(Append(file, "one\r\n\x1A"));
    CHECK(Append(file, "two\n"));

    Stream *reader = OpenStream(file, StreamMode::kRead);
    CHECK(reader != nullptr);
    char bytes[32] = {};
    CHECK(ReadStream(reader, bytes, 3) == 3);
    CHECK(Append(file, "!")); // a reader does not lock the file
    CHECK(ReadStream(reader, bytes + 3, 28) >= 7);
    CHECK(std::strncmp(bytes, "one\r\n\x1Atwo\n", 10) == 0);
    CHECK(CloseStream(reader));
    CHECK(OpenStream(Path(W("\\none\\file")), StreamMode::kAppend) == nullptr);
}

void CheckSearches()
{
    int count = 0;
    CHECK(Append(Path(W("\\shop\\a[1].txt")), "a"));
    CHECK(Search(Path(W("\\shop\\a[1].txt")), &count) == kFile && count == 1);
    CHECK(Search(Path(W("\\shop\\*")), &count) == kFile && count == 2);
    CHECK(Search(Path(W("\\shop\\?[1].t?t")), &count) == kFile && count == 1);
    CHECK(!RemoveFile(Path(W("\\shop"))));
    CHECK(RemoveFile(Path(W("\\shop\\a[1].txt"))));
    CHECK(!RemoveFile(Path(W("\\shop\\a[1].txt"))));
    CHECK(Search(Path(W("\\shop\\a[1].txt"))) == kNothing);
#if defined(_WIN32)
    CHECK(Search(W("Z:\\")) == kFolder);
    CHECK(Search(W("Q:\\")) == kNothing);
    CHECK(Search(W("\\\\?\\Z:\\")) == kFolder); // the shape of a share's root
    CHECK(Search(W("\\\\?\\Q:\\")) == kNothing);
#endif
}

struct Conversion {
    std::uint32_t codePage;
    const WideChar *text;
    const char *bytes;
    bool lossy;
};

const WideChar kLoneHalf[] = {0xD83D, 'x', 0};

// Expected bytes from the published tables of the code pages.
const Conversion kConversions[] = {
    {kAnsiCodePage, W("Az~\\\x7F"), "Az~\\\x7F", false},
    {1252, W("caf\x00E9 \x20AC"), "caf\xE9 \x80", false},
    {1252, W("\x0100\x221E\x2212z?"), "???z?", true}, // no best-fit characters: A, 8 and -
    {1252, W("\xD83D\xDE00!"), "?!", true},
    {936, W("\x3042z"), "\xA4\xA2z", false},
    {28592, W("\x0104\x3042"), "\xA1?", true},
    {1252,
     W("a\xDB40\xDC41"
       "b"),
     "a?b", true}, // a tag character
    {1252, kLoneHalf, "?x", true},
    {kUtf8CodePage, W("\x00E9\x20AC\xD83D\xDE00"), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", false},
    {kUtf8CodePage, kLoneHalf, "?x", true},
};

void CheckConversion(const Conversion &row)
{
    const int units = WideLength(row.text);
    const int count = static_cast<int>(std::strlen(row.bytes));
    char bytes[32];
    bool lossy = !row.lossy;
    CHECK(WideToBytes(row.codePage, row.text, units, nullptr, 0, nullptr) == count);
    CHECK(WideToBytes(row.codePage, row.text, units, bytes, count - 1, nullptr) == 0);
    CHECK(WideToBytes(row.codePage, row.text, units, bytes, count, &lossy) == count);
    CHECK(std::memcmp(bytes, row.bytes, static_cast<std::size_t>(count)) == 0);
    CHECK(lossy == row.lossy);
    if (!row.lossy) {
        WideChar text[32];
        CHECK(BytesToWide(row.codePage, row.bytes, count, nullptr, 0) == units);
        CHECK(BytesToWide(row.codePage, row.bytes, count, text, units - 1) == 0);
        CHECK(BytesToWide(row.codePage, row.bytes, count, text, units) == units);
        CHECK(std::memcmp(text, row.text, static_cast<std::size_t>(units) * sizeof *text) == 0);
    }
}

void CheckCodePages()
{
    for (const Conversion &row : kConversions) {
        const int before = faults;
        CheckConversion(row);
        if (faults != before) {
            std::printf("  in row %d, code page %u\n", static_cast<int>(&row - kConversions), row.codePage);
        }
    }
    char byte;
    bool lossy = true;
    CHECK(WideToBytes(54321, W("a"), 1, &byte, 1, nullptr) == 0);
    CHECK(WideToBytes(1252, W(""), 0, &byte, 1, &lossy) == 0 && !lossy);
}

void CheckSockets()
{
    constexpr int kInternet = 2;
    constexpr int kStreamSocket = 1;
    std::uint16_t granted = 0;
    CHECK(StartWinsock(0x0202, &granted) == 0 && granted == 0x0202);
    const Socket socket = OpenSocket(kInternet, kStreamSocket, 0);
    CHECK(socket != 0 && socket != kInvalidSocket);
    const int on = 1;
    CHECK(SetSocketOption(socket, kSolSocket, kSoKeepAlive, &on, sizeof on) == 0);
    CHECK(SetSocketOption(socket, kSolSocket, 0, &on, sizeof on) == kSocketError);
    CHECK(SetSocketOption(socket, 0, kSoKeepAlive, &on, sizeof on) == kSocketError);
    CHECK(OpenSocket(-1, kStreamSocket, 0) == kInvalidSocket);
    CHECK(CloseSocket(socket) == 0);
    CHECK(CloseSocket(socket) == kSocketError);
    const HostEntry *host = ResolveHost("127.0.0.1");
    CHECK(host != nullptr && host->firstAddress[0] == 127 && host->firstAddress[3] == 1);
    CHECK(ResolveHost("no such host") == nullptr);
    CHECK(CleanupWinsock() == 0);
}

void CheckRandom()
{
    constexpr std::uint32_t kRsaProvider = 1;
    constexpr std::uint32_t kNoKeys = 0xF0000000;
    Provider provider = 0;
    CHECK(AcquireProvider(&provider, nullptr, kRsaProvider, kNoKeys));
    std::uint8_t bytes[32] = {};
    const std::uint8_t zeros[32] = {};
    CHECK(GenerateRandom(provider, bytes, sizeof bytes) && std::memcmp(bytes, zeros, sizeof bytes) != 0);
    ReleaseProvider(provider);
    SeedRand(7);
    const int first = NextRand();
    SeedRand(7);
    CHECK(NextRand() == first);
}

} // namespace

int main(int, char **arguments)
{
    Path::folder = arguments[1];
    CheckFolders();
    CheckStreams();
    CheckSearches();
    CheckCodePages();
    CheckSockets();
    CheckRandom();
    std::printf("%d faults\n", faults);
    return faults == 0 ? 0 : 1;
}
