// A server program that runs beside a test.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace boost::process {
class child;
}

namespace pavonix::e2e {

// A port of 127.0.0.1 that nobody listens on right now.
int FreePort();

class Service {
public:
    // Starts the program, which is to listen on `port`; its output goes into
    // logFile.
    Service(const std::vector<std::string> &command, int port, const std::string &logFile);
    // Ends it.
    ~Service();
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    // True as soon as the port takes connections; false when the program ended or
    // it takes too long.
    bool IsUp() const;

private:
    std::unique_ptr<boost::process::child> program_;
    int port_;
};

} // namespace pavonix::e2e
