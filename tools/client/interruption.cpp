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
    Write("\npavonix: interrupted");
    const FileState now = StateOf(current->path().c_str());
    if (now.kind == FileState::Kind::kFile && now != current->before()) {
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
