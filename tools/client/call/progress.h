// How far a download is, on a terminal.
#pragma once

#include "call/call_record.h"

namespace client {

// Overwrites its own line on standard error, a few times a second, from one second
// after the request on.
void ShowProgress(const CallRecord &record);
// Wipes the line, if there is one.
void EndProgress();

} // namespace client
