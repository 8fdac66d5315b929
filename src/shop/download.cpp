#include "shop/download.h"

#include "pavonix/pavonix.h"
#include "store/body_writer.h"
#include "store/delete_target_file.h"
#include "store/prepare_target_directory.h"
#include "store/probe_path.h"

namespace pavonix {

namespace {

// Puts the reply's body in the target file. What goes wrong here is not reported:
// 200 says what the server answered, not that the file is complete.
void StoreBody(HttpConnection *connection, const WideChar *targetPath)
{
    WideChar folder[260] = {};
    if (PrepareTargetDirectory(targetPath, folder) == 0) {
        connection->Close();
        connection->Reset();
        return;
    }
    if (ProbePath(targetPath) != kPathNothing) {
        DeleteTargetFile(targetPath);
    }
    BodyWriter writer;
    writer.Open(targetPath);
    if (writer.usable()) {
        writer.WriteBody(connection);
        writer.Close();
    } else {
        connection->Close();
    }
    connection->Reset();
}

int Fetch(const DownloadCall &call, const UrlText &url)
{
    HttpConnection connection;
    const CallIdentity identity(call.profilePath);
    ZtByteData reply; // its contents are of no use to a download
    const bool answered =
        identity.AddTo(&connection) && connection.Get(url.c_str(), &reply, static_cast<std::uint32_t>(call.port)) != 0;
    const std::int32_t status = answered ? ReplyStatus(connection) : PAVONIX_FAILED;
    if (status != PAVONIX_OK) {
        connection.Close();
        connection.Reset();
        return status;
    }
    StoreBody(&connection, call.targetPath);
    return status;
}

} // namespace

int Download(const DownloadCall &call, const QueryText &query)
{
    if (call.force == 0 && ProbePath(call.targetPath) == kPathFile) {
        return PAVONIX_KEPT;
    }
    UrlText url;
    if (!ConvertBaseUrl(call.baseUrl, &url)) {
        return PAVONIX_FAILED;
    }
    url.Append(query.c_str());
    return url.fits() ? Fetch(call, url) : PAVONIX_FAILED;
}

} // namespace pavonix
