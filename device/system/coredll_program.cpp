// coredll.dll: functions for programs: files by handle, threads, facts about the device,
// and a message box, which goes to standard output.
#include "device_options.h"
#include "platform/code_pages.h"
#include "system/coredll.h"
#include "system/device_path.h"
#include "system/loaded_images.h"
#include "system/open_files.h"
#include "system/open_handles.h"
#include "trampoline/trampoline.h"

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <future>
#include <iostream>
#include <map>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace pavonix::device {

namespace {

// A file, or a thread.
struct Object {
    std::FILE *file = nullptr;
    std::string heldName;
    std::future<void> thread;
};

constexpr std::uint32_t kInvalidHandle = 0xFFFFFFFF;
constexpr std::uint32_t kThisProcess = 66;

std::map<std::uint32_t, std::shared_ptr<Object>> objects; // used by the program's first thread alone

std::uint32_t AddObject(Object object)
{
    static std::uint32_t last = 0x1000;
    objects[last += 4] = std::make_shared<Object>(std::move(object));
    return last;
}

std::shared_ptr<Object> ObjectOf(std::uint32_t handle)
{
    const auto found = objects.find(handle);
    return found == objects.end() ? nullptr : found->second;
}

constexpr std::uint32_t kWrites = 0x40000000;
constexpr std::uint32_t kSharesWriting = 2;
constexpr std::uint32_t kCreateAlways = 2, kOpenExisting = 3;

std::uint32_t CreateFile(const WideChar *path, std::uint32_t access, std::uint32_t sharing, const void *,
                         std::uint32_t disposition, std::uint32_t, std::uint32_t)
{
    const DevicePath file(path);
    const bool writes = (access & kWrites) != 0;
    if (!file.valid() || (disposition != kCreateAlways && disposition != kOpenExisting)) {
        return FailWith(file.valid() ? kErrorInvalidParameter : kErrorInvalidName, kInvalidHandle);
    }
    if (const std::uint32_t reason = ReasonAgainst(file.Attributes(), openFiles.MayWrite(file.name()));
        writes && reason != 0) {
        return FailWith(reason, kInvalidHandle);
    }
    std::FILE *stream = std::fopen(file.name().c_str(), disposition == kCreateAlways ? "wb" : "rb");
    if (stream == nullptr) {
        return FailWith(kErrorFileNotFound, kInvalidHandle);
    }
    openFiles.Add(stream, file.name(), writes);
    if ((sharing & kSharesWriting) == 0) {
        openFiles.Hold(file.name());
    }
    return AddObject({stream, file.name(), {}});
}

int ReadFile(std::uint32_t handle, void *bytes, std::uint32_t count, std::uint32_t *done, void *)
{
    const auto object = ObjectOf(handle);
    if (object == nullptr || object->file == nullptr) {
        return FailWith(kErrorInvalidHandle, 0);
    }
    *done = std::fread(bytes, 1, count, object->file);
    return 1;
}

int WriteFile(std::uint32_t handle, const void *bytes, std::uint32_t count, std::uint32_t *done, void *)
{
    const auto object = ObjectOf(handle);
    *done = 0;
    if (object == nullptr || object->file == nullptr) {
        return FailWith(kErrorInvalidHandle, 0);
    }
    if (openFiles.IsFull(object->file)) {
        return FailWith(kErrorDiskFull, 0);
    }
    *done = std::fwrite(bytes, 1, count, object->file);
    return std::fflush(object->file) == 0 && *done == count;
}

int CloseHandle(std::uint32_t handle)
{
    const auto object = ObjectOf(handle);
    if (object == nullptr) {
        return FailWith(kErrorInvalidHandle, 0);
    }
    if (object->file != nullptr) {
        openFiles.Remove(object->file);
        openFiles.Release(object->heldName);
        std::fclose(object->file);
    }
    objects.erase(handle);
    return 1;
}

int RemoveDirectory(const WideChar *path)
{
    return rmdir(DevicePath(path).name().c_str()) == 0 ? 1 : FailWith(kErrorPathNotFound, 0);
}

int SetFileAttributes(const WideChar *path, std::uint32_t attributes)
{
    const mode_t mode = (attributes & kAttributeReadOnly) != 0 ? 0444 : 0644;
    return chmod(DevicePath(path).name().c_str(), mode) == 0 ? 1 : FailWith(kErrorFileNotFound, 0);
}

std::uint32_t CreateThread(const void *, std::uint32_t, std::uint32_t start, std::uint32_t argument, std::uint32_t,
                           std::uint32_t *)
{
    std::packaged_task<void()> task([=] {
        loadedImages.NotifyOfThread(EntryReason::kThreadAttach);
        CallImage(start, {argument});
        loadedImages.NotifyOfThread(EntryReason::kThreadDetach);
    });
    Object object;
    object.thread = task.get_future();
    std::thread(std::move(task)).detach(); // it ends with the process at the latest
    return AddObject(std::move(object));
}

std::uint32_t WaitForSingleObject(std::uint32_t handle, std::uint32_t milliseconds)
{
    constexpr std::uint32_t kTimeout = 258, kFailed = 0xFFFFFFFF;
    const auto object = ObjectOf(handle);
    if (object == nullptr || !object->thread.valid()) {
        return FailWith(kErrorInvalidHandle, kFailed);
    }
    return object->thread.wait_for(std::chrono::milliseconds(milliseconds)) == std::future_status::ready ? 0 : kTimeout;
}

int TerminateProcess(std::uint32_t process, std::uint32_t code)
{
    if (process != kThisProcess) {
        return FailWith(kErrorInvalidHandle, 0);
    }
    std::cout.flush();
    std::_Exit(static_cast<int>(code));
}

struct Version {
    std::uint32_t size, major, minor, build, platform;
    WideChar servicePack[128];
};

int GetVersionEx(Version *version)
{
    if (version->size != sizeof *version) {
        return FailWith(kErrorInsufficientBuffer, 0);
    }
    *version = {sizeof *version, 6, 0, 0, 3, {}};
    return 1;
}

// An ARM920T, which is of version 4T.
void GetSystemInfo(std::uint32_t *words)
{
    constexpr std::uint32_t kInfo[] = {5, 4096, 0x10000, 0x7FFFFFFF, 1, 1, 2336, 0x10000, 0x00010004};
    std::memcpy(words, kInfo, sizeof kInfo);
}

void GlobalMemoryStatus(std::uint32_t *words)
{
    constexpr std::uint32_t kStatus[] = {32, 50, 64 << 20, 32 << 20, 0, 0, 1 << 30, 900 << 20};
    std::memcpy(words, kStatus, sizeof kStatus);
}

std::uint32_t GetAcp()
{
    return deviceOptions.ansiCodePage;
}

int SystemParametersInfo(std::uint32_t what, std::uint32_t room, WideChar *text, std::uint32_t)
{
    constexpr std::uint32_t kDeviceName = 258;
    constexpr WideChar kName[] = u"Pavonix stand-in";
    if (what != kDeviceName || room < std::size(kName)) {
        return FailWith(kErrorInvalidParameter, 0);
    }
    std::memcpy(text, kName, sizeof kName);
    return 1;
}

int MessageBox(const void *, const WideChar *text, const WideChar *title, std::uint32_t)
{
    for (const WideChar *part : {title, text}) {
        const int length = WideLength(part);
        std::string bytes(static_cast<std::size_t>(4 * length + 1), 0);
        bytes.resize(static_cast<std::size_t>(platform::WideToBytes(platform::kUtf8CodePage, part, length, bytes.data(),
                                                                    static_cast<int>(bytes.size()), nullptr)));
        std::cout << bytes << std::endl;
    }
    return 1;
}

} // namespace

