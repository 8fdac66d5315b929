#include "judgement/connection_rules.h"
#include "judgement/purchase_rules.h"
#include "judgement/reply_rules.h"

namespace judgement {

namespace {

constexpr const Rule *kRules[] = {&kUrlEmpty,
                                  &kUrlTls,
                                  &kUrlScheme,
                                  &kUrlNoHost,
                                  &kUrlIpv6,
                                  &kUrlNoPath,
                                  &kUrlTooLong,
                                  &kUrlLong,
                                  &kUrlBarePath,
                                  &kUrlQuery,
                                  &kUrlCharacters,
                                  &kNameUnknown,
                                  &kNameNoAnswer,
                                  &kNameNoIpv4,
                                  &kRefused,
                                  &kUnreachable,
                                  &kConnectTimeOut,
                                  &kSendFailed,
                                  &kNotADevice,
                                  &kSerialEmpty,
                                  &kUserIdZero,
                                  &kTokenEmpty,
                                  &kTokenNotBase64,
                                  &kFormIncomplete,
                                  &kSilent,
                                  &kClosedEmpty,
                                  &kResetEarly,
                                  &kTls,
                                  &kNotHttp,
                                  &kHeadTooLong,
                                  &kHeadInPieces,
                                  &kBareLineFeeds,
                                  &kHeadWithoutEnd,
                                  &kMixedLineEnds,
                                  &kHeadNearlyTooLong,
                                  &kHeadAlone,
                                  &kTogetherByLuck,
                                  &kMessageApart,
                                  &kStatusLine,
                                  &kInterim,
                                  &kOtherSuccess,
                                  &kRedirect,
                                  &kRequestRefused,
                                  &kServerFailed,
                                  &kLengthMissing,
                                  &kLengthCase,
                                  &kLengthHidden,
                                  &kLengthNoNumber,
                                  &kLengthTwice,
                                  &kLengthZero,
                                  &kLengthTooSmall,
                                  &kLengthTooLarge,
                                  &kChunked,
                                  &kCompressed,
                                  &kNotXml,
                                  &kBodyReset,
                                  &kLibraryDiffers,
                                  &kSoldWithCode,
                                  &kCodeMissing,
                                  &kCodeCase,
                                  &kCodeHidden,
                                  &kCodeZero,
                                  &kMessageMissing,
                                  &kMessageTooLong,
                                  &kMessageNotAscii,
                                  &kTimestampMissing,
                                  &kTimestampTooLong,
                                  &kTimestampForm,
                                  &kLineEndUnread,
                                  &kBadTokenSold,
                                  &kClockNotChecked,
                                  &kClockOtherCode,
                                  &kReplaySold,
                                  &kTokenUntold,
                                  &kDeviceRefused,
                                  &kSlow};

} // namespace

std::span<const Rule *const> AllRules()
{
    return kRules;
}

} // namespace judgement
