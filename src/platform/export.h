// How a function is made visible to programs that load the library.
#pragma once

#if defined(PAVONIX_TRACED_CALLS)
#define PAVONIX_EXPORT extern "C" // the tracing build makes visible what it puts in front
#elif defined(_WIN32)
#define PAVONIX_EXPORT extern "C" // by the module definition file, undecorated
#else
#define PAVONIX_EXPORT extern "C" __attribute__((visibility("default")))
#endif
