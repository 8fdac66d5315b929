// A shop on loopback that costs as little as possible: its replies are prepared.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

namespace pavonix::bench {

// Replies to each GET with as many body bytes as the last number of its address says, and
// each POST with "ok". The head and the first body bytes go in one send. One connection at a
// time, on a thread of its own; the client closes.
class LoopbackServer {
public:
    LoopbackServer();
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer &) = delete;
    LoopbackServer &operator=(const LoopbackServer &) = delete;

    int port() const { return port_; }
    // Delays each reply.
    void Pause(std::chrono::microseconds pause) { pause_ = pause.count(); }
    std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/shop"; }

private:
    void Run();
    void Reply(int client);
    bool SendBody(int client, std::size_t count);

    int listener_ = -1;
    int port_ = 0;
    std::atomic<long> pause_ = 0; // microseconds
    std::string block_;           // a head has room at its front, body bytes follow
    std::thread thread_;
};

} // namespace pavonix::bench
