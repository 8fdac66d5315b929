#include "trampoline/trampoline.h"

#include "trampoline/image_stack.h"
#include "device_options.h"
#include "system/open_handles.h"

#include <sys/mman.h>

namespace pavonix::device {

namespace {

std::uint32_t AddressOf(const void *place)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(place));
}

// In THUMB state, calls the function in r12; r5 is free. Answers in ARM state.
[[gnu::naked, gnu::target("thumb")]] void CallFromThumb()
{
    asm("mov r5, lr\n\t"
        "bl 1f\n\t"
        "bx r5\n"
        "1: bx r12");
}

// Calls `function` by way of `caller`, on the stack that ends at `top`, and keeps
// this side's stack pointer in the last word of that stack.
[[gnu::naked]] std::uint32_t EnterImage(std::uint32_t /*function*/, const std::uint32_t * /*words*/,
                                        std::uint32_t /*top*/, std::uint32_t /*caller*/)
{
    asm("push {r4-r11, lr}\n\t"
        "sub sp, sp, #4\n\t" // 8 bytes alignment, for what the image will call
        "mov r4, sp\n\t"
        "str sp, [r2, #32]\n\t"
        "mov r12, r0\n\t"
        "mov r6, r3\n\t"
        "add r7, r1, #16\n\t"
        "ldm r7, {r7-r10}\n\t"
        "mov sp, r2\n\t"
        "push {r7-r10}\n\t"
        "ldm r1, {r0-r3}\n\t"
        "mov lr, pc\n\t"
        "bx r6\n\t"
        "mov sp, r4\n\t"
        "add sp, sp, #4\n\t"
        "pop {r4-r11, lr}\n\t"
        "bx lr");
}

// Where all veneers lead: changes to this side's stack, takes four words of
// arguments along and calls the function in r12.
[[gnu::naked]] void LeaveImage()
{
    asm("push {r4-r6, lr}\n\t"
        "mov r4, sp\n\t"
        "orr r5, sp, #0xFF00\n\t"
        "orr r5, r5, #0xFF\n\t"
        "ldr sp, [r5, #-3]\n\t"
        "ldr r5, [r4, #24]\n\t"
        "ldr r6, [r4, #28]\n\t"
        "push {r5, r6}\n\t"
        "ldr r5, [r4, #16]\n\t"
        "ldr r6, [r4, #20]\n\t"
        "push {r5, r6}\n\t"
        "mov lr, pc\n\t"
        "bx r12\n\t"
        "mov sp, r4\n\t"
        "mvn r1, #0\n\t"
        "mvn r2, #0\n\t"
        "mvn r3, #0\n\t"
        "mvn r12, #0\n\t"
        "pop {r4-r6, lr}\n\t"
        "bx lr");
}

// Code, made at run time. In THUMB state it is entered at its begin.
struct Veneer {
    std::uint16_t toArm[2] = {0x4778, 0x46C0};        // bx pc; nop
    std::uint32_t code[2] = {0xE59FC000, 0xE59FF000}; // ldr r12, function; ldr pc, leave
    std::uint32_t function;
    std::uint32_t leave = AddressOf(reinterpret_cast<const void *>(&LeaveImage));
};
static_assert(sizeof(Veneer) == 20);

// In this program's own memory, so that a measuring emulator does not take them
// for the image.
constexpr std::uint32_t kPage = 4096;
alignas(kPage) Veneer veneers[kPage / sizeof(Veneer)];
static_assert(sizeof veneers <= kPage);

} // namespace

std::uint32_t CallImage(std::uint32_t function, const CallWords &words)
{
    const std::uint32_t caller =
        deviceOptions.systemIsThumb ? AddressOf(reinterpret_cast<const void *>(&CallFromThumb)) : function;
    return EnterImage(function, words.data(), ImageStack::OfThisThread().Top(), caller);
}

std::uint32_t MakeVeneer(std::uint32_t function)
{
    static unsigned made = 0;
    if (made == std::size(veneers)) {
        Fatal("more imports than there is room for");
    }
    Veneer &veneer = veneers[made++];
    veneer = {.function = function};
    mprotect(veneers, kPage, PROT_READ | PROT_WRITE | PROT_EXEC);
    __builtin___clear_cache(reinterpret_cast<char *>(veneers), reinterpret_cast<char *>(veneers) + kPage);
    return deviceOptions.systemIsThumb ? AddressOf(&veneer) + 1 : AddressOf(veneer.code);
}

} // namespace pavonix::device
