// Loads PAVONIX.dll on a bare ARM processor, binds all of its imports to one
// function that answers 0, and calls its entry and its exports. Compiled in ARM and
// in THUMB state: the processor must change state on each way in and out.
//
//   state_loader DLL       prints the answers; a wrong way crashes
//
// Nothing of a C library is linked, because that would need a later processor.
typedef unsigned char Byte;
typedef unsigned short Half;
typedef unsigned Word;

enum { kExit = 1, kRead = 3, kWrite = 4, kOpen = 5, kMap = 192 };
enum { kReadWriteRun = 7, kPrivateAnonymous = 0x22, kRelocatedWord = 3 };

int SystemCall(int number, Word a, Word b, Word c, Word d, Word e);
__asm__(".arm\n.type SystemCall, %function\nSystemCall:\n"
        "\tstmfd sp!, {r4, r5, r7, lr}\n\tmov r7, r0\n\tmov r0, r1\n\tmov r1, r2\n\tmov r2, r3\n"
        "\tldr r3, [sp, #16]\n\tldr r4, [sp, #20]\n\tmov r5, #0\n\tsvc 0\n"
        "\tldmfd sp!, {r4, r5, r7, lr}\n\tbx lr\n"
        ".globl _start\n_start:\n\tldr r0, [sp, #8]\n\tldr r1, 1f\n\tmov lr, pc\n\tbx r1\n1:\t.word Run\n");

static Byte file[1 << 20];
static Word calls;

static int Import(void)
{
    ++calls;
    return 0;
}

static Word At(const Byte *place)
{
    return *(const Word *)place;
}

static void Print(const char *text, Word number)
{
    char line[80];
    Word length = 0;
    for (; text[length] != 0; ++length) {
        line[length] = text[length];
    }
    for (int shift = 28; shift >= 0; shift -= 4) {
        line[length++] = "0123456789abcdef"[number >> shift & 15];
    }
    line[length++] = '\n';
    SystemCall(kWrite, 1, (Word)line, length, 0, 0);
}

static void CopySections(Byte *image, const Byte *header)
{
    const Byte *section = header + 24 + *(const Half *)(header + 20);
    for (int left = *(const Half *)(header + 6); left > 0; --left, section += 40) {
        const Word place = At(section + 12), size = At(section + 16), from = At(section + 20);
        for (Word i = 0; i < size; ++i) {
            ((volatile Byte *)image)[place + i] = file[from + i];
        }
    }
}

static void Relocate(Byte *image, const Byte *directory, Word distance)
{
    const Byte *block = image + At(directory), *const end = block + At(directory + 4);
    for (; block < end; block += At(block + 4)) {
        for (Word i = 8; i < At(block + 4); i += 2) {
            const Half entry = *(const Half *)(block + i);
            if (entry >> 12 == kRelocatedWord) {
                *(Word *)(image + At(block) + (entry & 0xFFF)) += distance;
            }
        }
    }
}

static void Bind(Byte *image, const Byte *directory)
{
    for (const Byte *library = image + At(directory); At(library + 12) != 0; library += 20) {
        for (Word *slot = (Word *)(image + At(library + 16)); *slot != 0; ++slot) {
            *slot = (Word)Import;
        }
    }
}

void Run(const char *path)
{
    const int opened = SystemCall(kOpen, (Word)path, 0, 0, 0, 0);
    SystemCall(kRead, (Word)opened, (Word)file, sizeof file, 0, 0);
    const Byte *const header = file + At(file + 0x3C), *const directories = header + 120;
    Byte *const image = (Byte *)SystemCall(kMap, 0, At(header + 80), kReadWriteRun, kPrivateAnonymous, (Word)-1);
    CopySections(image, header);
    Relocate(image, directories + 5 * 8, (Word)image - At(header + 52));
    Bind(image, directories + 1 * 8);

    Print("attach ", ((int (*)(void *, Word, void *))(image + At(header + 40)))(image, 1, 0));
    const Word *const exported = (const Word *)(image + At(image + At(directories) + 28));
    static const Half none[2];
    static Word request[8];
    for (int i = 0; i < 2; ++i) {
        int (*const download)(const void *, void *, const void *, int, const void *, int) =
            (void *)(image + exported[i]);
        Print("download ", (Word)download(none, request, none, 1, none, 80));
    }
    static Word result[1024];
    int (*const buy)(const void *, void *, void *, const void *, int) = (void *)(image + exported[2]);
    Print("buy ", (Word)buy(none, request, result, none, 80));
    Print("detach ", ((int (*)(void *, Word, void *))(image + At(header + 40)))(image, 0, 0));
    Print("imports called ", calls > 0);
    SystemCall(kExit, 0, 0, 0, 0, 0);
}
