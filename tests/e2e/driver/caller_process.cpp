#include "caller_process.h"

#include "execute.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace pavonix::e2e {

namespace {

constexpr std::chrono::seconds kStartPatience(120); // a first start of Wine sets up its folder

[[noreturn]] void Become(const std::vector<std::string> &command, int input, int output, const std::string &errorFile)
{
    const int errors = open(errorFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(errors, STDERR_FILENO);
    Execute(command);
}

} // namespace

CallerProcess::CallerProcess(std::vector<std::string> command, std::string errorFile)
    : command_(std::move(command)), errorFile_(std::move(errorFile))
{
}

CallerProcess::~CallerProcess()
{
    if (pid_ != 0) {
        kill(pid_, SIGKILL);
        Reap();
    }
}

bool CallerProcess::Start()
{
    int toCaller[2], fromCaller[2];
    if (pipe2(toCaller, O_CLOEXEC) != 0 || pipe2(fromCaller, O_CLOEXEC) != 0) {
        return false;
    }
    pid_ = fork();
    if (pid_ == 0) {
        Become(command_, toCaller[0], fromCaller[1], errorFile_);
    }
    close(toCaller[0]);
    close(fromCaller[1]);
    input_ = toCaller[1];
    output_ = fromCaller[0];
    pending_.clear();
    return ReadLine(kStartPatience) == "ready";
}

std::optional<std::string> CallerProcess::Ask(const std::string &command, std::chrono::seconds patience)
{
    std::optional<std::string> answer;
    if (pid_ != 0 || Start()) {
        const std::string line = command + "\n";
        if (write(input_, line.data(), line.size()) == static_cast<ssize_t>(line.size())) {
            answer = ReadLine(patience);
        }
    }
    if (!answer && pid_ != 0) {
        kill(pid_, SIGKILL);
        Reap();
    }
    return answer;
}

std::optional<std::string> CallerProcess::ReadLine(std::chrono::seconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    std::size_t end;
    while ((end = pending_.find('\n')) == std::string::npos) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd ready = {output_, POLLIN, 0};
        if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) != 1) {
            return std::nullopt;
        }
        char bytes[8192];
        const ssize_t count = read(output_, bytes, sizeof bytes);
        if (count <= 0) {
            return std::nullopt;
        }
        pending_.append(bytes, static_cast<std::size_t>(count));
    }
    std::string line = pending_.substr(0, end);
    pending_.erase(0, end + 1);
    if (!line.empty() && line.back() == '\r') { // Windows ends its lines so
        line.pop_back();
    }
    return line;
}

bool CallerProcess::Quit()
{
    if (pid_ == 0) {
        return true;
    }
    const bool sent = write(input_, "quit\n", 5) == 5;
    const int status = Reap();
    return sent && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int CallerProcess::Reap()
{
    close(input_);
    close(output_);
    int status = 0;
    waitpid(pid_, &status, 0);
    pid_ = 0;
    return status;
}

std::string CallerProcess::Complaints() const
{
    std::ostringstream text;
    text << std::ifstream(errorFile_).rdbuf();
    return text.str();
}

} // namespace pavonix::e2e
