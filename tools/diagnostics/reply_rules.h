// Rules about replies, of downloads and of purchases.
#pragma once

#include "diagnostics/fixes.h"
#include "http/reply_facts.h"

namespace diagnostics {

inline constexpr std::string_view kFindsNoStatus = "it finds no status; the call returns 0";

inline constexpr Rule kSilent = {"silent", Topic::kFirstBytes, Severity::kError,
                                 "The server took the request and sent no reply in time.",
                                 "it has no time-out: the call does not return before the server replies or closes"};
inline constexpr Rule kClosedEmpty = {"closed-empty", Topic::kFirstBytes, Severity::kError,
                                      "The server closed the connection without a reply.", kFindsNoStatus};
inline constexpr Rule kResetEarly = {"reset-early", Topic::kFirstBytes, Severity::kError,
                                     "The server reset the connection instead of replying.", kFindsNoStatus};
inline constexpr Rule kOddStart = {"odd-start", Topic::kFirstBytes, Severity::kWarning,
                                   "The reply does not start with \"HTTP/\".",
                                   "it does not look: the status is after the first space"};

// Of a reply in which the library finds no head; the tracing build says the same.
constexpr Rule HeadRule(pavonix::HeadFault fault, Topic topic, std::string_view device = kFindsNoStatus,
                        const Fix *fix = nullptr)
{
    return {pavonix::TextOf(fault).name, topic, Severity::kError, pavonix::TextOf(fault).sentence, device, fix};
}

inline constexpr Rule kTls = HeadRule(pavonix::HeadFault::kTls, Topic::kFirstBytes, kFindsNoStatus, &kPlainHttp);
inline constexpr Rule kNotHttp = HeadRule(pavonix::HeadFault::kNotHttp, Topic::kFirstBytes,
                                          "it takes the three characters after the first space for the status; mostly "
                                          "the call returns 0");
inline constexpr Rule kHeadZeroByte = HeadRule(pavonix::HeadFault::kZeroByte, Topic::kHead,
                                               "its texts end at a zero byte, so it finds no end of the head; the call "
                                               "returns 0");
inline constexpr Rule kBareLineFeeds = HeadRule(pavonix::HeadFault::kBareLineFeeds, Topic::kHead);
inline constexpr Rule kBareCarriageReturns = HeadRule(pavonix::HeadFault::kBareCarriageReturns, Topic::kHead);
inline constexpr Rule kHeadTooLong = HeadRule(pavonix::HeadFault::kTooLong, Topic::kHead, kFindsNoStatus, &kShortHead);
inline constexpr Rule kHeadInPieces =
    HeadRule(pavonix::HeadFault::kInPieces, Topic::kHead, "it reads once and sees the first piece; the call returns 0",
             &kOneWrite);
inline constexpr Rule kHeadWithoutEnd = HeadRule(pavonix::HeadFault::kWithoutEnd, Topic::kHead);
inline constexpr Rule kMixedLineEnds = {"mixed-line-ends", Topic::kHead, Severity::kWarning,
                                        "Some of the head's lines do not end in CR LF.",
                                        "a value continues into the next lines"};
inline constexpr Rule kHeadNearlyTooLong = {
    "head-nearly-too-long", Topic::kHead,
    Severity::kWarning,     "The head is longer than 900 bytes; another header may be one too many.",
    "it sees 1024 bytes",   &kShortHead};

inline constexpr Rule kHeadAlone = {"head-alone",
                                    Topic::kSegments,
                                    Severity::kError,
                                    "The first packet did not hold the first 1024 bytes of the reply, or all of it.",
                                    "body bytes missing from the first packet are stored as zeros, and the same "
                                    "number is lost from the end",
                                    &kOneWrite};
inline constexpr Rule kPacketsJoined = {"packets-joined",
                                        Topic::kSegments,
                                        Severity::kWarning,
                                        "The first 1024 bytes of the reply came in several packets, which were read "
                                        "together by chance.",
                                        "now and then it reads the first packet only: it then returns 0 or stores "
                                        "zeros",
                                        &kOneWrite};
inline constexpr Rule kMessageApart = {"message-apart",
                                       Topic::kSegments,
                                       Severity::kWarning,
                                       "The body that serves as the message was not in the first packet.",
                                       "the record's message is empty or cut",
                                       &kOneWrite};

inline constexpr Rule kStatusLine = {"status-line", Topic::kStatus, Severity::kError,
                                     "There is no three-digit status from 100 to 599 after the first space of the "
                                     "status line.",
                                     "it takes the three characters after the first space for the status"};
inline constexpr Rule kInterim = {"interim", Topic::kStatus, Severity::kError,
                                  "The server sends an interim reply before the real one.",
                                  "it takes the interim reply for the real one"};
inline constexpr Rule kOtherSuccess = {"other-success", Topic::kStatus, Severity::kError,
                                       "The status reports success, but is not 200.",
                                       "only 200 counts: nothing is stored, and a purchase counts as refused"};
inline constexpr Rule kRedirect = {"redirect",
                                   Topic::kStatus,
                                   Severity::kError,
                                   "The server replies with a redirection or \"not modified\".",
                                   "it follows no redirection and sends no condition; the call returns the status",
                                   &kNoRedirection};
inline constexpr Rule kTlsPort = {"tls-port",
                                  Topic::kStatus,
                                  Severity::kError,
                                  "The server refuses plain HTTP at this port: it expects TLS.",
                                  "the call returns the status",
                                  &kPlainHttp};
inline constexpr Rule kRequestRefused = {"request-refused", Topic::kStatus, Severity::kError,
                                         "The server refuses the request.",
                                         "the call returns the status; nothing else of a refused download is kept"};
inline constexpr Rule kServerFailed = {"server-failed", Topic::kStatus, Severity::kError, "The server failed.",
                                       "the call returns the status"};

inline constexpr std::string_view kNoLength =
    "it stores the part of the first 1024 bytes after the head, filled with zeros, and nothing else";
inline constexpr Rule kLengthMissing = {
    "length-missing", Topic::kLength, Severity::kError, "There is no Content-Length.", kNoLength, &kWholeBody};
inline constexpr Rule kLengthCase = {
    "length-case",    Topic::kLength,
    Severity::kError, "The library is case-sensitive: this header must be spelled Content-Length.",
    kNoLength,        &kSpelling};
inline constexpr Rule kLengthHidden = {"length-hidden",
                                       Topic::kLength,
                                       Severity::kError,
                                       "An earlier line contains the name Content-Length.",
                                       "it reads the first line that contains the name",
                                       &kHiding};
inline constexpr Rule kLengthNoNumber = {"length-no-number",
                                         Topic::kLength,
                                         Severity::kError,
                                         "Content-Length must be a plain number from 0 to 2147483646.",
                                         "it reads the number that the value begins with, 0 if there is none",
                                         &kWholeBody};
inline constexpr Rule kLengthTwice = {"length-twice",      Topic::kLength,
                                      Severity::kError,    "There are two different Content-Length headers.",
                                      "it uses the first", &kWholeBody};
inline constexpr Rule kLengthZero = {"length-zero",
                                     Topic::kLength,
                                     Severity::kError,
                                     "Content-Length is 0.",
                                     "it treats 0 as unknown and stores a file of zeros",
                                     &kWholeBody};
inline constexpr Rule kLengthTooSmall = {"length-too-small",
                                         Topic::kLength,
                                         Severity::kError,
                                         "Content-Length is smaller than the body.",
                                         "it stores the announced length, rounded up to a reception of 1024 bytes",
                                         &kWholeBody};
inline constexpr Rule kLengthTooLarge = {
    "length-too-large",
    Topic::kLength,
    Severity::kError,
    "The body is shorter than Content-Length, or the connection ended too early.",
    "it waits for the rest until the connection ends, and stores the bytes that arrived",
    &kWholeBody};

inline constexpr Rule kChunked = {"chunked",
                                  Topic::kCoding,
                                  Severity::kError,
                                  "The body is sent in chunks.",
                                  "it stores the chunk lengths as part of the file",
                                  &kWholeBody};
inline constexpr Rule kCompressed = {
    "compressed", Topic::kCoding, Severity::kError, "The body is compressed.", "it stores the compressed bytes",
    &kWholeBody};

inline constexpr Rule kNotXml = {"not-xml", Topic::kBody, Severity::kError, "The body is not a complete XML document.",
                                 "it stores the body without looking at it"};
inline constexpr Rule kBodyReset = {"body-reset", Topic::kBody, Severity::kError,
                                    "The connection was reset before the whole body had arrived.",
                                    "it stores the bytes that arrived; the call still returns 200"};

inline constexpr Rule kSlow = {"slow", Topic::kTime, Severity::kWarning, "The first byte took more than five seconds.",
                               "it waits, and so does the application that called it"};

} // namespace diagnostics
