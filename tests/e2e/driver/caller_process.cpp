#include "caller_process.h"

#include <boost/process.hpp>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <unistd.h>
#include <utility>

namespace pavonix::e2e {

namespace {

namespace process = boost::process;

constexpr std::chrono::seconds kStartPatience(120); // the first start of Wine creates its folder

} // namespace

struct CallerProcess::Running {
    process::pipe input, output;
    process::child program; // its destruction ends the program
    std::string pending;
};

bool WaitsForever()
{
    return std::getenv("PAVONIX_NO_TIMEOUT") != nullptr;
}

CallerProcess::CallerProcess(const std::string &command, std::string errorFile)
    : command_("/usr/bin/env " + command), errorFile_(std::move(errorFile)) // env reports a missing program
{
}

CallerProcess::~CallerProcess() = default;

bool CallerProcess::Start()
{
    running_ = std::make_unique<Running>();
    std::filesystem::remove(errorFile_); // output of an earlier program
    std::error_code error;
    running_->program = process::child(command_, process::std_in<running_->input, process::std_out> running_->output,
                                       process::std_err > errorFile_, error);
    return !error && ReadLine(kStartPatience) == "ready";
}

bool CallerProcess::Write(const std::string &line)
{
    return write(running_->input.native_sink(), line.data(), line.size()) == static_cast<ssize_t>(line.size());
}

std::optional<std::string> CallerProcess::Ask(const std::string &command, std::chrono::seconds patience)
{
    std::optional<std::string> reply;
    if ((running_ || Start()) && Write(command + "\n")) {
        reply = ReadLine(patience);
    }
    if (!reply) {
        running_.reset();
    }
    return reply;
}

std::optional<std::string> CallerProcess::ReadLine(std::chrono::seconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    const int output = running_->output.native_source();
    std::string &pending = running_->pending;
    std::size_t end;
    while ((end = pending.find('\n')) == std::string::npos) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd ready = {output, POLLIN, 0};
        const int wait = WaitsForever() ? -1 : static_cast<int>(std::max<std::int64_t>(left.count(), 0));
        if (poll(&ready, 1, wait) != 1) {
            return std::nullopt;
        }
        char bytes[8192];
        const ssize_t count = read(output, bytes, sizeof bytes);
        if (count <= 0) {
            return std::nullopt;
        }
        pending.append(bytes, static_cast<std::size_t>(count));
    }
    std::string line = pending.substr(0, end);
    pending.erase(0, end + 1);
    if (!line.empty() && line.back() == '\r') { // a Windows line end
        line.pop_back();
    }
    return line;
}

bool CallerProcess::Quit()
{
    if (!running_) {
        return true;
    }
    const bool sent = Write("quit\n");
    running_->program.wait();
    const bool succeeded = running_->program.exit_code() == 0; // the signal's number if a signal ended it
    running_.reset();
    return sent && succeeded;
}

std::string CallerProcess::ErrorOutput() const
{
    std::ostringstream text;
    text << std::ifstream(errorFile_).rdbuf();
    return text.str();
}

} // namespace pavonix::e2e
