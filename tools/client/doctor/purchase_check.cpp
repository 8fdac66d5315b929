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
constexpr const char *kForgedToken = // 128 bytes, the size for a key of 1024 bits
    "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4OTo7PD0+P0BBQkNERUZHSElKS0xNTk9QUVJT"
    "VFVWV1hZWltcXV5fYGFiY2RlZmdoaWprbG1ub3BxcnN0dXZ3eHl6e3x9fn8=";

} // namespace

PurchaseCheck::PurchaseCheck(const Examination &examination, const Identity &identity, ProgressLine *progress,
                             Diagnosis *diagnosis)
    : examination_(examination),
      identity_(identity),
      progress_(progress),
      diagnosis_(diagnosis),
      type_(examination.buy ? examination.buy->first : 1),
      id_(examination.buy ? examination.buy->second : kNoSuchGood)
{
}

bool PurchaseCheck::Run()
{
    const std::string token = MakeToken(identity_, 0);
    if (token.empty()) {
        diagnosis_->Add(diagnostics::RuleNamed("token-empty"), "the profile's keys make no token");
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

// A good that exists can be refused for one reason only.
bool PurchaseCheck::TryGood(const std::string &token)
{
    TryBadToken(nullptr);
    TryClock(nullptr, -kHoursOff);
    TryClock(nullptr, kHoursOff);
    const Result bought = Try(token);
    if (!goOn_) {
        return false;
    }
    if (bought.status != PAVONIX_OK) {
        diagnosis_->Add(bought.isNoShop() ? diagnostics::RuleNamed("not-a-shop")
                                          : diagnostics::RuleNamed("device-refused"),
                        bought.shown);
    }
    diagnosis_->SetExamined(Topic::kToken, "bought: " + bought.shown);
    TryAgain(token, bought);
    return bought.status == PAVONIX_OK;
}

// Purchases of a good that does not exist are refused in any case; a bad token must be
// refused with another code than a valid one.
void PurchaseCheck::TryWithoutBuying(const std::string &token)
{
    const Result baseline = Try(token);
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

PurchaseCheck::Result PurchaseCheck::Try(const std::string &token)
{
    goOn_ = goOn_ && !StopRequest::IsMade();
    if (!goOn_) {
        return {};
    }
    progress_->Show("purchase " + std::to_string(++tries_) + " of 5");
    const std::string request = PurchaseRequest(examination_.buyUrl, identity_, token, type_, id_);
    PlainExchange made = Ask(address_, request, diagnostics::Call::kPurchase, examination_.patience);
    diagnosis_->Add(made.noConnection);
    if (made.noConnection.empty()) {
        diagnosis_->Add(diagnostics::Diagnose(made.exchange));
        diagnosis_->SetExamined(Topic::kFormEnd, "no reset after the reply");
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
        diagnosis_->SetExamined(Topic::kVerdict, shown);
    }
    const bool hasCode =
        diagnostics::FindLine(diagnostics::ReadHeadLines(made.exchange.reply), "X-Error-Code") != nullptr;
    return {device.status(), diagnostics::NumberIn(code), hasCode, shown};
}

void PurchaseCheck::TryBadToken(const Result *baseline)
{
    const Result result = Try(kForgedToken);
    if (!goOn_) {
        return;
    }
    diagnosis_->SetExamined(Topic::kToken, "forged token: " + result.shown);
    if (result.status == PAVONIX_OK) {
        diagnosis_->Add(diagnostics::RuleNamed("bad-token-sold"), result.shown);
    } else if (baseline != nullptr && result == *baseline) {
        diagnosis_->Add(diagnostics::RuleNamed("token-unverified"), "with a valid and a forged token: " + result.shown);
    }
}

void PurchaseCheck::TryClock(const Result *baseline, int secondsOff)
{
    const std::string hours = std::to_string(secondsOff / 3600) + " hours: ";
    const Result result = Try(MakeToken(identity_, secondsOff));
    if (!goOn_) {
        return;
    }
    if (result.status == PAVONIX_OK) {
        diagnosis_->Add(diagnostics::RuleNamed("clock-not-checked"), hours + result.shown);
    } else if (baseline != nullptr && result == *baseline) {
        diagnosis_->Add(diagnostics::RuleNamed("token-unverified"), hours + result.shown);
    } else if (result.code != 0 && result.code != kClockIsOff) {
        diagnosis_->Add(diagnostics::RuleNamed("clock-other-code"), hours + result.shown);
    }
}

void PurchaseCheck::TryAgain(const std::string &token, const Result &first)
{
    const Result result = Try(token);
    if (!goOn_) {
        return;
    }
    diagnosis_->SetExamined(Topic::kReplay, result.shown);
    if (result.status == PAVONIX_OK) {
        diagnosis_->Add(diagnostics::RuleNamed("replay-sold"), result.shown);
    } else if (result == first) {
        diagnosis_->Add(diagnostics::RuleNamed("replay-unverified"), "both times: " + result.shown);
    }
}

} // namespace client
