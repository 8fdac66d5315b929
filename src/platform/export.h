// Marks a function as visible to programs that load the library.
#pragma once

#if defined(PAVONIX_TRACED_CALLS)
#define PAVONIX_EXPORT extern "C" // the tracing build exports its own functions of these names
#elif defined(_WIN32)
#define PAVONIX_EXPORT extern "C" // by the module definition file, undecorated
#else
#define PAVONIX_EXPORT extern "C" __attribute__((visibility("default")))
#endif
