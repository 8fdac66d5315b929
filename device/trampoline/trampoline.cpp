#include "trampoline/trampoline.h"

#include "trampoline/image_stack.h"
#include "trampoline/stack_walk.h"
#include "device_options.h"
#include "system/open_handles.h"

#include <algorithm>
#include <cstring>
#include <sys/mman.h>

// EnterImage calls `function` on the stack that ends at `top`, keeps this side's stack
// pointer in the last word of that stack, and has the image return to `returnAddress`,
// which is ReturnToArm or ReturnToThumb.
//
// All veneers jump to LeaveImage: it changes to this side's stack, copies four words of
// arguments and calls the function in r12.
asm(R"(
    .arm
    .balign 4
    .globl EnterImage, LeaveImage, ReturnToArm, ReturnToThumb
    .type EnterImage, %function
    .type LeaveImage, %function
EnterImage:
    push {r4-r11, lr}
    sub sp, sp, #4
    str sp, [r2, #32]
    mov r12, r0
    mov lr, r3
    add r4, r1, #16
    ldm r4, {r4-r7}
    mov sp, r2
    push {r4-r7}
    ldm r1, {r0-r3}
    ldr r4, 1f
    ldm r4, {r4-r11}
    bx r12
1:  .word keptRegisters
    .thumb
ReturnToThumb:
    bx pc
    nop
    .arm
ReturnToArm:
    mov r1, sp
    orr r2, sp, #0xFF00
    orr r2, r2, #0xFF
    ldr sp, [r2, #-3]
    push {r0, r1, r4-r11}
    add r0, sp, #4
    bl OnReturn
    pop {r0, r1, r4-r11}
    add sp, sp, #4
    pop {r4-r11, lr}
    bx lr

LeaveImage:
    push {r4-r11, lr}
    mov r4, sp
    orr r5, sp, #0xFF00
    orr r5, r5, #0xFF
    ldr sp, [r5, #-3]
    add r5, r4, #36
    ldm r5, {r5-r8}
    push {r0-r3, r12, lr}
    mov r0, r4
    bl OnSystemCall
    pop {r0-r3, r12, lr}
    push {r5-r8}
    mov lr, pc
    bx r12
    mov sp, r4
    mvn r1, #0
    mvn r2, #0
    mvn r3, #0
    mvn r12, #0
    pop {r4-r11, lr}
    bx lr
)");

extern "C" {

std::uint32_t EnterImage(std::uint32_t function, const std::uint32_t *words, std::uint32_t top,
                         std::uint32_t returnAddress);
void LeaveImage();
extern const char ReturnToArm[], ReturnToThumb[];

// The registers that a function must preserve: r4 to r11.
extern const std::uint32_t keptRegisters[8];
const std::uint32_t keptRegisters[8] = {0x4E455304, 0x4E455305, 0x4E455306, 0x4E455307,
                                        0x4E455308, 0x4E455309, 0x4E45530A, 0x4E45530B};
}

namespace pavonix::device {

namespace {

constexpr std::uint32_t kArgumentsOnStack = 16;
constexpr std::uint32_t kSystemsShare = 4096; // of the stack, which the device's own functions use
constexpr std::uint32_t kOverwritten = 512;

std::uint32_t AddressOf(const void *place)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(place));
}

// In THUMB state an address is odd.
std::uint32_t ReturnAddress()
{
    return deviceOptions.systemIsThumb ? AddressOf(ReturnToThumb) + 1 : AddressOf(ReturnToArm);
}

// Code, made at run time. In THUMB state it is entered at its start.
struct Veneer {
    std::uint16_t toArm[2] = {0x4778, 0x46C0};        // bx pc; nop
    std::uint32_t code[2] = {0xE59FC000, 0xE59FF000}; // ldr r12, function; ldr pc, leave
    std::uint32_t function;
    std::uint32_t leave = AddressOf(reinterpret_cast<const void *>(&LeaveImage));
};
static_assert(sizeof(Veneer) == 20);

// In this program's own memory, so that the emulator's plug-ins do not count them as
// part of the image.
constexpr std::uint32_t kPage = 4096;
alignas(kPage) Veneer veneers[kPage / sizeof(Veneer)];
static_assert(sizeof veneers <= kPage);

} // namespace

// The image has returned; `found` are its stack pointer and r4 to r11.
extern "C" void OnReturn(const std::uint32_t *found)
{
    if (found[0] != ImageStack::OfThisThread().Top() - kArgumentsOnStack) {
        Fatal("a function returned with another stack pointer");
    }
    if (!std::equal(keptRegisters, std::end(keptRegisters), found + 1)) {
        Fatal("a function changed a register of r4 to r11");
    }
}

// The image calls the system; `saved` are its r4 to r11 and lr, stored on its stack.
extern "C" void OnSystemCall(std::uint32_t *saved)
{
    const ImageStack &stack = ImageStack::OfThisThread();
    const std::uint32_t top = stack.Top() - kArgumentsOnStack, bottom = AddressOf(saved);
    if (bottom < stack.Bottom() + kSystemsShare) {
        Fatal("a system call with less than 4 KB of the stack left");
    }
    std::memset(saved - kOverwritten / sizeof *saved, 0x5C, kOverwritten); // a system may overwrite these bytes
    ImageRegisters registers = {};
    std::copy_n(saved, 8, registers.words + 4);
    registers.sp() = bottom + 36;
    registers.lr() = registers.pc() = saved[8];
    registers = WalkStack(registers, ReturnAddress(), top);
    if (registers.sp() != top || !std::equal(keptRegisters, std::end(keptRegisters), registers.words + 4)) {
        Fatal("a walk over the stack loses registers");
    }
}

std::uint32_t CallImage(std::uint32_t function, const CallWords &words)
{
    return EnterImage(function, words.data(), ImageStack::OfThisThread().Top(), ReturnAddress());
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
