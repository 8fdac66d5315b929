// The three calls of the tracing build. They write arguments and results to the trace
// and call the ordinary ones, which have other names in this build.
#include "pavonix/pavonix.h"
#include "platform/clock.h"
#include "platform/export.h"
#include "trace/call_state.h"
#include "trace/line.h"
#include "trace/untraced_calls.h"

namespace pavonix::trace {

namespace {

constexpr int kLongestText = 1000;
constexpr int kErrorClockIsOff = 906;

void Begin(const char *name, bool download, const WideChar *profilePath)
{
    ChooseFile(profilePath);
    state = {};
    state.download = download;
    platform::LocalTime now = {};
    platform::ReadLocalTime(&now);
    Line line("\n");
    line.Text(name).Text(", Pavonix " PAVONIX_VERSION " with tracing, on ");
    line.Number(now.year).Text("-").Number(now.month).Text("-").Number(now.day).Text(" at ");
    line.Number(now.hour).Text(":").Number(now.minute).Text(":").Number(now.second);
}

void WriteAddresses(const WideChar *profilePath, const WideChar *baseUrl, int port)
{
    Line("profile path: ").Wide(profilePath, kLongestText);
    Line("base URL: ").Wide(baseUrl, kLongestText).Text(", port ").Number(port);
}

void WriteTarget(const WideChar *targetPath, int force)
{
    Line("target path: ").Wide(targetPath, kLongestText).Text(", force ").Number(force);
}

// Fields that the call did not write hold what the caller put there.
void WriteRecord(const BuyGoodResult *result, int status)
{
    if (result == nullptr || status == PAVONIX_OK || !state.replied) {
        Line("the record was not touched");
        return;
    }
    Line("the record: error code ")
        .Number(result->errorCode)
        .Text(", message: ")
        .Wide(result->message, PAVONIX_MESSAGE_ROOM);
    if (result->errorCode == kErrorClockIsOff) {
        Line("server timestamp: ").Wide(result->serverTimestamp, PAVONIX_TIMESTAMP_ROOM);
    }
}

int End(int result)
{
    if (result == PAVONIX_FAILED && !state.started) {
        Line("nothing was sent: the URL is not of the form http://host/path with less than 256 bytes, query included,"
             " or the request record is missing");
    }
    Line("returned ").Number(result);
    return result;
}

} // namespace

} // namespace pavonix::trace

PAVONIX_EXPORT int PAVONIX_CALL GetGoodListXml(const PavonixChar *profilePath, const GoodListRequest *request,
                                               const PavonixChar *targetPath, int force, const PavonixChar *baseUrl,
                                               int port)
{
    using namespace pavonix::trace;
    Begin("GetGoodListXml", true, profilePath);
    WriteAddresses(profilePath, baseUrl, port);
    WriteTarget(targetPath, force);
    if (request != nullptr) {
        Line line("request: type ");
        line.Number(request->type).Text(", category ").Number(request->category).Text(", sort ");
        line.Number(request->sort).Text(", start ").Number(request->start).Text(", max ").Number(request->max);
    }
    return End(UntracedGetGoodListXml(profilePath, request, targetPath, force, baseUrl, port));
}

PAVONIX_EXPORT int PAVONIX_CALL GetOneGoodXml(const PavonixChar *profilePath, const OneGoodRequest *request,
                                              const PavonixChar *targetPath, int force, const PavonixChar *baseUrl,
                                              int port)
{
    using namespace pavonix::trace;
    Begin("GetOneGoodXml", true, profilePath);
    WriteAddresses(profilePath, baseUrl, port);
    WriteTarget(targetPath, force);
    if (request != nullptr) {
        Line("request: type ").Number(request->type).Text(", id ").Number(request->id);
    }
    return End(UntracedGetOneGoodXml(profilePath, request, targetPath, force, baseUrl, port));
}

PAVONIX_EXPORT int PAVONIX_CALL GetBuyGood(const PavonixChar *profilePath, const BuyGoodRequest *request,
                                           BuyGoodResult *result, const PavonixChar *baseUrl, int port)
{
    using namespace pavonix::trace;
    Begin("GetBuyGood", false, profilePath);
    WriteAddresses(profilePath, baseUrl, port);
    if (request != nullptr) {
        Line("request: type ")
            .Number(request->type)
            .Text(", id ")
            .Number(request->id)
            .Text(", force ")
            .Number(request->force);
    }
    const int status = UntracedGetBuyGood(profilePath, request, result, baseUrl, port);
    WriteRecord(result, status);
    return End(status);
}
