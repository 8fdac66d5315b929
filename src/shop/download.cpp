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

} // namespace

bool KeepsTarget(const WideChar *targetPath, int force)
{
    return force == 0 && ProbePath(targetPath) == kPathFile;
}

int Download(const WideChar *profilePath, const UrlText &url, const WideChar *targetPath, int port)
{
    HttpConnection connection;
    const CallIdentity identity(profilePath);
    identity.AddTo(&connection);

    ZtByteData reply; // its contents are of no use to a download
    const bool answered = connection.Get(url.c_str(), &reply, static_cast<std::uint32_t>(port)) != 0;
    const std::int32_t status = answered ? ReplyStatus(connection) : PAVONIX_FAILED;
    if (status != PAVONIX_OK) {
        connection.Close();
        connection.Reset();
        return status;
    }
    StoreBody(&connection, targetPath);
    return status;
}

} // namespace pavonix
