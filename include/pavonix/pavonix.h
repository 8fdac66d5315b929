/* Pavonix: goods shop client for Windows CE, desktop Windows and Linux.
 *
 * This is the one header a shop application includes. It is C89 and C++98 clean
 * apart from the 16-bit text type, so that Visual Studio 2005 and eVC4 take it.
 *
 * The three calls share process-wide state and take no lock: a caller makes one
 * call at a time. Every call blocks; there are no time-outs. No call throws,
 * and none reports anything by the thread's error value.
 *
 * Windows: a call that stores a file, or whose purchase is accepted or refused,
 * balances its WSAStartup calls. Any other call, including one that keeps the file or
 * returns 200 but could not write it, may call WSACleanup once or twice too often. An
 * application that uses Winsock itself calls WSAStartup twice before its first call,
 * and twice after each call of that kind; otherwise its own sockets are closed.
 */
#ifndef PAVONIX_PAVONIX_H
#define PAVONIX_PAVONIX_H

/* The version, as a text and as a number that grows: 65536 * major + 256 * minor +
 * patch. The build reads it here; it is written nowhere else.
 */
#define PAVONIX_VERSION "1.1.0"
#define PAVONIX_VERSION_NUMBER 0x010100

/* PavonixChar: one UTF-16 code unit, 16 bits, in the machine's byte order. It is
 * wchar_t if that has 16 bits, as with gcc -fshort-wchar on Linux: texts can then be
 * written L"so".
 */
#if defined(_WIN32) || defined(_WIN32_WCE) || (defined(__SIZEOF_WCHAR_T__) && __SIZEOF_WCHAR_T__ == 2)
#include <stddef.h>
typedef wchar_t PavonixChar;
#elif defined(__cplusplus) && __cplusplus >= 201103L
typedef char16_t PavonixChar;
#else
typedef unsigned short PavonixChar;
/* L"so" has 32-bit units here, and a call that receives it finds no file and
 * no host. Newer compilers refuse it by themselves. Compile with -fshort-wchar, or
 * write u"so" (C11).
 */
#if defined(__GNUC__) && !defined(__cplusplus)
#pragma GCC diagnostic error "-Wincompatible-pointer-types"
#endif
#endif

/* The platform's standard calling convention; only 32-bit x86 Windows has a choice. */
#if defined(_WIN32) && !defined(_WIN32_WCE) && !defined(UNDER_CE) && (defined(_M_IX86) || defined(__i386__))
#define PAVONIX_CALL __stdcall
#else
#define PAVONIX_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* One page of the goods catalogue. 28 bytes, seven 32-bit signed integers. */
typedef struct GoodListRequest {
    int reserved0; /* the caller's own, never read */
    int reserved1; /* the caller's own, never read */
    int type;      /* query value "type" */
    int category;  /* query value "category" */
    int sort;      /* query value "sort" */
    int start;     /* query value "start": first item of the page */
    int max;       /* query value "max": items per page */
} GoodListRequest;

/* One good. 16 bytes, four 32-bit signed integers. */
typedef struct OneGoodRequest {
    int reserved0; /* the caller's own, never read */
    int reserved1; /* the caller's own, never read */
    int type;      /* query value "type" */
    int id;        /* query value "id" */
} OneGoodRequest;

/* One purchase. 20 bytes, five 32-bit signed integers. */
typedef struct BuyGoodRequest {
    int reserved0; /* the caller's own, never read */
    int reserved1; /* the caller's own, never read */
    int type;      /* form field "type" */
    int id;        /* form field "id" */
    int force;     /* form field "force" */
} BuyGoodRequest;

#define PAVONIX_MESSAGE_ROOM 256        /* PavonixChars, terminator included */
#define PAVONIX_TIMESTAMP_ROOM 64       /* PavonixChars, terminator included */
#define PAVONIX_LONGEST_REPLY_ROOM 1024 /* PavonixChars, terminator included */

/* The server's verdict on a purchase, in the form to use: with room for the longest
 * reply that the library can hold (1024 bytes), so that no server can overrun it.
 * An overlong message runs on into serverTimestamp, still inside the record. It is
 * written only for a status other than 200; fields that a call does not write keep
 * what the caller put there. Pass it as PAVONIX_RESULT(&verdict).
 */
typedef struct BuyGoodRoomyResult {
    int reserved0;                                           /* offset 0: the caller's own, never written */
    int reserved1;                                           /* offset 4: the caller's own, never written */
    int errorCode;                                           /* offset 8: "X-Error-Code", 0 if absent */
    PavonixChar message[PAVONIX_MESSAGE_ROOM];               /* offset 12: "X-Error-Message"; for code 0 the body */
    PavonixChar serverTimestamp[PAVONIX_LONGEST_REPLY_ROOM]; /* offset 524: "X-Server-Timestamp", for code 906 */
} BuyGoodRoomyResult;

/* A server can overrun this record: texts are written in their full length,
 * unchecked. It is the form for a server known to keep its messages under 256 and
 * its timestamps under 64 characters, and for callers that have it already.
 */
typedef struct BuyGoodResult {
    int reserved0;
    int reserved1;
    int errorCode;
    PavonixChar message[PAVONIX_MESSAGE_ROOM];
    PavonixChar serverTimestamp[PAVONIX_TIMESTAMP_ROOM];
} BuyGoodResult;

/* The address of a BuyGoodRoomyResult, checked by the compiler, as GetBuyGood takes it. */
#define PAVONIX_RESULT(roomy) ((BuyGoodResult *)(1 ? (roomy) : (BuyGoodRoomyResult *)0))

/* Return values of all three calls. Any other value is the HTTP status as the
 * server sent it; a server that sends the status 0 or 1 cannot be recognised.
 */
#define PAVONIX_FAILED 0 /* no reply status was obtained; no file was touched */
#define PAVONIX_KEPT 1   /* downloads: force was 0 and the target file exists; nothing was sent */
#define PAVONIX_OK 200   /* the status was 200; a download may still be cut short or not stored */

/* Stores one page of the catalogue, as XML, in the file targetPath.
 *
 * profilePath: the device profile file, read anew by every call.
 * targetPath:  under 260 characters, all in the ANSI code page; an old file there
 *              is deleted, also when the new one cannot be opened.
 * force:       0 keeps an existing target file; any other value downloads anyway.
 * baseUrl:     "http://host/path" without a query, under 200 characters. A port
 *              written in it goes into the Host line only.
 * port:        the TCP port to connect to; the low 16 bits count.
 * All texts are NUL-terminated.
 */
int PAVONIX_CALL GetGoodListXml(const PavonixChar *profilePath, const GoodListRequest *request,
                                const PavonixChar *targetPath, int force, const PavonixChar *baseUrl, int port);

/* Stores the XML of one good in the file targetPath. Arguments as above. */
int PAVONIX_CALL GetOneGoodXml(const PavonixChar *profilePath, const OneGoodRequest *request,
                               const PavonixChar *targetPath, int force, const PavonixChar *baseUrl, int port);

/* Asks the server to sell a good. The result record is untouched when the call
 * returns 200, and when it returns 0 because nothing could be sent. If the request
 * went out but no usable status arrived, the call returns 0 and still fills in the
 * record from whatever was received: the error headers, if there are any; otherwise
 * error code 0 and, as the message, the body bytes that arrived with a complete head,
 * or without a complete head everything but the first two bytes.
 */
int PAVONIX_CALL GetBuyGood(const PavonixChar *profilePath, const BuyGoodRequest *request, BuyGoodResult *result,
                            const PavonixChar *baseUrl, int port);

#ifdef __cplusplus
}
#endif

#endif
