#include "test/files.h"
#include "test/imports.h"
#include "test/steps.h"

#include <cstring>

namespace pavonix::device_test {

namespace {

void ReportVersion(Report *report)
{
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExW(&version);
    constexpr DWORD kWindowsCe = 3;
    const bool supported =
        version.dwPlatformId == kWindowsCe &&
        (version.dwMajorVersion == 5 || (version.dwMajorVersion == 6 && version.dwMinorVersion == 0));
    report->Check(supported, Join("Windows CE ", version.dwMajorVersion, ".", version.dwMinorVersion, " build ",
                                  version.dwBuildNumber));
}

void ReportDevice(Report *report)
{
    constexpr UINT kDeviceName = 258;
    wchar_t name[100] = {};
    const auto ask = FindFunction<BOOL(UINT, UINT, void *, UINT)>(L"coredll.dll", L"SystemParametersInfoW");
    if (ask != nullptr && ask(kDeviceName, sizeof name / sizeof *name - 1, name, 0)) {
        report->Note(Join("device: ", Path(name)));
    }
}

void ReportProcessor(Report *report)
{
    constexpr WORD kArm = 5;
    SYSTEM_INFO info = {};
    GetSystemInfo(&info);
    report->Check(info.wProcessorArchitecture == kArm,
                  Join("processor: architecture ", unsigned{info.wProcessorArchitecture}, ", type ",
                       info.dwProcessorType, ", level ", unsigned{info.wProcessorLevel}, ", revision ",
                       unsigned{info.wProcessorRevision}, ", pages of ", info.dwPageSize, " bytes"));
}

void ReportMemory(Report *report)
{
    MEMORYSTATUS memory = {};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatus(&memory);
    report->Note(Join("memory: ", memory.dwAvailPhys / 1024, " of ", memory.dwTotalPhys / 1024, " KB free"));
}

// True if the character and the bytes convert to each other.
bool Converts(UINT codePage, wchar_t character, std::string_view bytes)
{
    const auto toWide = FindFunction<decltype(MultiByteToWideChar)>(L"coredll.dll", L"MultiByteToWideChar");
    const auto toBytes = FindFunction<decltype(WideCharToMultiByte)>(L"coredll.dll", L"WideCharToMultiByte");
    if (toWide == nullptr || toBytes == nullptr) {
        return false;
    }
    const int length = static_cast<int>(bytes.size());
    wchar_t wide[4] = {};
    char back[8] = {};
    return toWide(codePage, 0, bytes.data(), length, wide, 4) == 1 && wide[0] == character &&
           toBytes(codePage, 0, &character, 1, back, sizeof back, nullptr, nullptr) == length &&
           std::memcmp(back, bytes.data(), bytes.size()) == 0;
}

// Null if random bytes are available, otherwise the failed step.
const char *ProviderFault()
{
    constexpr DWORD kFullRsa = 1, kVerifyContext = 0xF0000000;
    const auto acquire = FindFunction<decltype(CryptAcquireContextW)>(L"coredll.dll", L"CryptAcquireContextW");
    const auto generate = FindFunction<decltype(CryptGenRandom)>(L"coredll.dll", L"CryptGenRandom");
    const auto release = FindFunction<decltype(CryptReleaseContext)>(L"coredll.dll", L"CryptReleaseContext");
    if (acquire == nullptr || generate == nullptr || release == nullptr) {
        return "its functions are missing";
    }
    HCRYPTPROV provider = 0;
    if (!acquire(&provider, nullptr, L"Microsoft Base Cryptographic Provider v1.0", kFullRsa, kVerifyContext)) {
        return "it cannot be acquired";
    }
    std::uint8_t bytes[16] = {};
    const bool generated = generate(provider, sizeof bytes, bytes) != 0;
    release(provider, 0);
    std::uint8_t any = 0;
    for (const std::uint8_t byte : bytes) {
        any |= byte;
    }
    return generated && any != 0 ? nullptr : "it generates no random bytes";
}

void CheckConversion(Report *report, const char *name, bool converts)
{
    report->Check(converts, Join(name, converts ? ": converts" : ": missing"));
}

} // namespace

void ReportImage(Report *report)
{
    report->Heading("The image");
    ReportDevice(report);
    ReportVersion(report);
    ReportProcessor(report);
    ReportMemory(report);
    report->Note(Join("ANSI code page: ", GetACP()));
    CheckConversion(report, "code page 1252", Converts(1252, 0x20AC, "\x80"));
    CheckConversion(report, "UTF-8", Converts(65001, 0x20AC, "\xE2\x82\xAC"));
    const char *fault = ProviderFault();
    report->Check(fault == nullptr, Join("cryptographic provider: ", fault == nullptr ? "works" : fault));
}

namespace {

// Gathers the names to lines.
struct Counting {
    Report *report;
    int there = 0, missing = 0;
    Line names;
};

void ReportNames(Counting *counting)
{
    if (counting->names.length() != 0) {
        counting->report->Note(counting->names);
    }
    counting->names.Clear();
}

void CheckImport(void *context, const char *library, const char *name)
{
    auto *counting = static_cast<Counting *>(context);
    const HMODULE module = LoadLibraryW(Path().Add(library).c_str());
    const bool there = module != nullptr && *name != 0 && GetProcAddressW(module, Path().Add(name).c_str()) != nullptr;
    ++(there ? counting->there : counting->missing);
    if (there) {
        constexpr int kWidth = 80;
        counting->names.Append(counting->names.length() == 0 ? "there: " : " ").Append(name);
        if (counting->names.length() > kWidth) {
            ReportNames(counting);
        }
    } else {
        counting->report->Deviation(Join(library, " has no ", *name != 0 ? name : "function by that ordinal"));
    }
}

} // namespace

bool ReportImports(Test *test, const Path &dll)
{
    static char image[256 * 1024];
    test->report.Heading("The functions that PAVONIX.dll needs");
    bool found = false;
    const std::string_view bytes = ReadWhole(dll.c_str(), image, sizeof image, &found);
    if (!found) {
        test->report.Deviation(Join("PAVONIX.dll is not beside this program"));
        return false;
    }
    test->report.Note(Join("PAVONIX.dll: ", bytes.size(), " bytes"));
    Counting counting = {&test->report, 0, 0, {}};
    if (!ForEachImport(bytes, &counting, CheckImport)) {
        test->report.Deviation(Join("PAVONIX.dll is damaged, or not for ARM"));
        return false;
    }
    ReportNames(&counting);
    test->report.Note(Join(counting.there, " of ", counting.there + counting.missing, " are there"));
    return counting.missing == 0;
}

bool LoadRepeatedly(Test *test, const Path &dll)
{
    constexpr int kTimes = 10;
    test->report.Heading("Loading");
    const DWORD start = GetTickCount();
    int done = 0;
    while (done < kTimes && test->library.Load(dll) && test->library.Unload()) {
        ++done;
    }
    const bool loaded = done == kTimes && test->library.Load(dll);
    test->report.Check(loaded, Join("loaded and unloaded ", done, " times in ", GetTickCount() - start, " ms"));
    if (!loaded) {
        test->report.Note(Join("error ", GetLastError()));
    }
    return loaded;
}

} // namespace pavonix::device_test
