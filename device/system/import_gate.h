// A gate before every function that the DLL imports: it counts the calls and makes
// those fail that a test selects.
#pragma once

#include "system/last_error.h"

#include <cstdint>
#include <type_traits>

namespace pavonix::device {

// True while this thread runs an image's entry, from which few functions may be called.
inline thread_local bool entryRuns = false;

class ImportGate {
public:
    ImportGate(const char *library, const char *name, bool canFail);

    // True for a call that must fail.
    bool NextCallFails();

    const char *Library() const { return library_; }
    const char *Name() const { return name_; }
    bool CanFail() const { return canFail_; }
    unsigned Calls() const { return calls_; }
    unsigned Faults() const { return faults_; }

    // Makes the nth call from now (1 is the next) fail, and all later ones if `ever`.
    void FailAt(unsigned nth, bool ever);
    // No more faults, and both counts from 0.
    void Restart();

private:
    const char *library_;
    const char *name_;
    bool canFail_;
    unsigned calls_ = 0;
    unsigned faults_ = 0;
    unsigned untilFault_ = 0; // 0: no fault is set
    bool failsEver_ = false;
};

// One row of the import table.
struct Import {
    ImportGate *gate;
    std::uint32_t address; // of the gate
};

template <auto Function, auto Failure>
struct Gated;

template <typename Result, typename... Arguments, Result (*Function)(Arguments...), auto Failure>
struct Gated<Function, Failure> {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): the sizes of the pointers are meant
    static_assert((... && (sizeof(Arguments) <= 4)), "only pointers and 32-bit integers cross to the device");

    static Import Row(const char *library, const char *name, bool canFail)
    {
        static ImportGate gate(library, name, canFail);
        gate_ = &gate;
        return {&gate, static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&Call))};
    }

private:
    static Result Call(Arguments... arguments)
    {
        if (!gate_->NextCallFails()) {
            return Function(arguments...);
        }
        lastError = kErrorInjected;
        if constexpr (std::is_invocable_v<decltype(Failure), Arguments...>) {
            return Failure(arguments...);
        } else if constexpr (std::is_pointer_v<Result>) {
            return reinterpret_cast<Result>(static_cast<std::uintptr_t>(Failure));
        } else {
            return static_cast<Result>(Failure);
        }
    }

    static inline ImportGate *gate_ = nullptr;
};

// A function whose documented failure is to return `Failure` and set the last error.
// `Failure` may also be a function, for a failure with side effects.
template <auto Function, auto Failure>
Import Failing(const char *library, const char *name)
{
    return Gated<Function, Failure>::Row(library, name, true);
}

// A function that cannot fail.
template <auto Function>
Import Unfailing(const char *library, const char *name)
{
    return Gated<Function, Function>::Row(library, name, false);
}

} // namespace pavonix::device
