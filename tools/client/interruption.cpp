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
        Write(" is incomplete; use --force to download it again");
    }
    Write("\n");
    _exit(128 + signal);
}

volatile std::sig_atomic_t stopRequested = 0;

void NoteStop(int signal)
{
    stopRequested = 1;
    std::signal(signal, SIG_DFL);
    Write("\nstopping after this step; press Ctrl-C again to end at once\n");
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

StopRequest::StopRequest()
{
    stopRequested = 0;
    std::signal(SIGINT, NoteStop);
}

StopRequest::~StopRequest()
{
    std::signal(SIGINT, SIG_DFL);
}

bool StopRequest::IsMade()
{
    return stopRequested != 0;
}

} // namespace client
