// Makes the library's system calls for it, in limited time, and notes them.
#pragma once

#include "call/call_record.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace client {

// Each answers, and sets errno, as the call of that name does. A passed deadline
// is ETIMEDOUT, of a look-up TRY_AGAIN.
hostent *NoteLookUp(CallRecord *record, const char *host);
int NoteConnect(CallRecord *record, int socket, const sockaddr_in &peer);
ssize_t NoteSend(CallRecord *record, const void *bytes, size_t count, int flags);
ssize_t NoteReceive(CallRecord *record, void *buffer, size_t room, int flags);

// Before the library closes its connection: listens on for a second when what it
// left unread tells what was wrong.
void NoteClose(CallRecord *record);

} // namespace client
