// The actions of the probe image, by number.
#pragma once

namespace pavonix::ce {

enum Probe {
    kEntryReasons,   // returns the reasons that the entry was called for, one hex digit each
    kStackAlignment, // returns the stack pointer modulo 8
    kUseStack,       // uses `value` KB of it
    kLoadUnaligned,  // loads a word from an odd address
    kLoadHalfUnaligned,
    kCountZeros,     // by an instruction of version 5
    kCallSystem,     // by way of a load into pc
    kCallKernel,     // by svc
    kAddFloats,      // by an instruction for a coprocessor
    kChangeRegister, // returns with another r11
    kReadBelowStack, // returns a word from below the stack pointer, written before a call of the system
    kCallDeep,       // calls the system with `value` KB of the stack in use
    kStartInEntry,   // from now on the entry starts Winsock
};

} // namespace pavonix::ce
