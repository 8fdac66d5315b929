// The network calls of a loaded library, caught on their way.
#pragma once

namespace client {

// Puts functions that note what they do (call/call_record.h) in place of those that
// the library imports from Winsock. library: as LoadLibrary answered it.
void HookCallsOf(void *library);

} // namespace client
