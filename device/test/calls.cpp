// Steps that call the library without a shop.
#include "test/files.h"
#include "test/loopback_server.h"
#include "test/steps.h"
#include "test_profiles.h"

#include <tuple>
#include <utility>

namespace pavonix::device_test {

namespace {

constexpr unsigned kPatience = 60; // seconds for a call that involves no network

// True if the ANSI code page has the character; otherwise the library stores no file.
bool IsInAnsiPage(wchar_t character)
{
    const auto toBytes = FindFunction<decltype(WideCharToMultiByte)>(L"coredll.dll", L"WideCharToMultiByte");
    const auto toWide = FindFunction<decltype(MultiByteToWideChar)>(L"coredll.dll", L"MultiByteToWideChar");
    char bytes[8];
    wchar_t back = 0;
    const int count = toBytes == nullptr ? 0 : toBytes(0, 0, &character, 1, bytes, sizeof bytes, nullptr, nullptr);
    return toWide != nullptr && count > 0 && toWide(0, 0, bytes, count, &back, 1) == 1 && back == character;
}

bool IsInAnsiPage(const Path &path)
{
    for (const wchar_t *place = path.c_str(); *place != 0; ++place) {
        if (!IsInAnsiPage(*place)) {
            return false;
        }
    }
    return true;
}

} // namespace

Path ProfilePath(const Test &test, Profile profile)
{
    constexpr const char *kNames[] = {"none.profile", "1024.profile", "1472.profile"};
    return Path(test.work).Add(kNames[static_cast<int>(profile)]);
}

bool WriteProfiles(const Test &test)
{
    constexpr std::string_view kBytes[] = {"User-Serial: PAVONIX-TEST\nUser-Id: 1\n", kProfile1024, kProfile1472};
    bool written = true;
    for (const Profile profile : {Profile::kWithoutKeys, Profile::kKey1024, Profile::kKey1472}) {
        written = WriteWhole(ProfilePath(test, profile).c_str(), kBytes[static_cast<int>(profile)]) && written;
    }
    return written;
}

void RemoveProfiles(const Test &test)
{
    for (const Profile profile : {Profile::kWithoutKeys, Profile::kKey1024, Profile::kKey1472}) {
        DeleteFileW(ProfilePath(test, profile).c_str());
    }
}

namespace {

// Tenths of a millisecond that a call takes. Its URL is rejected only after the profile is
// read, its keys are imported and the token is made.
int TimeCall(Test *test, Export function, Profile profile)
{
    constexpr int kCalls = 5;
    const Path path = ProfilePath(*test, profile), target = Path(test->work).Add("none.xml");
    const Call call = {.function = function, .profile = path.c_str(), .target = target.c_str(), .url = "ftp://none/"};
    const DWORD start = GetTickCount();
    for (int i = 0; i < kCalls; ++i) {
        test->library.Make(call, kPatience);
    }
    return static_cast<int>(GetTickCount() - start) * 10 / kCalls;
}

Line Milliseconds(int tenths)
{
    const int shown = tenths < 0 ? 0 : tenths;
    return Join(shown / 10, ".", shown % 10, " ms");
}

} // namespace

void TimeTokens(Test *test)
{
    test->report.Heading("Keys and tokens, without a network");
    const int nothing = TimeCall(test, Export::kList, Profile::kWithoutKeys);
    test->report.Note(Join("a call that reads a profile without keys: ", Milliseconds(nothing)));
    for (const auto &[profile, bits] : {std::pair{Profile::kKey1024, 1024}, std::pair{Profile::kKey1472, 1472}}) {
        const int keys = TimeCall(test, Export::kList, profile), token = TimeCall(test, Export::kBuy, profile);
        test->report.Note(Join(bits, " bits: import of the keys ", Milliseconds(keys - nothing), ", token ",
                               Milliseconds(token - keys)));
    }
}

namespace {

constexpr std::string_view kOld = "old";

enum class Stored { kNothing, kOldFile, kBody };

constexpr const char *kStoredNames[] = {"nothing there", "the old file", "the body"};

struct FileTrial {
    const char *what;
    const wchar_t *path;           // below the work folder, or of the root
    const wchar_t *removed;        // folder to remove afterwards
    bool prepared, readOnly, open; // an old file is there, may not be written, is open elsewhere
    int force, status;
    Stored stored;
};

constexpr FileTrial kTrials[] = {
    {"a new file", L"new.xml", nullptr, false, false, false, 1, 200, Stored::kBody},
    {"an old file is replaced", L"old.xml", nullptr, true, false, false, 1, 200, Stored::kBody},
    {"an old file is kept with force 0", L"kept.xml", nullptr, true, false, false, 0, 1, Stored::kOldFile},
    {"the last folder is made", L"a\\new.xml", L"a", false, false, false, 1, 200, Stored::kBody},
    {"two folders are not", L"b\\c\\new.xml", L"b", false, false, false, 1, 200, Stored::kNothing},
    {"a path that ends in a separator", L"d\\", L"d", false, false, false, 1, 200, Stored::kNothing},
    {"a file of the root", L"\\PavonixTest.xml", nullptr, false, false, false, 1, 200, Stored::kBody},
    {"a read-only file stays", L"read-only.xml", nullptr, true, true, false, 1, 200, Stored::kOldFile},
    {"a file that is open stays", L"open.xml", nullptr, true, false, true, 1, 200, Stored::kOldFile},
    {"a name with umlauts",
     L"\x00DC"
     L"bergr\x00F6\x00DF"
     L"e.xml",
     nullptr, false, false, false, 1, 200, Stored::kBody},
};

Stored WhatIsStored(const wchar_t *path)
{
    static char room[8 * 1024];
    const std::string_view bytes = ReadWhole(path, room, sizeof room);
    return bytes == LoopbackBody() ? Stored::kBody : bytes == kOld ? Stored::kOldFile : Stored::kNothing;
}

bool Try(Test *test, const FileTrial &trial, const Path &path, int port)
{
    HANDLE holder = INVALID_HANDLE_VALUE;
    if (trial.prepared) {
        WriteWhole(path.c_str(), kOld);
    }
    if (trial.readOnly) {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    }
    if (trial.open) {
        holder = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                             nullptr);
    }
    const Path profile = ProfilePath(*test, Profile::kWithoutKeys);
    KeepWinsock();
    const CallResult result = test->library.Make({.profile = profile.c_str(),
                                                  .target = path.c_str(),
                                                  .url = "http://127.0.0.1/list",
                                                  .port = port,
                                                  .force = trial.force},
                                                 kPatience);
    if (trial.open) {
        CloseHandle(holder);
    }
    const Stored stored = WhatIsStored(path.c_str());
    const Stored expected = IsInAnsiPage(path) ? trial.stored : Stored::kNothing;
    const bool right = result.returned && result.status == trial.status && stored == expected;
    Line line = Join(trial.what, ": ", result.status, ", ", kStoredNames[static_cast<int>(stored)]);
    if (!right) {
        line = Join(line, "; documented: ", trial.status, ", ", kStoredNames[static_cast<int>(expected)]);
    }
    test->report.Check(right, line);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
    return result.status != 0;
}

// The longest path that the system takes.
void TryLongName(Test *test, int port)
{
    constexpr FileTrial kTrial = {
        "a path of 259 characters", nullptr, nullptr, false, false, false, 1, 200, Stored::kBody};
    Path path = test->work;
    while (path.length() < Path::kLongest - 4) {
        path.Add("n");
    }
    Try(test, kTrial, path.Add(".xml"), port);
}

// The library's search works in either case; the result is for its authors.
void ReportSearch(Test *test, const char *what, const wchar_t *path)
{
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(path, &found);
    test->report.Note(
        Join("the system's search for ", what, search == INVALID_HANDLE_VALUE ? ": finds nothing" : ": finds it"));
    if (search != INVALID_HANDLE_VALUE) {
        FindClose(search);
    }
}

// One whole call of each kind: its stack, and the token that was sent.
void TryWholeCalls(Test *test, int port)
{
    constexpr unsigned kRightStack = 32 * 1024;
    const Path target = Path(test->work).Add("whole.xml");
    for (const auto &[profile, bits, length] :
         {std::tuple{Profile::kKey1024, 1024, 172u}, std::tuple{Profile::kKey1472, 1472, 248u}}) {
        const Path path = ProfilePath(*test, profile);
        Call call = {.profile = path.c_str(), .target = target.c_str(), .url = "http://127.0.0.1/", .port = port};
        KeepWinsock();
        const CallResult list = test->library.Make(call, kPatience);
        call.function = Export::kBuy;
        KeepWinsock();
        const CallResult buy = test->library.Make(call, kPatience);
        test->report.Check(
            list.stack < kRightStack && buy.stack < kRightStack,
            Join("stack with keys of ", bits, " bits: download ", list.stack, ", purchase ", buy.stack, " bytes"));
        constexpr std::string_view kName = "\r\nUser-Cert: ";
        const std::string_view request = LastRequest();
        const std::size_t name = request.find(kName), end = request.find("\r\n", name + kName.size());
        const bool sent = buy.status == 200 && name != request.npos && end == name + kName.size() + length;
        test->report.Check(sent,
                           Join("token of ", bits, " bits: ", sent ? "sent" : "not sent, or not of the right length"));
        DeleteFileW(target.c_str());
    }
}

} // namespace

void TryFiles(Test *test)
{
    test->report.Heading("Files and whole calls, with a server on this device");
    const int port = StartLoopbackServer();
    if (port == 0) {
        test->report.Deviation(Join("no server can be started on 127.0.0.1"));
        return;
    }
    TryWholeCalls(test, port);
    CreateDirectoryW(Path(test->work).Add("d").c_str(), nullptr);
    ReportSearch(test, "a folder's path that ends in a separator", Path(test->work).Add("d\\").c_str());
    ReportSearch(test, "the root", L"\\");
    for (const FileTrial &trial : kTrials) {
        const Path path = trial.path[0] == L'\\' ? Path(trial.path) : Path(test->work).Add(trial.path);
        if (!Try(test, trial, path, port)) {
            test->report.Skip(Join("other files: no call reached the server"));
            return;
        }
        if (trial.removed != nullptr) {
            RemoveDirectoryW(Path(test->work).Add(trial.removed).c_str());
        }
    }
    TryLongName(test, port);
}

} // namespace pavonix::device_test
