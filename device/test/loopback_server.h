// A web server on this device, for calls that need no network.
#pragma once

#include <string_view>

namespace pavonix::device_test {

// Starts it on a thread of its own, for the rest of the program's life. It
// replies to every request with status 200 and kLoopbackBody. Returns the port, or 0
// if there is no Winsock or no loopback interface.
int StartLoopbackServer();

// Call it before each call of the library, which may clean up Winsock twice too often
// and so end the server.
void KeepWinsock();

std::string_view LoopbackBody();

// The last request's head as it was received, as far as there is room for it.
std::string_view LastRequest();

} // namespace pavonix::device_test
