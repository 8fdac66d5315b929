// The two catalogue downloads and the flow that they share.
#include "pavonix/pavonix.h"
#include "platform/export.h"
#include "platform/wide_char.h"
#include "shop/shop_call.h"
#include "store/body_source.h"
#include "store/body_writer.h"
#include "store/target_path.h"

#include <cstddef>

static_assert(sizeof(GoodListRequest) == 28 && offsetof(GoodListRequest, type) == 8 &&
              offsetof(GoodListRequest, category) == 12 && offsetof(GoodListRequest, sort) == 16 &&
              offsetof(GoodListRequest, start) == 20 && offsetof(GoodListRequest, max) == 24);
static_assert(sizeof(OneGoodRequest) == 16 && offsetof(OneGoodRequest, type) == 8 &&
              offsetof(OneGoodRequest, id) == 12);

namespace pavonix {

namespace {

using QueryText = FixedText<128>; // "?name=number&..." of at most five numbers

// The arguments of both calls besides their request; any text may be null.
struct DownloadCall {
    const WideChar *profilePath;
    const WideChar *targetPath;
    int force;
    const WideChar *baseUrl;
    int port;
};

// The reply's body, read from its connection.
class ReplyBody final : public BodySource {
public:
    explicit ReplyBody(HttpConnection &connection) : connection_(connection) {}

    std::span<const char> held() const override
    {
        return {connection_.GetBodyPrefix(), kFirstReception - connection_.GetHeadLength()};
    }
    std::uint32_t announced() const override { return connection_.GetContentLength(); }
    int Receive(char *buffer, int length) override { return connection_.Receive(buffer, length); }

private:
    HttpConnection &connection_;
};

// Stores the reply's body in the target file. Errors here are not reported: 200 is
// the server's status and does not mean that the file is complete.
void StoreBody(HttpConnection *connection, const WideChar *targetPath)
{
    WideChar folder[260] = {}; // only its size matters: a longer folder is not made
    if (!PrepareTargetDirectory(targetPath, folder)) {
        connection->Close();
        connection->Reset();
        return;
    }
    if (ProbePath(targetPath) != PathKind::kNothing) {
        DeleteTargetFile(targetPath);
    }
    BodyWriter writer;
    writer.Open(targetPath);
    if (writer.usable()) {
        ReplyBody body(*connection);
        writer.WriteBody(&body);
        writer.Close();
    } else {
        connection->Close();
    }
    connection->Reset();
}

int Fetch(const DownloadCall &call, const UrlText &url, HttpConnection &connection)
{
    const CallIdentity identity(call.profilePath);
    ZtByteData reply; // a download does not use it
    const bool replied = AddIdentity(identity, &connection) &&
                         connection.Get(url.c_str(), &reply, static_cast<std::uint32_t>(call.port)) != 0;
    const std::int32_t status = replied ? ReplyStatus(connection) : PAVONIX_FAILED;
    if (status != PAVONIX_OK) {
        connection.Close();
        connection.Reset();
        return status;
    }
    StoreBody(&connection, call.targetPath);
    return status;
}

// Keeps or downloads the target; returns what the exported call returns: 1, 0,
// 200, or the reply's status.
int Download(const DownloadCall &call, const QueryText &query)
{
    HttpConnection connection; // before any early return: its destruction calls WSACleanup once on every path
    if (call.force == 0 && ProbePath(call.targetPath) == PathKind::kFile) {
        return PAVONIX_KEPT;
    }
    UrlText url;
    if (!ConvertBaseUrl(call.baseUrl, &url)) {
        return PAVONIX_FAILED;
    }
    url.Append(query.c_str());
    return url.fits() ? Fetch(call, url, connection) : PAVONIX_FAILED;
}

} // namespace

} // namespace pavonix

PAVONIX_EXPORT int PAVONIX_CALL GetGoodListXml(const PavonixChar *profilePath, const GoodListRequest *request,
                                               const PavonixChar *targetPath, int force, const PavonixChar *baseUrl,
                                               int port)
{
    if (request == nullptr) {
        return PAVONIX_FAILED;
    }
    pavonix::QueryText query;
    query.Append("?type=").AppendDecimal(request->type);
    query.Append("&category=").AppendDecimal(request->category);
    query.Append("&sort=").AppendDecimal(request->sort);
    query.Append("&start=").AppendDecimal(request->start);
    query.Append("&max=").AppendDecimal(request->max);
    return pavonix::Download({profilePath, targetPath, force, baseUrl, port}, query);
}

PAVONIX_EXPORT int PAVONIX_CALL GetOneGoodXml(const PavonixChar *profilePath, const OneGoodRequest *request,
                                              const PavonixChar *targetPath, int force, const PavonixChar *baseUrl,
                                              int port)
{
    if (request == nullptr) {
        return PAVONIX_FAILED;
    }
    pavonix::QueryText query;
    query.Append("?type=").AppendDecimal(request->type);
    query.Append("&id=").AppendDecimal(request->id);
    return pavonix::Download({profilePath, targetPath, force, baseUrl, port}, query);
}
