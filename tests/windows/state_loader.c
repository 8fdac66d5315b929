// A system for PAVONIX.dll on a bare ARM processor: loads the DLL, resolves its imports
// and makes whole calls. Compiled in ARM and in Thumb state, so that the processor must
// change state, or must not, on each way in and out. newlib is built for version 4T and
// reads files through the emulator (semihosting).
//
//   state_loader [MISSING] <PROFILE     in the folder of PAVONIX.dll; MISSING: prefix of the
//                                       names that GetProcAddressW does not find
//
// Prints the image's address, the results, and the bytes that were sent and written.
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef unsigned char Byte;
typedef unsigned short Half;
typedef unsigned Word;

enum { kRelocatedWord = 3, kNotFound = 2, kInvalid = -1, kDirectory = 0x10, kFile = 0x20 };

static Word lastError;
static const char *missing;

// Memory that is readable, writable and executable, by Linux's mmap.
__attribute__((target("arm"), noinline)) static void *Map(Word size)
{
    register Word result __asm__("r0") = 0, length __asm__("r1") = size, protection __asm__("r2") = 7;
    register Word flags __asm__("r3") = 0x22, file __asm__("r4") = ~0u, offset __asm__("r5") = 0,
                        call __asm__("r7") = 192;
    __asm__ volatile("svc 0"
                     : "+r"(result)
                     : "r"(length), "r"(protection), "r"(flags), "r"(file), "r"(offset), "r"(call)
                     : "memory");
    return (void *)result;
}

// Files: the profile, and those that the DLL writes
static Byte profile[4096];
static Word profileSize, profileRead;
static int folderMade, fileWritten;

static int Search(const Half *path, Word *found)
{
    int separators = 0;
    for (const Half *unit = path; *unit != 0; ++unit) {
        separators += *unit == '\\';
    }
    const int exists = separators == 1 ? folderMade : fileWritten;
    found[0] = separators == 1 ? kDirectory : kFile;
    found[10] = 'x';
    lastError = kNotFound;
    return exists ? 1 : kInvalid;
}
static int Zero(void)
{
    return 0;
}
static int One(void)
{
    return 1;
}
static int MakeFolder(void)
{
    return folderMade = 1;
}
static int Delete(void)
{
    fileWritten = 0;
    return 1;
}
static int Open(const Half *path, const Half *mode)
{
    if (path[1] == 'n') {
        return 0;
    }
    profileRead = 0;
    fileWritten |= mode[0] == 'a' && path[1] == 's';
    return path[1] != 's' && mode[0] == 'a' ? 3 : mode[0] == 'a' ? 2 : 1; // the trace, a download, the profile
}
static Word Read(Byte *bytes, Word size, Word count)
{
    Word length = size * count;
    length = length < profileSize - profileRead ? length : profileSize - profileRead;
    memcpy(bytes, profile + profileRead, length);
    profileRead += length;
    return length / size;
}
static Word Write(const Byte *bytes, Word size, Word count, int stream)
{
    if (stream == 2) {
        fwrite(bytes, size, count, stdout);
    }
    return count;
}

// Code pages of one byte a character
static int Convert(Byte *to, Word toSize, const Byte *from, Word fromSize, int length, int room)
{
    for (int i = 0; i < length && room != 0; ++i) {
        to[i * toSize] = from[i * fromSize];
        if (toSize == 2) {
            to[i * 2 + 1] = 0;
        }
    }
    return length;
}
static int ToBytes(Word page, Word flags, const void *from, int length, void *to, int room)
{
    return page + flags == 0 || page == 65001 ? Convert(to, 1, from, 2, length, room) : 0;
}
static int ToWide(Word page, Word flags, const void *from, int length, void *to, int room)
{
    return page + flags == 0 || page == 65001 ? Convert(to, 2, from, 1, length, room) : 0;
}

// The network: one reply per request
static const char *reply;
static int Start(int version, Half *data)
{
    data[0] = data[1] = (Half)version;
    return 0;
}
static void *Resolve(void)
{
    static const Word address = 0x0100007F;
    static const Word *addresses[2] = {&address};
    static const void *host[4] = {"", addresses + 1, (void *)0x00040002, addresses};
    return host;
}
static int Socket(void)
{
    return 7;
}
static int Send(int socket, const char *bytes, int length)
{
    fwrite(bytes, 1, (Word)length, stdout);
    return length + socket - 7;
}
static int Receive(int socket, char *bytes, int room)
{
    const Word length = strlen(reply) < (Word)room ? strlen(reply) : (Word)room;
    memcpy(bytes, reply, length);
    reply += length;
    return (int)length + socket - 7;
}

// Time, errors, random numbers
static void LocalTime(Half *time)
{
    static const Half now[8] = {2026, 11, 6, 21, 8, 0, 1};
    memcpy(time, now, sizeof now);
}
static Word Error(void)
{
    return lastError;
}
static void SetError(Word error)
{
    lastError = error;
}
static int Acquire(Word *provider)
{
    return (int)(*provider = 1);
}
static int Random(Word provider, Word length, Byte *bytes)
{
    memset(bytes, 0x5A, length);
    return (int)provider;
}
static void *FindFunction(const void *module, const Half *name);

