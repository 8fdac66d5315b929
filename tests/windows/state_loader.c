// A system for PAVONIX.dll on a bare ARM processor: loads it, gives it the functions
// that it imports, and makes whole calls. Compiled in ARM and in THUMB state, so that
// the processor must change state, or must not, on each way in and out.
//
//   state_loader DLL PROFILE [MISSING]     MISSING: the beginning of names that GetProcAddressW does not find
//
// Prints the image's address, the results, what was sent, and the files as written.
// Nothing of a C library is linked, because that would need a later processor.
typedef unsigned char Byte;
typedef unsigned short Half;
typedef unsigned Word;

enum { kExit = 1, kRead = 3, kWrite = 4, kOpen = 5, kMap = 192 };
enum { kReadWriteRun = 7, kPrivateAnonymous = 0x22, kRelocatedWord = 3 };
enum { kNotFound = 2, kInvalid = -1, kDirectory = 0x10, kFile = 0x20 };

int SystemCall(int number, Word a, Word b, Word c, Word d, Word e);
__asm__(".arm\n.type SystemCall, %function\nSystemCall:\n"
        "\tstmfd sp!, {r4, r5, r7, lr}\n\tmov r7, r0\n\tmov r0, r1\n\tmov r1, r2\n\tmov r2, r3\n"
        "\tldr r3, [sp, #16]\n\tldr r4, [sp, #20]\n\tmov r5, #0\n\tsvc 0\n"
        "\tldmfd sp!, {r4, r5, r7, lr}\n\tbx lr\n"
        ".globl _start\n_start:\n\tadd r0, sp, #4\n\tldr r1, 1f\n\tmov lr, pc\n\tbx r1\n1:\t.word Run\n");

static Word lastError;
static const char *missing;

// Memory and text
void *memset(void *to, int value, Word size)
{
    for (Byte *byte = to; size > 0; --size) {
        *byte++ = (Byte)value;
    }
    return to;
}
void *memmove(void *to, const void *from, Word size)
{
    Byte *target = to;
    const Byte *source = from;
    for (Word i = 0; i < size; ++i) {
        const Word at = target < source ? i : size - 1 - i;
        target[at] = source[at];
    }
    return to;
}
void *memcpy(void *to, const void *from, Word size)
{
    return memmove(to, from, size);
}
static int strncmp(const Byte *a, const Byte *b, Word size)
{
    for (; size > 0 && *a == *b && *a != 0; ++a, ++b, --size) {
    }
    return size == 0 ? 0 : *a - *b;
}
static int strcmp(const Byte *a, const Byte *b)
{
    return strncmp(a, b, ~0u);
}
static Word strlen(const char *text)
{
    Word length = 0;
    for (; text[length] != 0; ++length) {
    }
    return length;
}
static const char *strchr(const char *text, int wanted)
{
    for (; *text != wanted && *text != 0; ++text) {
    }
    return *text == wanted ? text : 0;
}
static const char *strstr(const char *text, const char *wanted)
{
    for (; strncmp((const Byte *)text, (const Byte *)wanted, strlen(wanted)) != 0; ++text) {
        if (*text == 0) {
            return 0;
        }
    }
    return text;
}
static const void *memchr(const void *bytes, int wanted, Word size)
{
    for (const Byte *byte = bytes; size > 0; ++byte, --size) {
        if (*byte == (Byte)wanted) {
            return byte;
        }
    }
    return 0;
}
static int memcmp(const Byte *a, const Byte *b, Word size)
{
    for (; size > 0 && *a == *b; ++a, ++b, --size) {
    }
    return size == 0 ? 0 : *a - *b;
}
static void *malloc(Word size) // a word before each block holds its size; none is used again
{
    static Word heap[1 << 20];
    static Word used;
    Word *const block = heap + used;
    *block = size;
    used += (size + 15) / 8 * 2;
    memset(block + 1, 0xCD, size);
    return block + 1;
}
static void free(Word *block)
{
    if (block != 0) {
        memset(block, 0xDD, block[-1]);
    }
}
static void *calloc(Word count, Word size)
{
    return memset(malloc(count * size), 0, count * size);
}
static void *realloc(Word *block, Word size)
{
    void *const moved = malloc(size);
    if (block != 0) {
        memcpy(moved, block, block[-1] < size ? block[-1] : size);
    }
    return moved;
}

