#include "test/loopback_server.h"

#include "test/system.h"
#include "test/text.h"

namespace pavonix::device_test {

namespace {

struct Address {
    std::int16_t family = 2;
    std::uint16_t port = 0; // in network order; 0 takes a free one
    std::uint8_t host[4] = {127, 0, 0, 1}, zeros[8] = {};
};
static_assert(sizeof(Address) == 16);

constexpr SOCKET kNoSocket = ~SOCKET{0};
constexpr WORD kWinsock2 = 0x0202;

// Looked up, so that this program starts on an image without Winsock.
struct Winsock {
    template <typename Function>
    static Function *Find(const wchar_t *name)
    {
        return FindFunction<Function>(L"ws2.dll", name);
    }

    decltype(WSAStartup) *start = Find<decltype(WSAStartup)>(L"WSAStartup");
    decltype(::socket) *open = Find<decltype(::socket)>(L"socket");
    decltype(::closesocket) *close = Find<decltype(::closesocket)>(L"closesocket");
    decltype(::recv) *receive = Find<decltype(::recv)>(L"recv");
    decltype(::send) *send = Find<decltype(::send)>(L"send");
    int (*bind)(SOCKET, const Address *, int) = Find<int(SOCKET, const Address *, int)>(L"bind");
    int (*listen)(SOCKET, int) = Find<int(SOCKET, int)>(L"listen");
    SOCKET (*accept)(SOCKET, Address *, int *) = Find<SOCKET(SOCKET, Address *, int *)>(L"accept");
    int (*getName)(SOCKET, Address *, int *) = Find<int(SOCKET, Address *, int *)>(L"getsockname");

    bool complete() const
    {
        return start != nullptr && open != nullptr && close != nullptr && receive != nullptr && send != nullptr &&
               bind != nullptr && listen != nullptr && accept != nullptr && getName != nullptr;
    }
};

const Winsock &Functions()
{
    static const Winsock functions;
    return functions;
}

SOCKET listening = kNoSocket;
char request[4096];
std::size_t received = 0;
char body[3000];

// One piece: the library takes the body's first bytes from the segment of the head.
void Reply(SOCKET socket)
{
    static FixedText<sizeof body + 100> reply;
    reply.Clear();
    reply.Append("HTTP/1.1 200 OK\r\nContent-Length: ").AppendDecimal(sizeof body).Append("\r\n\r\n");
    reply.AppendN(body, sizeof body);
    Functions().send(socket, reply.c_str(), reply.length(), 0);
}

void Serve(SOCKET socket)
{
    received = 0;
    while (received < sizeof request && LastRequest().find("\r\n\r\n") == std::string_view::npos) {
        const int count =
            Functions().receive(socket, request + received, static_cast<int>(sizeof request - received), 0);
        if (count <= 0) {
            break;
        }
        received += static_cast<std::size_t>(count);
    }
    Reply(socket);
    Functions().close(socket);
}

DWORD ServeAll(void *)
{
    for (SOCKET socket; (socket = Functions().accept(listening, nullptr, nullptr)) != kNoSocket;) {
        Serve(socket);
    }
    return 0;
}

} // namespace

int StartLoopbackServer()
{
    WSADATA data;
    Address address;
    int length = sizeof address;
    if (!Functions().complete()) {
        return 0;
    }
    if (Functions().start(kWinsock2, &data) != 0) {
        return 0;
    }
    for (std::size_t i = 0; i < sizeof body; ++i) {
        body[i] = static_cast<char>('A' + i % 26);
    }
    listening = Functions().open(2, 1, 6);
    if (listening == kNoSocket || Functions().bind(listening, &address, sizeof address) != 0 ||
        Functions().listen(listening, 5) != 0 || Functions().getName(listening, &address, &length) != 0) {
        return 0;
    }
    const HANDLE thread = CreateThread(nullptr, 0, ServeAll, nullptr, 0, nullptr);
    if (thread == nullptr) {
        return 0;
    }
    CloseHandle(thread);
    return static_cast<std::uint16_t>(address.port << 8 | address.port >> 8);
}

void KeepWinsock()
{
    WSADATA data;
    Functions().start(kWinsock2, &data);
    Functions().start(kWinsock2, &data);
}

std::string_view LoopbackBody()
{
    return {body, sizeof body};
}

std::string_view LastRequest()
{
    return {request, received};
}

} // namespace pavonix::device_test
