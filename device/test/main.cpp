// PavonixTest.exe: tests PAVONIX.dll on the device that it is started on, by a tap. It
// writes PavonixTest.txt beside itself and shows the verdict in a message box.
#include "test/files.h"
#include "test/steps.h"

namespace pavonix::device_test {

namespace {

// Beside the program, or in the root if that has no room; files of the test go there too.
void OpenReport(Test *test)
{
    constexpr const char *kName = "PavonixTest.txt";
    wchar_t program[Path::kLongest + 1] = {};
    GetModuleFileNameW(nullptr, program, Path::kLongest);
    test->folder = Path(program);
    test->folder.RemoveName();
    test->work = Path(test->folder).Add("PavonixTest.tmp\\");
    if (test->report.Open(Path(test->folder).Add(kName))) {
        return;
    }
    const DWORD error = test->report.error();
    test->report.Open(Path(L"\\").Add(kName));
    test->work = Path(L"\\PavonixTest.tmp\\");
    test->report.Deviation(Join("the program's folder takes no report, error ", error));
}

void Introduce(Report *report)
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    report->Note(Join("version " PAVONIX_VERSION ", ", unsigned{now.wYear}, "-", unsigned{now.wMonth}, "-",
                      unsigned{now.wDay}, " ", unsigned{now.wHour}, ":", unsigned{now.wMinute}));
    report->Note(Join("lines that differ from the documentation begin with !!"));
}

void TryLibrary(Test *test)
{
    Path workFolder = test->work;
    const Path dll = Path(test->folder).Add("PAVONIX.dll");
    if (!ReportImports(test, dll) || !LoadRepeatedly(test, dll)) {
        test->report.Skip(Join("calls, as PAVONIX.dll cannot be loaded"));
        return;
    }
    CreateDirectoryW(workFolder.c_str(), nullptr);
    if (!WriteProfiles(*test)) {
        test->report.Deviation(Join("files cannot be written to ", test->work, ", error ", GetLastError()));
    }
    TimeTokens(test);
    TryFiles(test);
    TryShop(test);
    RemoveProfiles(*test);
    RemoveDirectoryW(workFolder.c_str());
    if (test->library.usable()) {
        test->report.Heading("The end");
        test->report.Check(test->library.Unload(), Join("unloaded"));
    }
}

void ShowVerdict(const Report &report, const Line &verdict)
{
    const auto show = FindFunction<int(void *, const wchar_t *, const wchar_t *, UINT)>(L"coredll.dll", L"MessageBoxW");
    const Line text = report.complete() ? Join(verdict, "\r\n", report.path())
                                        : Join(verdict, "\r\nThe report could not be written in full.");
    if (show != nullptr) {
        show(nullptr, Path().Add(text.c_str()).c_str(), L"PavonixTest", 0);
    }
}

} // namespace

} // namespace pavonix::device_test

// The system's name for the calling process, which is no function on Windows CE.
static const HANDLE kThisProcess = reinterpret_cast<HANDLE>(66);

extern "C" void WinMainCRTStartup()
{
    using namespace pavonix::device_test;
    static Test test; // constructed here, as nothing runs before
    OpenReport(&test);
    Introduce(&test.report);
    ReportImage(&test.report);
    TryLibrary(&test);
    ShowVerdict(test.report, test.report.Finish());
    TerminateProcess(kThisProcess, 0);
}
