// Start-up and unload of the DLL: the device build links no C++ run-time library,
// so constructing and destroying process-wide objects is done here.
#include <cstdint>

namespace {

using Routine = void (*)();

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::uint32_t kProcessAttach = 1;

} // namespace

extern "C" {

// The linker's lists of constructors and destructors: a count that is not used,
// the entries, and a null at the end.
extern const Routine __CTOR_LIST__[];
extern const Routine __DTOR_LIST__[];

// The DLL's entry point; it ignores threads.
int _DllMainCRTStartup(void *, std::uint32_t reason, void *)
{
    if (reason == kProcessAttach) {
        std::uint32_t count = 0;
        while (__CTOR_LIST__[count + 1] != nullptr) {
            ++count;
        }
        // the list is in reverse order, so that the destructors' list can be walked forward
        for (; count > 0; --count) {
            __CTOR_LIST__[count]();
        }
    } else if (reason == kProcessDetach) {
        for (const Routine *destroy = __DTOR_LIST__ + 1; *destroy != nullptr; ++destroy) {
            (*destroy)();
        }
    }
    return 1;
}

} // extern "C"