// Files: the profile, and those that the DLL has written
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
        SystemCall(kWrite, 1, (Word)bytes, size * count, 0, 0);
    }
    return count;
}

// Code pages: of one byte a character
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

// The network: a reply in one piece to each request
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
    SystemCall(kWrite, (Word)(socket - 6), (Word)bytes, (Word)length, 0, 0);
    return length;
}
static int Receive(int socket, char *bytes, int room)
{
    const Word length = strlen(reply) < (Word)room ? strlen(reply) : (Word)room;
    memcpy(bytes, reply, length);
    reply += length;
    return (int)length + socket - 7;
}

// The rest
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
        if (strcmp((const Byte *)functions[i].name, (const Byte *)name) == 0) {
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
    return module == 0 || (missing != 0 && strstr(narrow, missing) == narrow) ? 0 : Find(narrow);
}

static Word At(const Byte *place)
{
    return *(const Word *)place;
}

static void Print(const char *text, Word number)
{
    char line[80];
    Word length = strlen(text);
    memcpy(line, text, length);
    for (int shift = 28; shift >= 0; shift -= 4) {
        line[length++] = "0123456789abcdef"[number >> shift & 15];
    }
    line[length++] = '\n';
    SystemCall(kWrite, 1, (Word)line, length, 0, 0);
}

static Word ReadWhole(const char *path, Byte *bytes, Word room)
{
    return (Word)SystemCall(kRead, (Word)SystemCall(kOpen, (Word)path, 0, 0, 0, 0), (Word)bytes, room, 0, 0);
}

static Byte *Load(const char *path)
{
    static Byte file[1 << 20];
    ReadWhole(path, file, sizeof file);
    const Byte *const header = file + At(file + 0x3C), *const directories = header + 120;
    Byte *const image = (Byte *)SystemCall(kMap, 0, At(header + 80), kReadWriteRun, kPrivateAnonymous, (Word)-1);
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
                Print(name, 0);
            }
        }
    }
    return image;
}

void Run(const char **arguments)
{
    static Word request[8], result[1024];
    static char large[3000] = "HTTP/1.1 200 OK\r\nContent-Length: 2000\r\n\r\n";
    memset(large + strlen(large), 'g', 2000);
    missing = arguments[3];
    profileSize = ReadWhole(arguments[2], profile, sizeof profile);
    Byte *const image = Load(arguments[1]);
    Print("image ", (Word)image);
    const Byte *const header = image + At(image + 0x3C);
    const Word *const exported = (const Word *)(image + At(image + At(header + 120) + 28));
    int (*const entry)(void *, Word, void *) = (void *)(image + At(header + 40));
    Print("attach ", (Word)entry(image, 1, 0));
    Print("thread attach ", (Word)entry(image, 2, 0));
    for (int i = 0; i < 4; ++i) {
        int (*const download)(const void *, void *, const void *, int, const void *, int) =
            (void *)(image + exported[i & 1]);
        reply = i == 1 ? large : "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nthe goods";
        Print("\ndownload ",
              (Word)download(L"\\profile", request, i < 3 ? L"\\shop\\list.xml" : L"\\shop", 1, L"http://h/\xFC", 80));
    }
    int (*const buy)(const void *, void *, void *, const void *, int) = (void *)(image + exported[2]);
    Print("buy ", (Word)buy(L"\\none", request, result, L"http://h/b", 80));
    static const char refusal[] = "HTTP/1.1 403 No\r\nX-Error-Code: 906\r\nX-Error-Message: f\xFCr\r\n"
                                  "X-Server-Timestamp: 2026-11-21 08:00:00.000\r\nContent-Length: 0\r\n\r\n";
    for (int damaged = 0; damaged < 2; ++damaged) {
        if (damaged) {
            memcpy((char *)strstr((const char *)profile, "<P>"), "<!>", 3);
        }
        reply = refusal;
        Print("\nbuy ", (Word)buy(L"\\profile", request, result, L"http://h/b", 80));
    }
    Print("code ", result[2]);
    Print("thread detach ", (Word)entry(image, 3, 0));
    Print("detach ", (Word)entry(image, 0, 0));
    SystemCall(kExit, 0, 0, 0, 0, 0);
}
