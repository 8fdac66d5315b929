// What the probe image can be asked to do, by its number.
#pragma once

namespace pavonix::ce {

enum Probe {
    kEntryReasons,   // answers the reasons that the entry was called for, one hex digit each
    kStackAlignment, // answers the stack pointer modulo 8
    kUseStack,       // uses `value` KB of it
    kLoadUnaligned,  // loads a word from an odd address
    kCountZeros,     // by an instruction of version 5
    kCallSystem,     // by way of a load into pc
};

} // namespace pavonix::ce
