// coredll.dll: folders, deletion and byte streams.
#include "system/coredll.h"
#include "system/holdings.h"
#include "platform/files.h"
#include "platform/posix/utf8_path.h"

#include <cstdio>
#include <string>

namespace pavonix::device {

namespace {

FILE *CheckedStream(FILE *stream)
{
    if (!holdings.files.Has(stream)) {
        Misuse("a stream that is not open");
    }
    return stream;
}

FILE *Wfopen(const WideChar *path, const WideChar *mode)
{
    const platform::Utf8Path name(path);
    std::string narrowMode(mode, mode + std::char_traits<WideChar>::length(mode)); // letters only
    FILE *stream = name.valid() ? std::fopen(name.c_str(), narrowMode.c_str()) : nullptr;
    if (stream == nullptr) {
        return FailWith(kErrorFileNotFound, stream);
    }
    holdings.files.Add(stream);
    return stream;
}

std::uint32_t Fread(void *bytes, std::uint32_t size, std::uint32_t count, FILE *stream)
{
    return std::fread(bytes, size, count, CheckedStream(stream));
}

std::uint32_t Fwrite(const void *bytes, std::uint32_t size, std::uint32_t count, FILE *stream)
{
    return std::fwrite(bytes, size, count, CheckedStream(stream));
}

int Fflush(FILE *stream)
{
    return std::fflush(CheckedStream(stream));
}

int Fclose(FILE *stream)
{
    holdings.files.Remove(CheckedStream(stream));
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
    return platform::CreateFolder(path) ? 1 : FailWith(kErrorAccessDenied, 0);
}

int DeleteFile(const WideChar *path)
{
    return platform::RemoveFile(path) ? 1 : FailWith(kErrorAccessDenied, 0);
}

} // namespace

void AddFileImports(std::vector<Import> &table)
{
    table.push_back(Failing<&Wfopen, 0>(kCoreDll, "_wfopen"));
    table.push_back(Failing<&Fread, 0>(kCoreDll, "fread"));
    table.push_back(Failing<&Fwrite, 0>(kCoreDll, "fwrite"));
    table.push_back(Failing<&Fflush, EOF>(kCoreDll, "fflush"));
    table.push_back(Failing<&Fclose, &FcloseFailing>(kCoreDll, "fclose"));
    table.push_back(Failing<&CreateDirectory, 0>(kCoreDll, "CreateDirectoryW"));
    table.push_back(Failing<&DeleteFile, 0>(kCoreDll, "DeleteFileW"));
}

} // namespace pavonix::device
