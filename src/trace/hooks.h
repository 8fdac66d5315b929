// What the tracing build is told at the few places of a call that know more than
// the platform does. A macro, so that to the compiler of the ordinary build there
// is nothing: its code is, byte for byte, that of sources without these lines.
#pragma once

namespace pavonix {

class DeviceProfile;
class HttpConnection;
class ZtRsa;

namespace trace {

void TellProfile(const DeviceProfile &profile); // what was read from the file
void TellEngine(ZtRsa *rsa);                    // its log of the operation just done
void TellReply(const HttpConnection &connection);

} // namespace trace

} // namespace pavonix

#if defined(PAVONIX_TRACE)
#define PAVONIX_TRACE_HOOK(call) trace::call
#else
#define PAVONIX_TRACE_HOOK(call) static_cast<void>(0)
#endif
