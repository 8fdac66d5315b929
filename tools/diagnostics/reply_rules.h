// Rules about replies, of downloads and of purchases.
#pragma once

#include "diagnostics/remedies.h"
#include "http/reply_facts.h"

namespace diagnostics {

inline constexpr std::string_view kAnswersNone = "it finds no status; the call returns 0";

inline constexpr Rule kSilent = {"silent", Topic::kFirstBytes, Weight::kError,
                                 "The server takes the request and never answers.",
                                 "it has no time-out: the call does not return"};
inline constexpr Rule kClosedEmpty = {"closed-empty", Topic::kFirstBytes, Weight::kError,
                                      "The server closed the connection without a reply.", kAnswersNone};
inline constexpr Rule kResetEarly = {"reset-early", Topic::kFirstBytes, Weight::kError,
                                     "The server reset the connection instead of answering.", kAnswersNone};
// Of a reply in which the library finds no head; the tracing build says the same.
constexpr Rule HeadRule(pavonix::HeadFault fault, Topic topic, std::string_view device = kAnswersNone,
                        std::span<const Remedy> remedies = {})
{
    return {pavonix::TextOf(fault).name, topic, Weight::kError, pavonix::TextOf(fault).sentence, device, remedies};
}

inline constexpr Rule kTls = HeadRule(pavonix::HeadFault::kTls, Topic::kFirstBytes, kAnswersNone, kPlainHttp);
inline constexpr Rule kNotHttp = HeadRule(pavonix::HeadFault::kNotHttp, Topic::kFirstBytes,
                                          "it takes what stands behind the first blank for a status, mostly none: the "
                                          "call returns 0");
inline constexpr Rule kHeadZeroByte = HeadRule(pavonix::HeadFault::kZeroByte, Topic::kHead,
                                               "its texts end at a zero byte, so it finds no end of the head; the call "
                                               "returns 0");
inline constexpr Rule kBareLineFeeds = HeadRule(pavonix::HeadFault::kBareLineFeeds, Topic::kHead);
inline constexpr Rule kBareCarriageReturns = HeadRule(pavonix::HeadFault::kBareCarriageReturns, Topic::kHead);
inline constexpr Rule kHeadTooLong = HeadRule(pavonix::HeadFault::kTooLong, Topic::kHead, kAnswersNone, kShortHead);
inline constexpr Rule kHeadInPieces =
    HeadRule(pavonix::HeadFault::kInPieces, Topic::kHead, "it reads once and sees the first piece; the call returns 0",
             kOneSegment);
inline constexpr Rule kHeadWithoutEnd = HeadRule(pavonix::HeadFault::kWithoutEnd, Topic::kHead);
inline constexpr Rule kMixedLineEnds = {"mixed-line-ends", Topic::kHead, Weight::kWarning,
                                        "Some of the head's lines end in a line feed without a carriage return.",
                                        "a value runs on into the lines behind it"};
inline constexpr Rule kHeadNearlyTooLong = {
    "head-nearly-too-long", Topic::kHead,
    Weight::kWarning,       "The head is longer than 900 bytes; one more header, and nothing works.",
    "it sees 1024 bytes",   kShortHead};

inline constexpr Rule kHeadAlone = {"head-alone",
                                    Topic::kSegments,
                                    Weight::kError,
                                    "The head came in a segment without the first 1024 bytes of the reply.",
                                    "it stores body bytes that did not come at once as zeros, and drops as many at the "
                                    "end",
                                    kOneSegment};
inline constexpr Rule kTogetherByLuck = {
    "together-by-luck",
    Topic::kSegments,
    Weight::kWarning,
    "The beginning of the reply came in more than one segment and was read together "
    "by luck.",
    "now and then it reads the first segment alone: it then returns 0 or stores "
    "zeros",
    kOneSegment};
inline constexpr Rule kMessageApart = {"message-apart",
                                       Topic::kSegments,
                                       Weight::kWarning,
                                       "The body that is to be the message came in a segment of its own.",
                                       "the record's message is empty or cut",
                                       kOneSegment};

inline constexpr Rule kStatusLine = {"status-line", Topic::kStatus, Weight::kError,
                                     "The status line has no status of three digits behind its first blank.",
                                     "it takes the three characters behind the first blank for the status"};
inline constexpr Rule kInterim = {"interim", Topic::kStatus, Weight::kError,
                                  "The server sends an interim reply before the real one.",
                                  "it takes the interim reply for the answer"};
inline constexpr Rule kOtherSuccess = {"other-success", Topic::kStatus, Weight::kError,
                                       "The status says success, but is not 200.",
                                       "only 200 counts: nothing is stored, and a purchase is taken for refused"};
inline constexpr Rule kRedirect = {"redirect",
                                   Topic::kStatus,
                                   Weight::kError,
                                   "The server answers with a redirection or \"not modified\".",
                                   "it follows no redirection and sends no condition; the call returns the status",
                                   kNoRedirection};
inline constexpr Rule kRequestRefused = {"request-refused", Topic::kStatus, Weight::kError,
                                         "The server refuses the request.",
                                         "the call returns the status; of a download nothing else is kept"};
inline constexpr Rule kServerFailed = {"server-failed", Topic::kStatus, Weight::kError, "The server failed.",
                                       "the call returns the status"};

inline constexpr std::string_view kNoLength =
    "it stores what fits into the first 1024 bytes, filled up with zeros, and nothing else";
inline constexpr Rule kLengthMissing = {"length-missing", Topic::kLength, Weight::kError, "There is no Content-Length.",
                                        kNoLength,        kLength};
inline constexpr Rule kLengthCase = {
    "length-case",  Topic::kLength,
    Weight::kError, "Content-Length is spelled with other capitals, which the library does not find.",
    kNoLength,      kSpelling};
inline constexpr Rule kLengthHidden = {"length-hidden",
                                       Topic::kLength,
                                       Weight::kError,
                                       "Another line names Content-Length before the line that has it.",
                                       "it reads the first line that holds the name",
                                       kHiding};
inline constexpr Rule kLengthNoNumber = {"length-no-number", Topic::kLength, Weight::kError,
                                         "Content-Length is no decimal number that fits into 31 bits.",
                                         "it reads as much of a number as there is, and 0 for none"};
inline constexpr Rule kLengthTwice = {"length-twice", Topic::kLength, Weight::kError,
                                      "Content-Length is given twice and differs.", "it takes the first"};
inline constexpr Rule kLengthZero = {"length-zero", Topic::kLength, Weight::kError, "Content-Length is 0.",
                                     "it takes 0 for unknown and stores a file of zeros"};
inline constexpr Rule kLengthTooSmall = {"length-too-small",
                                         Topic::kLength,
                                         Weight::kError,
                                         "Content-Length is smaller than the body.",
                                         "it stores the announced length, up to the end of a reception of 1024 bytes",
                                         kLength};
inline constexpr Rule kLengthTooLarge = {
    "length-too-large",
    Topic::kLength,
    Weight::kError,
    "Content-Length is larger than the body, or the connection ended before the body did.",
    "it waits for the rest as long as the connection stands, and stores what came",
    kLength};

inline constexpr Rule kChunked = {"chunked",
                                  Topic::kCoding,
                                  Weight::kError,
                                  "The body is sent in chunks.",
                                  "it stores the chunks' length lines as part of the file",
                                  kPlainBody};
inline constexpr Rule kCompressed = {
    "compressed", Topic::kCoding, Weight::kError, "The body is compressed.", "it stores the compressed bytes",
    kPlainBody};

inline constexpr Rule kNotXml = {"not-xml", Topic::kBody, Weight::kError, "The body is not a whole XML document.",
                                 "it stores it as it is; the application finds out"};
inline constexpr Rule kBodyReset = {"body-reset", Topic::kBody, Weight::kError,
                                    "The connection was reset before the body was whole.",
                                    "it stores what came; the call returns 200 all the same"};

inline constexpr Rule kSlow = {"slow", Topic::kTime, Weight::kWarning, "The first byte took longer than five seconds.",
                               "it waits, and so does the application that called it"};

} // namespace diagnostics
