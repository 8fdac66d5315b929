#include "doctor/purchase_check.h"

#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/printable.h"
#include "diagnostics/rules.h"
#include "interruption.h"

namespace client {

namespace {

using diagnostics::Topic;

constexpr int kNoSuchGood = 2147483647;
constexpr int kHoursOff = 5 * 3600;
constexpr int kClockIsOff = 906;
constexpr const char *kBadToken = // 128 bytes, as a key of 1024 bits would make, forged
    "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4OTo7PD0+P0BBQkNERUZHSElKS0xNTk9QUVJT"
    "VFVWV1hZWltcXV5fYGFiY2RlZmdoaWprbG1ub3BxcnN0dXZ3eHl6e3x9fn8=";

} // namespace

PurchaseCheck::PurchaseCheck(const Examination &examination, const Identity &identity, Steps *steps,
                             Diagnosis *diagnosis)
    : examination_(examination),
      identity_(identity),
      steps_(steps),
      diagnosis_(diagnosis),
      type_(examination.buy ? examination.buy->first : 1),
      id_(examination.buy ? examination.buy->second : kNoSuchGood)
{
}

bool PurchaseCheck::Run()
{
    const std::string token = MakeToken(identity_, 0);
    if (token.empty()) {
        diagnosis_->Add(diagnostics::RuleNamed("token-empty"), "the profile's keys make none");
        return false;
    }
    if (!FindServer()) {
        return false;
    }
    if (examination_.buy) {
        return TryGood(token);
    }
    TryWithoutBuying(token);
    return false;
}

bool PurchaseCheck::FindServer()
{
    const diagnostics::Findings wrong = diagnostics::DiagnoseUrl(examination_.buyUrl, diagnostics::Call::kPurchase);
    const diagnostics::Findings unknown = LookUp(HostIn(examination_.buyUrl), examination_.buyPort, &address_);
    diagnosis_->Add(wrong);
    diagnosis_->Add(unknown);
    return diagnostics::FirstError(wrong) == nullptr && unknown.empty();
}

// With a good that exists each refusal has one reason.
bool PurchaseCheck::TryGood(const std::string &token)
{
    TryBadToken(nullptr);
    TryClock(nullptr, -kHoursOff);
    TryClock(nullptr, kHoursOff);
    const Answer bought = Try(token);
    if (!goOn_) {
        return false;
    }
    if (bought.status != PAVONIX_OK) {
        diagnosis_->Add(bought.isNoShop() ? diagnostics::RuleNamed("not-a-shop")
                                          : diagnostics::RuleNamed("device-refused"),
                        bought.shown);
    }
    diagnosis_->LookedAt(Topic::kToken, "bought: " + bought.shown);
    TryAgain(token, bought);
    return bought.status == PAVONIX_OK;
}

// Without one a refusal must differ from that of a good token.
void PurchaseCheck::TryWithoutBuying(const std::string &token)
{
    const Answer baseline = Try(token);
    if (!goOn_) {
        return;
    }
    if (baseline.status == PAVONIX_OK || baseline.isNoShop()) {
        diagnosis_->Add(baseline.status == PAVONIX_OK ? diagnostics::RuleNamed("sold-nothing")
                                                      : diagnostics::RuleNamed("not-a-shop"),
                        baseline.shown);
        return;
    }
    TryBadToken(&baseline);
    TryClock(&baseline, -kHoursOff);
    TryClock(&baseline, kHoursOff);
    TryAgain(token, baseline);
}

PurchaseCheck::Answer PurchaseCheck::Try(const std::string &token)
{
    goOn_ = goOn_ && !StopRequest::IsMade();
    if (!goOn_) {
        return {};
    }
    steps_->Begin("purchase " + std::to_string(++tries_) + " of 5");
    const std::string request = PurchaseRequest(examination_.buyUrl, identity_, token, type_, id_);
    PlainExchange made = Ask(address_, request, diagnostics::Call::kPurchase, examination_.patience);
    diagnosis_->Add(made.noConnection);
    if (made.noConnection.empty()) {
        diagnosis_->Add(diagnostics::Diagnose(made.exchange));
        diagnosis_->LookedAt(Topic::kFormEnd, "no reset after the reply");
    }
    const diagnostics::DeviceReading device(made.exchange);
    goOn_ = device.status() != 0;
    const std::string_view code = device.Verdict("X-Error-Code").value_or("");
    const std::string_view message = device.Verdict("X-Error-Message").value_or("");
    std::string shown = "status " + std::to_string(device.status());
    if (!code.empty()) {
        shown.append(", code").append(diagnostics::Printable(code));
    }
    if (!message.empty()) {
        shown.append(",").append(diagnostics::Printable(message));
    }
    if (goOn_ && device.status() != PAVONIX_OK) {
        diagnosis_->LookedAt(Topic::kVerdict, shown);
    }
    const bool hasCode =
        diagnostics::FindLine(diagnostics::ReadHeadLines(made.exchange.reply), "X-Error-Code") != nullptr;
    return {device.status(), diagnostics::NumberIn(code), hasCode, shown};
}

void PurchaseCheck::TryBadToken(const Answer *baseline)
{
    const Answer answer = Try(kBadToken);
    if (!goOn_) {
        return;
    }
    diagnosis_->LookedAt(Topic::kToken, "forged token: " + answer.shown);
    if (answer.status == PAVONIX_OK) {
        diagnosis_->Add(diagnostics::RuleNamed("bad-token-sold"), answer.shown);
    } else if (baseline != nullptr && answer == *baseline) {
        diagnosis_->Add(diagnostics::RuleNamed("token-unverified"), "with and without a good token: " + answer.shown);
    }
}

void PurchaseCheck::TryClock(const Answer *baseline, int secondsOff)
{
    const std::string hours = std::to_string(secondsOff / 3600) + " hours: ";
    const Answer answer = Try(MakeToken(identity_, secondsOff));
    if (!goOn_) {
        return;
    }
    if (answer.status == PAVONIX_OK) {
        diagnosis_->Add(diagnostics::RuleNamed("clock-not-checked"), hours + answer.shown);
    } else if (baseline != nullptr && answer == *baseline) {
        diagnosis_->Add(diagnostics::RuleNamed("token-unverified"), hours + answer.shown);
    } else if (answer.code != 0 && answer.code != kClockIsOff) {
        diagnosis_->Add(diagnostics::RuleNamed("clock-other-code"), hours + answer.shown);
    }
}

void PurchaseCheck::TryAgain(const std::string &token, const Answer &first)
{
    const Answer answer = Try(token);
    if (!goOn_) {
        return;
    }
    diagnosis_->LookedAt(Topic::kReplay, answer.shown);
    if (answer.status == PAVONIX_OK) {
        diagnosis_->Add(diagnostics::RuleNamed("replay-sold"), answer.shown);
    } else if (answer == first) {
        diagnosis_->Add(diagnostics::RuleNamed("replay-unverified"), "both times: " + answer.shown);
    }
}

} // namespace client
