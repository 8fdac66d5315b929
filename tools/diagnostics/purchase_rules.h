// Rules about purchases: the request's identity, the verdict, what a server checks.
#pragma once

#include "diagnostics/remedies.h"

namespace diagnostics {

inline constexpr Rule kNotADevice = {"not-a-device", Topic::kRequest, Weight::kWarning,
                                     "The request does not come from the library: User-Serial or User-ID is not there.",
                                     "a device sends both, even if they are empty"};
inline constexpr Rule kSerialEmpty = {"serial-empty", Topic::kRequest, Weight::kWarning, "The request has no serial.",
                                      "the profile cannot be read or has no User-Serial"};
inline constexpr Rule kUserIdZero = {"user-id-zero", Topic::kRequest, Weight::kWarning,
                                     "The request has the user id 0.",
                                     "the profile cannot be read or has no number behind User-Id"};
inline constexpr Rule kTokenEmpty = {"token-empty", Topic::kRequest, Weight::kError,
                                     "The purchase has no token: User-Cert is empty.",
                                     "the profile's keys are missing or unusable: pavonix profile check tells which"};
inline constexpr Rule kTokenNotBase64 = {"token-not-base64", Topic::kRequest, Weight::kError,
                                         "User-Cert is not base64.",
                                         "the library never sends that: something between has changed it"};
inline constexpr Rule kFormIncomplete = {"form-incomplete", Topic::kRequest, Weight::kError,
                                         "The form is shorter than its Content-Length.",
                                         "the library never sends that: something between has cut it"};

inline constexpr Rule kSoldWithCode = {"sold-with-code",
                                       Topic::kVerdict,
                                       Weight::kError,
                                       "The status is 200, and X-Error-Code is there too.",
                                       "200 means sold: it does not look at the code",
                                       kVerdictLines};
inline constexpr Rule kCodeMissing = {"code-missing",
                                      Topic::kVerdict,
                                      Weight::kWarning,
                                      "The refusal has no X-Error-Code.",
                                      "the record gets code 0 and the body's beginning as its message",
                                      kVerdictLines};
inline constexpr Rule kCodeCase = {"code-case",
                                   Topic::kVerdict,
                                   Weight::kError,
                                   "A verdict's line is spelled with other capitals, which the library does not find.",
                                   "to it the line is absent",
                                   kSpelling};
inline constexpr Rule kCodeHidden = {"code-hidden",
                                     Topic::kVerdict,
                                     Weight::kError,
                                     "Another line names a verdict's header before the line that has it.",
                                     "it reads the first line that holds the name",
                                     kHiding};
inline constexpr Rule kCodeZero = {
    "code-zero",
    Topic::kVerdict,
    Weight::kWarning,
    "X-Error-Code is 0 or no number.",
    "the record gets code 0 and the body's beginning, not X-Error-Message, as its message",
    kVerdictLines};
inline constexpr Rule kMessageMissing = {"message-missing",
                                         Topic::kVerdict,
                                         Weight::kWarning,
                                         "The refusal has a code, but no X-Error-Message.",
                                         "the record's message keeps what the application put there",
                                         kVerdictLines};
inline constexpr Rule kMessageTooLong = {"message-too-long",
                                         Topic::kVerdict,
                                         Weight::kError,
                                         "X-Error-Message has more than 254 characters.",
                                         "an application with the plain record is overrun; the roomy record holds it",
                                         kVerdictLines};
inline constexpr Rule kMessageNotAscii = {"message-not-ascii",
                                          Topic::kVerdict,
                                          Weight::kWarning,
                                          "The message has letters beyond ASCII.",
                                          "it reads them in its own code page: UTF-8 becomes two or more wrong letters",
                                          kVerdictLines};
inline constexpr Rule kTimestampMissing = {"timestamp-missing",
                                           Topic::kVerdict,
                                           Weight::kError,
                                           "Code 906 comes without X-Server-Timestamp.",
                                           "the application cannot tell the user what time it is",
                                           kVerdictLines};
inline constexpr Rule kTimestampTooLong = {"timestamp-too-long",
                                           Topic::kVerdict,
                                           Weight::kError,
                                           "X-Server-Timestamp has more than 62 characters.",
                                           "an application with the plain record is overrun",
                                           kVerdictLines};
inline constexpr Rule kTimestampForm = {"timestamp-form",
                                        Topic::kVerdict,
                                        Weight::kWarning,
                                        "X-Server-Timestamp is not a date and a time in numbers.",
                                        "it hands the text on; applications expect 2010-3-5 9:7:3.042",
                                        kVerdictLines};

inline constexpr Rule kLineEndUnread = {
    "line-end-unread",
    Topic::kVerdict,
    Weight::kError,
    "The server resets the connection behind its reply, mostly because it has not "
    "read the two bytes behind the form.",
    "on Windows a reset throws away what was not read yet: now and then it returns 0 "
    "for a good that was sold",
    kReadTheLineEnd};

inline constexpr Rule kBadTokenSold = {"bad-token-sold",
                                       Topic::kToken,
                                       Weight::kError,
                                       "A purchase with a token that no device made was accepted.",
                                       "whoever knows a serial and a user id can buy",
                                       kCheckTheToken};
inline constexpr Rule kClockNotChecked = {"clock-not-checked",
                                          Topic::kToken,
                                          Weight::kWarning,
                                          "A token hours old or in the future was accepted.",
                                          "a token that was once overheard can be used later",
                                          kCheckTheToken};
inline constexpr Rule kClockOtherCode = {"clock-other-code",
                                         Topic::kToken,
                                         Weight::kWarning,
                                         "A clock that is off is refused with another code than 906.",
                                         "it hands on the server's time for 906 only",
                                         kVerdictLines};
inline constexpr Rule kReplaySold = {"replay-sold",
                                     Topic::kReplay,
                                     Weight::kError,
                                     "The same token was accepted twice.",
                                     "whoever overhears a purchase can repeat it",
                                     kCheckTheToken};
inline constexpr Rule kTokenUntold = {"token-untold",
                                      Topic::kToken,
                                      Weight::kWarning,
                                      "Whether the token is checked cannot be told without buying.",
                                      "--buy TYPE,ID tries it with a good that exists",
                                      kCheckTheToken};
inline constexpr Rule kSoldNothing = {"sold-nothing",
                                      Topic::kToken,
                                      Weight::kError,
                                      "A good that does not exist was sold.",
                                      "200 means sold, whatever was sold",
                                      kVerdictLines};
inline constexpr Rule kReplayUntold = {"replay-untold",
                                       Topic::kReplay,
                                       Weight::kWarning,
                                       "Whether a token is accepted twice cannot be told without buying.",
                                       "--buy TYPE,ID tries it with a good that exists",
                                       kCheckTheToken};
inline constexpr Rule kDeviceRefused = {"device-refused", Topic::kToken, Weight::kError,
                                        "The purchase of a good that exists was refused.",
                                        "the application shows the verdict"};

inline constexpr Rule kLibraryDiffers = {"library-differs", Topic::kLibrary, Weight::kError,
                                         "The library and the plain socket saw something different.",
                                         "see both; a server may answer by turns or by the headers it is sent"};

} // namespace diagnostics