void AddProgramImports(std::vector<Import> &table)
{
    table.push_back(Failing<&CreateFile, kInvalidHandle>(kCoreDll, "CreateFileW"));
    table.push_back(Failing<&ReadFile, 0>(kCoreDll, "ReadFile"));
    table.push_back(Failing<&WriteFile, 0>(kCoreDll, "WriteFile"));
    table.push_back(Unfailing<&CloseHandle>(kCoreDll, "CloseHandle"));
    table.push_back(Failing<&RemoveDirectory, 0>(kCoreDll, "RemoveDirectoryW"));
    table.push_back(Failing<&SetFileAttributes, 0>(kCoreDll, "SetFileAttributesW"));
    table.push_back(Failing<&CreateThread, 0>(kCoreDll, "CreateThread"));
    table.push_back(Unfailing<&WaitForSingleObject>(kCoreDll, "WaitForSingleObject"));
    table.push_back(Unfailing<&TerminateProcess>(kCoreDll, "TerminateProcess"));
    table.push_back(Unfailing<&GetVersionEx>(kCoreDll, "GetVersionExW"));
    table.push_back(Unfailing<&GetSystemInfo>(kCoreDll, "GetSystemInfo"));
    table.push_back(Unfailing<&GlobalMemoryStatus>(kCoreDll, "GlobalMemoryStatus"));
    table.push_back(Unfailing<&GetAcp>(kCoreDll, "GetACP"));
    table.push_back(Unfailing<&SystemParametersInfo>(kCoreDll, "SystemParametersInfoW"));
    table.push_back(Unfailing<&MessageBox>(kCoreDll, "MessageBoxW"));
}

} // namespace pavonix::device
