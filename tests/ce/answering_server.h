// A server that gives every client the same reply as soon as it has sent
// anything, so that also half a request, or none, is over at once.
#pragma once

#include <string>
#include <thread>

namespace pavonix::ce {

class AnsweringServer {
public:
    explicit AnsweringServer(std::string reply);
    ~AnsweringServer();
    AnsweringServer(const AnsweringServer &) = delete;
    AnsweringServer &operator=(const AnsweringServer &) = delete;

    int port() const { return port_; }

private:
    void Serve();

    std::string reply_;
    int listener_;
    int port_ = 0;
    std::thread thread_;
};

} // namespace pavonix::ce
