#include "interruption.h"

#include <csignal>
#include <cstring>
#include <unistd.h>

namespace client {

namespace {

const StoredFile *current = nullptr;

void Write(const char *text)
{
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, std::strlen(text));
}

// Calls only what a signal handler may call.
void End(int signal)
{
    struct stat now = {};
    Write("\npavonix: interrupted");
    if (stat(current->path().c_str(), &now) == 0 && IsOther(current->before(), now)) {
        Write("; ");
        Write(current->path().c_str());
        Write(" is only half there, --force downloads it again");
    }
    Write("\n");
    _exit(128 + signal);
}

} // namespace

Interruption::Interruption(const StoredFile &target)
{
    current = &target;
    std::signal(SIGINT, End);
    std::signal(SIGTERM, End);
}

Interruption::~Interruption()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    current = nullptr;
}

} // namespace client
