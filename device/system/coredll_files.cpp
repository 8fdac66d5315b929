// coredll.dll: folders, deletion and byte streams.
#include "system/coredll.h"
#include "system/device_path.h"
#include "system/open_handles.h"
#include "system/open_files.h"

#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace pavonix::device {

namespace {

FILE *CheckedStream(FILE *stream)
{
    if (!openHandles.files.Has(stream)) {
        Fatal("a stream that is not open");
    }
    return stream;
}

FILE *Wfopen(const WideChar *path, const WideChar *mode)
{
    FILE *const none = nullptr;
    const DevicePath file(path);
    const std::string narrowMode(mode, mode + std::char_traits<WideChar>::length(mode)); // letters only
    if (!file.valid()) {
        return FailWith(kErrorInvalidName, none);
    }
    const bool writes = narrowMode[0] != 'r';
    if (const std::uint32_t reason = ReasonAgainst(file.Attributes(), openFiles.MayWrite(file.name()));
        writes && reason != 0) {
        return FailWith(reason, none);
    }
    FILE *stream = std::fopen(file.name().c_str(), narrowMode.c_str());
    if (stream == nullptr) {
        return FailWith(kErrorFileNotFound, none);
    }
    openHandles.files.Add(stream);
    openFiles.Add(stream, file.name(), writes);
    return stream;
}

int Setvbuf(FILE *stream, char *buffer, int mode, std::uint32_t size)
{
    constexpr int kNoBuffer = 4; // the only mode in use
    return mode == kNoBuffer ? std::setvbuf(CheckedStream(stream), buffer, _IONBF, size) : -1;
}

std::uint32_t Fread(void *bytes, std::uint32_t size, std::uint32_t count, FILE *stream)
{
    return std::fread(bytes, size, count, CheckedStream(stream));
}

std::uint32_t Fwrite(const void *bytes, std::uint32_t size, std::uint32_t count, FILE *stream)
{
    if (openFiles.IsFull(CheckedStream(stream))) {
        return FailWith(kErrorDiskFull, 0u);
    }
    return std::fwrite(bytes, size, count, stream);
}

int Fflush(FILE *stream)
{
    return std::fflush(CheckedStream(stream));
}

int Fclose(FILE *stream)
{
    openHandles.files.Remove(CheckedStream(stream));
    openFiles.Remove(stream);
    return std::fclose(stream);
}

// A failing fclose loses what was buffered, but the stream is gone all the same.
int FcloseFailing(FILE *stream)
{
    Fclose(stream);
    return EOF;
}

int CreateDirectory(const WideChar *path, const void *)
{
    const DevicePath folder(path);
    if (!folder.valid()) {
        return FailWith(kErrorInvalidName, 0);
    }
    if (folder.Attributes() != 0) {
        return FailWith(kErrorAlreadyExists, 0);
    }
    return mkdir(folder.name().c_str(), 0777) == 0 ? 1 : FailWith(kErrorPathNotFound, 0);
}

int DeleteFile(const WideChar *path)
{
    const DevicePath file(path);
    if (!file.valid()) {
        return FailWith(kErrorInvalidName, 0);
    }
    const std::uint32_t attributes = file.Attributes();
    if (attributes == 0) {
        return FailWith(kErrorFileNotFound, 0);
    }
    const std::uint32_t reason = ReasonAgainst(attributes, openFiles.MayDelete(file.name()));
    if (reason != 0) {
        return FailWith(reason, 0);
    }
    return unlink(file.name().c_str()) == 0 ? 1 : FailWith(kErrorAccessDenied, 0);
}

} // namespace

void AddFileImports(std::vector<Import> &table)
{
    table.push_back(Failing<&Wfopen, 0>(kCoreDll, "_wfopen"));
    table.push_back(Failing<&Setvbuf, -1>(kCoreDll, "setvbuf"));
    table.push_back(Failing<&Fread, 0>(kCoreDll, "fread"));
    table.push_back(Failing<&Fwrite, 0>(kCoreDll, "fwrite"));
    table.push_back(Failing<&Fflush, EOF>(kCoreDll, "fflush"));
    table.push_back(Failing<&Fclose, &FcloseFailing>(kCoreDll, "fclose"));
    table.push_back(Failing<&CreateDirectory, 0>(kCoreDll, "CreateDirectoryW"));
    table.push_back(Failing<&DeleteFile, 0>(kCoreDll, "DeleteFileW"));
}

} // namespace pavonix::device
