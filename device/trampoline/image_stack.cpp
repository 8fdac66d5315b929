#include "trampoline/image_stack.h"

#include "system/open_handles.h"

#include <csignal>
#include <cstdlib>
#include <sys/mman.h>

namespace pavonix::device {

namespace {

constexpr std::uint32_t kReserved = 0x2000;
constexpr std::uint32_t kForbidden = kStackSize + kReserved; // far enough for a frame that jumps over the reserve
constexpr std::uint32_t kMapping = 3 * kStackSize;           // holds a forbidden stack and a usable one, aligned
constexpr std::uint32_t kSignalStack = 0x4000;
constexpr std::uint32_t kAboveTheCall = 36; // 4 above a multiple of 8

std::uint32_t AddressOf(const void *place)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(place));
}

unsigned char *Map(std::uint32_t size, int protection)
{
    void *bytes = mmap(nullptr, size, protection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (bytes == MAP_FAILED) {
        Fatal("out of memory for a thread's stack");
    }
    return static_cast<unsigned char *>(bytes);
}

thread_local std::uint32_t forbiddenEnd = 0;

// Runs on a stack of its own: the thread's is used up.
void OnSegmentationFault(int, siginfo_t *fault, void *)
{
    const std::uint32_t address = AddressOf(fault->si_addr);
    if (address < forbiddenEnd && address >= forbiddenEnd - kForbidden) {
        Fatal("the stack of 56 KB is used up");
    }
    std::signal(SIGSEGV, SIG_DFL); // the access happens again, and ends the process
}

} // namespace

ImageStack::ImageStack() : mapping_(Map(kMapping, PROT_NONE)), signalStack_(Map(kSignalStack, PROT_READ | PROT_WRITE))
{
    forbiddenEnd = Bottom();
    mprotect(mapping_ + (Bottom() - AddressOf(mapping_)), kStackSize - kReserved, PROT_READ | PROT_WRITE);

    stack_t own = {};
    own.ss_sp = signalStack_;
    own.ss_size = kSignalStack;
    sigaltstack(&own, nullptr);
    struct sigaction action = {};
    action.sa_sigaction = OnSegmentationFault;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigaction(SIGSEGV, &action, nullptr);
}

ImageStack::~ImageStack()
{
    stack_t none = {};
    none.ss_flags = SS_DISABLE;
    sigaltstack(&none, nullptr);
    munmap(signalStack_, kSignalStack);
    munmap(mapping_, kMapping);
}

ImageStack &ImageStack::OfThisThread()
{
    thread_local ImageStack stack;
    return stack;
}

std::uint32_t ImageStack::Top() const
{
    return (AddressOf(mapping_) + kMapping) / kStackSize * kStackSize - kAboveTheCall;
}

std::uint32_t ImageStack::Bottom() const
{
    return Top() / kStackSize * kStackSize + kReserved;
}

} // namespace pavonix::device
