#include "doctor/doctor.h"

#include "doctor/download_points.h"
#include "doctor/library_check.h"
#include "doctor/purchase_check.h"
#include "diagnostics/rules.h"
#include "diagnostics/head_lines.h"
#include "diagnostics/printable.h"
#include "interruption.h"
#include "path.h"

#include <fstream>
#include <iterator>

namespace client {

namespace {

using diagnostics::Call;
using diagnostics::Topic;

constexpr int kMostTriesForEach = 4; // including blind ones
constexpr int kTriesToTheEnd = 3;
// Some servers split head and body only occasionally: many downloads are made while they
// are quick and show no fault.
constexpr int kQuickTriesForEach = 10;
constexpr std::chrono::seconds kForQuickTries{2};

Identity ReadIdentity(const std::string &profile)
{
    std::ifstream file(PathOf(profile), std::ios::binary);
    if (!file) {
        throw Failure(ExitCode::kLocalFailure, profile + " cannot be read");
    }
    return IdentityOf(ReadProfileText(std::string(std::istreambuf_iterator<char>(file), {})));
}

std::string QueryOf(const Examination &examination)
{
    const GoodListRequest &list = examination.list;
    if (examination.good) {
        return "?type=" + std::to_string(examination.good->type) + "&id=" + std::to_string(examination.good->id);
    }
    return "?type=" + std::to_string(list.type) + "&category=" + std::to_string(list.category) +
           "&sort=" + std::to_string(list.sort) + "&start=" + std::to_string(list.start) +
           "&max=" + std::to_string(list.max);
}

} // namespace

std::string HostIn(const std::string &url)
{
    const std::size_t slashes = url.find("//");
    const std::size_t start = slashes == std::string::npos ? 0 : slashes + 2;
    return url.substr(start, url.find_first_of(":/", start) - start);
}

const Diagnosis &Doctor::Examine()
{
    if (!examination_.profile.empty()) {
        identity_ = ReadIdentity(examination_.profile);
    }
    if (!FindServer() || !TryDownloads()) {
        return diagnosis_;
    }
    if (!examination_.profile.empty() && !StopRequest::IsMade()) {
        hasBought_ = PurchaseCheck(examination_, identity_, &progress_, &diagnosis_).Run();
    }
    if (!StopRequest::IsMade()) {
        LibraryCheck(examination_, last_, &progress_, &diagnosis_).Run();
    }
    return diagnosis_;
}

bool Doctor::FindServer()
{
    diagnosis_.Add(diagnostics::DiagnoseUrl(examination_.url, Call::kDownload));
    diagnosis_.SetExamined(Topic::kUrl, std::to_string(examination_.url.size()) + " characters, port " +
                                            std::to_string(examination_.port));
    if (diagnosis_.HasErrors()) {
        return false;
    }
    progress_.Show("looking up the host");
    diagnosis_.Add(LookUp(HostIn(examination_.url), examination_.port, &address_));
    if (!diagnosis_.HasErrors()) {
        diagnosis_.SetExamined(Topic::kName, Dotted(address_));
    }
    return !diagnosis_.HasErrors();
}

// False if further checks make no sense.
bool Doctor::TryDownloads()
{
    const std::string request = DownloadRequest(examination_.url + QueryOf(examination_), identity_);
    const int tries = examination_.tries;
    const auto untilQuick = std::chrono::steady_clock::now() + kForQuickTries;
    const auto goesOn = [&] {
        const bool quick = !diagnosis_.HasErrors() && std::chrono::steady_clock::now() < untilQuick;
        return seen_ < (quick ? tries * kQuickTriesForEach : tries) && blind_ < tries * (kMostTriesForEach - 1) &&
               !StopRequest::IsMade();
    };
    while (goesOn()) {
        progress_.Show("download " + std::to_string(seen_ + blind_ + 1) + " of at least " + std::to_string(tries));
        if (!TryDownload(request)) {
            return false;
        }
    }
    if (seen_ == 0 && blind_ > 0) {
        diagnosis_.Add(diagnostics::RuleNamed("packets-joined"),
                       "in each of " + std::to_string(blind_) + " downloads several packets had already arrived");
    }
    ShowDownload(last_);
    return true;
}

bool Doctor::TryDownload(const std::string &request)
{
    PlainExchange made =
        Ask(address_, request, Call::kDownload, examination_.patience, seen_ + blind_ < kTriesToTheEnd);
    diagnosis_.SetExamined(Topic::kConnection, "port " + std::to_string(examination_.port));
    diagnosis_.Add(made.noConnection);
    if (!made.noConnection.empty()) {
        return false;
    }
    made.exchange.request.clear(); // ours needs no diagnosis
    diagnosis_.SetSoftware(diagnostics::ServerSoftware(made.exchange.reply));
    diagnosis_.AddDownload(diagnostics::Diagnose(made.exchange));
    ++(made.sawFirstSegment ? seen_ : blind_);
    slowest_ = std::max(slowest_, made.exchange.firstByteAfter);
    last_ = std::move(made.exchange);
    diagnosis_.SetExamined(Topic::kFirstBytes, diagnostics::Printable(last_.reply, 30));
    // after one time-out do not wait again
    return !last_.reply.empty() && last_.end != diagnostics::End::kTimeOut;
}

void Doctor::ShowDownload(const diagnostics::Exchange &exchange)
{
    for (const auto &[topic, shown] : PointsOf(exchange)) {
        diagnosis_.SetExamined(topic, shown);
    }
    const std::string tries = std::to_string(seen_ + blind_) + " downloads";
    diagnosis_.SetExamined(Topic::kSegments,
                           exchange.segments == 0
                               ? "only the first receive was seen, in " + tries +
                                     ": this system does not report packets, so a split may go unnoticed"
                               : "the first packet was identified in " + std::to_string(seen_) + " of " + tries);
    diagnosis_.SetExamined(Topic::kTime, "first byte after at most " + std::to_string(slowest_.count()) + " ms");
}

} // namespace client