static const struct Function {
    const char *name;
    void *function;
} functions[] = {
    {"malloc", malloc},
    {"calloc", calloc},
    {"realloc", realloc},
    {"free", free},
    {"memchr", memchr},
    {"memcmp", memcmp},
    {"memcpy", memcpy},
    {"memmove", memmove},
    {"memset", memset},
    {"strchr", strchr},
    {"strcmp", strcmp},
    {"strlen", strlen},
    {"strncmp", strncmp},
    {"strstr", strstr},
    {"rand", One},
    {"srand", Zero},
    {"GetModuleHandleW", One},
    {"GetProcAddressW", FindFunction},
    {"_wfopen", Open},
    {"fread", Read},
    {"fwrite", Write},
    {"fflush", Zero},
    {"fclose", Zero},
    {"CreateDirectoryW", MakeFolder},
    {"DeleteFileW", Delete},
    {"FindFirstFileW", Search},
    {"FindNextFileW", Zero},
    {"FindClose", One},
    {"InitializeCriticalSection", Zero},
    {"EnterCriticalSection", Zero},
    {"LeaveCriticalSection", Zero},
    {"DeleteCriticalSection", Zero},
    {"GetLastError", Error},
    {"SetLastError", SetError},
    {"GetLocalTime", LocalTime},
    {"GetTickCount", One},
    {"WideCharToMultiByte", ToBytes},
    {"MultiByteToWideChar", ToWide},
    {"CryptAcquireContextW", Acquire},
    {"CryptGenRandom", Random},
    {"CryptReleaseContext", One},
    {"WSAStartup", Start},
    {"WSACleanup", Zero},
    {"socket", Socket},
    {"closesocket", Zero},
    {"gethostbyname", Resolve},
    {"connect", Zero},
    {"send", Send},
    {"recv", Receive},
    {"setsockopt", Zero},
};

static void *Find(const char *name)
{
    for (Word i = 0; i < sizeof functions / sizeof *functions; ++i) {
        if (strcmp(functions[i].name, name) == 0) {
            return functions[i].function;
        }
    }
    return 0;
}
static void *FindFunction(const void *module, const Half *name)
{
    char narrow[40] = {0};
    for (Word i = 0; name[i] != 0; ++i) {
        narrow[i] = (char)name[i];
    }
    return module == 0 || (missing != 0 && strncmp(narrow, missing, strlen(missing)) == 0) ? 0 : Find(narrow);
}

static Word At(const Byte *place)
{
    return *(const Word *)place;
}

static Byte *Load(void)
{
    static Byte file[1 << 20];
    fread(file, 1, sizeof file, fopen("PAVONIX.dll", "rb"));
    const Byte *const header = file + At(file + 0x3C), *const directories = header + 120;
    Byte *const image = Map(At(header + 80));
    memcpy(image, file, At(header + 84));
    const Byte *section = header + 24 + *(const Half *)(header + 20);
    for (int left = *(const Half *)(header + 6); left > 0; --left, section += 40) {
        memcpy(image + At(section + 12), file + At(section + 20), At(section + 16));
    }
    for (const Byte *block = image + At(directories + 40), *end = block + At(directories + 44); block < end;
         block += At(block + 4)) {
        for (Word i = 8; i < At(block + 4); i += 2) {
            const Half entry = *(const Half *)(block + i);
            if (entry >> 12 == kRelocatedWord) {
                *(Word *)(image + At(block) + (entry & 0xFFF)) += (Word)image - At(header + 52);
            }
        }
    }
    for (const Byte *library = image + At(directories + 8); At(library + 12) != 0; library += 20) {
        for (Word *slot = (Word *)(image + At(library + 16)); *slot != 0; ++slot) {
            const char *const name = (const char *)image + *slot + 2;
            *slot = (Word)Find(name);
            if (*slot == 0) {
                printf("%s is missing\n", name);
            }
        }
    }
    return image;
}

int main(int count, const char **arguments)
{
    static Word request[8], result[1024];
    static char large[3000] = "HTTP/1.1 200 OK\r\nContent-Length: 2000\r\n\r\n";
    memset(large + strlen(large), 'g', 2000);
    missing = count > 1 ? arguments[1] : 0;
    profileSize = fread(profile, 1, sizeof profile, stdin);
    Byte *const image = Load();
    printf("image %08x\n", (Word)image);
    const Byte *const header = image + At(image + 0x3C);
    const Word *const exported = (const Word *)(image + At(image + At(header + 120) + 28));
    int (*const entry)(void *, Word, void *) = (void *)(image + At(header + 40));
    printf("attach %08x\n", (Word)entry(image, 1, 0));
    printf("thread attach %08x\n", (Word)entry(image, 2, 0));
    for (int i = 0; i < 4; ++i) {
        int (*const download)(const void *, void *, const void *, int, const void *, int) =
            (void *)(image + exported[i & 1]);
        reply = i == 1 ? large : "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nthe goods";
        printf("\ndownload %08x\n",
               (Word)download(u"\\profile", request, i < 3 ? u"\\shop\\list.xml" : u"\\shop", 1, u"http://h/\xFC", 80));
    }
    int (*const buy)(const void *, void *, void *, const void *, int) = (void *)(image + exported[2]);
    printf("buy %08x\n", (Word)buy(u"\\none", request, result, u"http://h/b", 80));
    static const char refusal[] = "HTTP/1.1 403 No\r\nX-Error-Code: 906\r\nX-Error-Message: f\xFCr\r\n"
                                  "X-Server-Timestamp: 2026-11-21 08:00:00.000\r\nContent-Length: 0\r\n\r\n";
    for (int damaged = 0; damaged < 2; ++damaged) {
        if (damaged) {
            memcpy((char *)strstr((const char *)profile, "<P>"), "<!>", 3);
        }
        reply = refusal;
        printf("\nbuy %08x\n", (Word)buy(u"\\profile", request, result, u"http://h/b", 80));
    }
    printf("code %08x\n", result[2]);
    printf("thread detach %08x\n", (Word)entry(image, 3, 0));
    printf("detach %08x\n", (Word)entry(image, 0, 0));
    return 0;
}
