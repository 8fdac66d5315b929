// Rules about requests, about verdicts of purchases, and about what a shop checks.
#pragma once

#include "diagnostics/fixes.h"

namespace diagnostics {

inline constexpr Rule kNoRequest = {"no-request", Topic::kRequest, Severity::kWarning,
                                    "The client connected and sent no complete request.",
                                    "the library always sends one: this was another program, or a connection lost"};
inline constexpr Rule kClientLeft = {"client-left", Topic::kRequest, Severity::kWarning,
                                     "The client closed the connection before the whole reply had arrived.",
                                     "it lost its connection, or its application was ended"};
inline constexpr Rule kNotADevice = {"not-a-device", Topic::kRequest, Severity::kWarning,
                                     "The request is not the library's: User-Serial or User-ID is missing.",
                                     "it sends both, even if they are empty"};
inline constexpr Rule kSerialEmpty = {"serial-empty", Topic::kRequest, Severity::kWarning, "The request has no serial.",
                                      "its profile cannot be read or has no User-Serial"};
inline constexpr Rule kUserIdZero = {"user-id-zero", Topic::kRequest, Severity::kWarning,
                                     "The request has the user id 0.",
                                     "its profile cannot be read or has no number after User-Id"};
inline constexpr Rule kTokenEmpty = {"token-empty", Topic::kRequest, Severity::kError,
                                     "The purchase has no token: User-Cert is empty.",
                                     "its profile's keys are missing or unusable: see pavonix profile check"};
inline constexpr Rule kTokenNotBase64 = {"token-not-base64", Topic::kRequest, Severity::kError,
                                         "User-Cert is not base64.",
                                         "it never sends that: something on the way has changed it"};
inline constexpr Rule kFormIncomplete = {"form-incomplete", Topic::kRequest, Severity::kError,
                                         "The form is shorter than its Content-Length.",
                                         "it never sends that: something on the way has cut it"};

inline constexpr Rule kSoldWithCode = {
    "sold-with-code",      Topic::kVerdict,
    Severity::kError,      "The shop sold the good (200) but also sent X-Error-Code.",
    "it ignores the code", &kVerdictHeaders};
inline constexpr Rule kCodeMissing = {"code-missing",
                                      Topic::kVerdict,
                                      Severity::kWarning,
                                      "The refusal has no X-Error-Code.",
                                      "the record gets code 0 and the body's beginning as its message",
                                      &kVerdictHeaders};
inline constexpr Rule kCodeCase = {
    "code-case",
    Topic::kVerdict,
    Severity::kError,
    "The library is case-sensitive: spell X-Error-Code, X-Error-Message, X-Server-Timestamp.",
    "it does not find this header",
    &kSpelling};
inline constexpr Rule kCodeHidden = {"code-hidden",
                                     Topic::kVerdict,
                                     Severity::kError,
                                     "An earlier line contains this header's name.",
                                     "it reads the first line that contains the name",
                                     &kHiding};
inline constexpr Rule kCodeZero = {
    "code-zero",
    Topic::kVerdict,
    Severity::kWarning,
    "X-Error-Code is 0 or not a number.",
    "the record gets code 0 and the body's beginning, not X-Error-Message, as its message",
    &kVerdictHeaders};
inline constexpr Rule kMessageMissing = {"message-missing",
                                         Topic::kVerdict,
                                         Severity::kWarning,
                                         "The refusal has a code, but no X-Error-Message.",
                                         "the record's message stays as the application left it",
                                         &kVerdictHeaders};
inline constexpr Rule kMessageTooLong = {"message-too-long",
                                         Topic::kVerdict,
                                         Severity::kError,
                                         "X-Error-Message has more than 254 characters.",
                                         "it overruns the plain record; the roomy record holds it",
                                         &kVerdictHeaders};
inline constexpr Rule kMessageNotAscii = {"message-not-ascii",
                                          Topic::kVerdict,
                                          Severity::kWarning,
                                          "The message has letters outside ASCII.",
                                          "it reads them in its own code page: UTF-8 becomes two or more wrong letters",
                                          &kVerdictHeaders};
inline constexpr Rule kTimestampMissing = {"timestamp-missing",
                                           Topic::kVerdict,
                                           Severity::kError,
                                           "Code 906 without X-Server-Timestamp.",
                                           "the application cannot show the right time",
                                           &kVerdictHeaders};
inline constexpr Rule kTimestampTooLong = {"timestamp-too-long",
                                           Topic::kVerdict,
                                           Severity::kError,
                                           "X-Server-Timestamp has more than 62 characters.",
                                           "it overruns the plain record",
                                           &kVerdictHeaders};
inline constexpr Rule kTimestampForm = {"timestamp-form",
                                        Topic::kVerdict,
                                        Severity::kWarning,
                                        "X-Server-Timestamp is not a date and a time in numbers.",
                                        "it passes the text on; applications expect 2010-3-5 9:7:3.042",
                                        &kVerdictHeaders};

inline constexpr Rule kLineEndUnread = {
    "line-end-unread",
    Topic::kVerdict,
    Severity::kError,
    "The server resets the connection after its reply, mostly because it has not read the CR LF after the form.",
    "on Windows a reset discards unread bytes: now and then it returns 0 for a good that was sold",
    &kReadFormEnd};

inline constexpr Rule kNotAShop = {"not-a-shop",
                                   Topic::kVerdict,
                                   Severity::kError,
                                   "The reply to a purchase is that of a server which sells nothing at this address.",
                                   "every purchase is refused",
                                   &kShopAddress};
inline constexpr Rule kBadTokenSold = {"bad-token-sold",
                                       Topic::kToken,
                                       Severity::kError,
                                       "A purchase with a forged token was accepted.",
                                       "anyone who knows a serial and a user id can buy",
                                       &kCheckTheToken};
inline constexpr Rule kClockNotChecked = {"clock-not-checked",
                                          Topic::kToken,
                                          Severity::kWarning,
                                          "A token five hours old or in the future was accepted.",
                                          "an intercepted token can be used later",
                                          &kCheckTheToken};
inline constexpr Rule kClockOtherCode = {"clock-other-code",
                                         Topic::kToken,
                                         Severity::kWarning,
                                         "A wrong clock is refused with another code than 906.",
                                         "it passes on the server's time with 906 only",
                                         &kVerdictHeaders};
inline constexpr Rule kReplaySold = {"replay-sold",
                                     Topic::kReplay,
                                     Severity::kError,
                                     "The same token was accepted twice.",
                                     "an intercepted purchase can be repeated",
                                     &kCheckTheToken};
inline constexpr Rule kTokenUnverified = {"token-unverified",
                                          Topic::kToken,
                                          Severity::kWarning,
                                          "Without buying it is unknown whether the shop checks the token.",
                                          "to find out: repeat with --buy TYPE,ID (this buys that good)",
                                          &kCheckTheToken};
inline constexpr Rule kSoldNothing = {"sold-nothing",
                                      Topic::kToken,
                                      Severity::kError,
                                      "A good that does not exist was sold.",
                                      "200 means sold, whatever it was",
                                      &kVerdictHeaders};
inline constexpr Rule kReplayUnverified = {"replay-unverified",
                                           Topic::kReplay,
                                           Severity::kWarning,
                                           "Without buying it is unknown whether a token is accepted twice.",
                                           "to find out: repeat with --buy TYPE,ID (this buys that good)",
                                           &kCheckTheToken};
inline constexpr Rule kDeviceRefused = {"device-refused",
                                        Topic::kToken,
                                        Severity::kError,
                                        "The purchase of a good that should be for sale was refused.",
                                        "the application shows the verdict",
                                        &kRegister};

inline constexpr Rule kFileNotWhole = {"file-not-whole", Topic::kLibrary, Severity::kError,
                                       "The library stored a file that is not complete XML.",
                                       "the application gets that file; the errors above say why"};
inline constexpr Rule kLibraryDiffers = {"library-differs", Topic::kLibrary, Severity::kError,
                                         "The library and the plain socket got different replies.",
                                         "see both: the server may alternate or depend on the headers"};

} // namespace diagnostics
