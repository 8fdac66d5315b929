// A look-up has no time-out here, and nobody listens on after the library: the
// record holds what the library itself received. The system does not tell segments.
#include "windows/call_hooks.h"

#include "call/call_record.h"
#include "call/progress.h"
#include "wire/socket.h"

#include <winsock2.h>

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace client {

namespace {

using diagnostics::End;
using std::chrono::milliseconds;

CallRecord *RecordOf(SOCKET socket)
{
    CallRecord *record = Recording::Current();
    return record != nullptr && record->socket == static_cast<int>(socket) ? record : nullptr;
}

hostent *WSAAPI LookUp(const char *name)
{
    hostent *found = gethostbyname(name);
    if (CallRecord *record = Recording::Current(); record != nullptr) {
        record->host = name;
        record->nameError = found == nullptr ? WSAGetLastError() : 0;
    }
    return found;
}

int WSAAPI Connect(SOCKET socket, const sockaddr *address, int length)
{
    CallRecord *record = Recording::Current();
    if (record == nullptr || length != sizeof(sockaddr_in)) {
        return connect(socket, address, length);
    }
    const Address peer = AddressOf(*reinterpret_cast<const sockaddr_in *>(address));
    record->address = Dotted(peer) + ":" + std::to_string(peer.port);
    record->socket = static_cast<int>(socket);
    record->connectError = ConnectInTime(record->socket, peer, record->deadlineOrNull());
    record->timedOut = record->deadline && record->connectError == WSAETIMEDOUT;
    WSASetLastError(record->connectError);
    return record->connectError == 0 ? 0 : SOCKET_ERROR;
}

int WSAAPI Send(SOCKET socket, const char *bytes, int count, int flags)
{
    const int sent = send(socket, bytes, count, flags);
    if (CallRecord *record = RecordOf(socket); record != nullptr) {
        record->sendError = sent < 0 ? WSAGetLastError() : 0;
        record->exchange.request.append(bytes, static_cast<std::size_t>(std::max(sent, 0)));
        record->sentAt = CallRecord::Clock::now();
    }
    return sent;
}

void NoteReceived(CallRecord *record, const char *bytes, int received)
{
    diagnostics::Exchange &exchange = record->exchange;
    if (record->received == 0) {
        exchange.firstByteAfter = std::chrono::duration_cast<milliseconds>(CallRecord::Clock::now() - record->sentAt);
        exchange.firstBytes = static_cast<std::size_t>(std::max(received, 0));
    }
    if (received > 0) {
        record->Keep(bytes, static_cast<std::size_t>(received));
        record->received += static_cast<std::uint64_t>(received);
    } else {
        exchange.end = received == 0 ? End::kClosed : End::kReset;
    }
    if (record->showProgress) {
        ShowProgress(*record);
    }
}

int WSAAPI Receive(SOCKET socket, char *buffer, int room, int flags)
{
    CallRecord *record = RecordOf(socket);
    if (record != nullptr && !WaitToRead(record->socket, record->deadlineOrNull())) {
        record->timedOut = true;
        record->exchange.end = End::kTimeOut;
        WSASetLastError(WSAETIMEDOUT);
        return SOCKET_ERROR;
    }
    const int received = recv(socket, buffer, room, flags);
    if (record != nullptr) {
        const int error = WSAGetLastError();
        NoteReceived(record, buffer, received);
        WSASetLastError(error);
    }
    return received;
}

template <class Function>
void *Pointer(Function *function)
{
    return reinterpret_cast<void *>(function);
}

struct Hook {
    const char *name;
    void *function;
};
const Hook kHooks[] = {{"gethostbyname", Pointer(LookUp)},
                       {"connect", Pointer(Connect)},
                       {"send", Pointer(Send)},
                       {"recv", Pointer(Receive)}};

void Replace(IMAGE_THUNK_DATA *place, void *function)
{
    DWORD before = 0;
    VirtualProtect(place, sizeof *place, PAGE_READWRITE, &before);
    place->u1.Function = reinterpret_cast<ULONG_PTR>(function);
    VirtualProtect(place, sizeof *place, before, &before);
}

void HookImports(char *image, const IMAGE_IMPORT_DESCRIPTOR &imports)
{
    auto *name = reinterpret_cast<IMAGE_THUNK_DATA *>(image + imports.OriginalFirstThunk);
    auto *place = reinterpret_cast<IMAGE_THUNK_DATA *>(image + imports.FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++place) {
        if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
            continue;
        }
        const auto *imported = reinterpret_cast<IMAGE_IMPORT_BY_NAME *>(image + name->u1.AddressOfData);
        for (const Hook &hook : kHooks) {
            if (std::strcmp(hook.name, reinterpret_cast<const char *>(imported->Name)) == 0) {
                Replace(place, hook.function);
            }
        }
    }
}

} // namespace

void HookCallsOf(void *library)
{
    auto *image = static_cast<char *>(library);
    const auto *dos = reinterpret_cast<IMAGE_DOS_HEADER *>(image);
    const auto *headers = reinterpret_cast<IMAGE_NT_HEADERS *>(image + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY &directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.Size == 0) {
        return;
    }
    const auto *imports = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR *>(image + directory.VirtualAddress);
    for (; imports->Name != 0; ++imports) {
        if (_stricmp(image + imports->Name, "ws2_32.dll") == 0) {
            HookImports(image, *imports);
        }
    }
}

} // namespace client
