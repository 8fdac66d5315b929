// What the tracing build is told at the few places of a call that know more than
// the platform does. In the ordinary build these are nothing.
#pragma once

namespace pavonix {

class DeviceProfile;
class HttpConnection;
class ZtRsa;

namespace trace {

#if defined(PAVONIX_TRACE)

void TellProfile(const DeviceProfile &profile); // what was read from the file
void TellEngine(ZtRsa *rsa);                    // its log of the operation just done
void TellReply(const HttpConnection &connection);

#else

inline void TellProfile(const DeviceProfile &) {}
inline void TellEngine(ZtRsa *) {}
inline void TellReply(const HttpConnection &) {}

#endif

} // namespace trace

} // namespace pavonix
