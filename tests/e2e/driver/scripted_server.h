// A TCP server on 127.0.0.1 that plays one row's script and records the exchange.
#pragma once

#include "scenario.h"

#include <string>
#include <thread>
#include <vector>

namespace pavonix::e2e {

struct ServerScript {
    Server manner = Server::kReplies;
    std::vector<std::string> pieces;
    Ending ending = Ending::kWaits;
};

struct Exchange {
    bool connected = false;    // a client connected
    std::string received;      // all bytes from the client, including any after the request
    bool clientClosed = false; // the client closed the connection
};

class ScriptedServer {
public:
    // Listens on a free port; serves one client on its own thread.
    explicit ScriptedServer(ServerScript script);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer &) = delete;
    ScriptedServer &operator=(const ScriptedServer &) = delete;

    int port() const { return port_; }

    // To be called after the library's call has returned: ends the server and returns the
    // exchange.
    Exchange Finish();

private:
    void Run();
    bool WaitForClient();
    void ReadRequest(int client);
    void SendPieces(int client);
    void AwaitClose(int client);

    ServerScript script_;
    int listener_;
    int stop_[2]; // a pipe: its write end is closed to end the wait for a client
    int port_ = 0;
    Exchange seen_;
    std::thread thread_;
};

} // namespace pavonix::e2e
