#include "diagnostics/connection_rules.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/purchase_rules.h"
#include "diagnostics/reply_rules.h"

#include <algorithm>

namespace diagnostics {

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
                                  &kNoRequest,
                                  &kClientLeft,
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
                                  &kOddStart,
                                  &kHeadTooLong,
                                  &kHeadInPieces,
                                  &kHeadZeroByte,
                                  &kBareLineFeeds,
                                  &kBareCarriageReturns,
                                  &kHeadWithoutEnd,
                                  &kMixedLineEnds,
                                  &kHeadNearlyTooLong,
                                  &kHeadAlone,
                                  &kPacketsJoined,
                                  &kMessageApart,
                                  &kStatusLine,
                                  &kInterim,
                                  &kOtherSuccess,
                                  &kRedirect,
                                  &kTlsPort,
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
                                  &kFileNotWhole,
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
                                  &kNotAShop,
                                  &kBadTokenSold,
                                  &kClockNotChecked,
                                  &kClockOtherCode,
                                  &kReplaySold,
                                  &kReplayUnverified,
                                  &kSoldNothing,
                                  &kTokenUnverified,
                                  &kDeviceRefused,
                                  &kSlow};

bool Contains(std::string_view text, std::string_view word)
{
    for (std::size_t at = 0; at + word.size() <= text.size(); ++at) {
        if (EqualsInAnyCase(text.substr(at, word.size()), word)) {
            return true;
        }
    }
    return false;
}

} // namespace

std::span<const Rule *const> AllRules()
{
    return kRules;
}

std::vector<std::string> FixesFor(const Rule &rule, std::string_view software)
{
    if (rule.fix == nullptr) {
        return {};
    }
    std::vector<std::string> fixes = {std::string(rule.fix->plain)};
    for (const Fix::Setting &setting : rule.fix->settings) {
        if (Contains(software, setting.software)) {
            fixes.push_back(std::string(setting.software) + ": " + std::string(setting.advice));
        }
    }
    if (rule.fix->frontHelps) {
        fixes.emplace_back("or put the front of docs/operating.md before any server");
    }
    return fixes;
}

} // namespace diagnostics
