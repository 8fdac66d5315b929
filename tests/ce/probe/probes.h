// What the probe image can be asked to do, by its number. Each answers a number:
// what the system answered, or its last error.
#pragma once

namespace pavonix::ce {

enum Probe {
    kEntryReasons,     // the reasons that the entry was called for, one hex digit each
    kGetError,         // the thread's last error
    kSetError,         // sets it to `value`
    kStackAlignment,   // the stack pointer modulo 8
    kUseStack,         // `value` KB of it
    kLoadUnaligned,    // a word from an odd address
    kCountZeros,       // by an instruction of version 5
    kReallocToNothing, // 1 when a block resized to 0 bytes is gone
    kAcquire,          // the error for the provider of row `value`, see probe.cpp
    kRefuseLookAlikes, // the error for a flag of newer systems
    kAskOfUtf8,        // the error for the question whether UTF-8 lacked a character
    kComposeUtf8,      // the error for a flag in a conversion from UTF-8
    kByteOf,           // the bytes for the character `value`, first byte highest
    kCharacterOf,      // the character for the bytes `value`
    kAttributesOf,     // what a search finds first, -1 for nothing
    kCountMatches,     // how many a search finds
    kAppendTo,         // the error of opening to append
    kDelete,           // the error of deleting
    kDeleteOpen,       // the error of deleting what this process reads
    kMakeFolder,       // the error of making a folder
};

} // namespace pavonix::ce
