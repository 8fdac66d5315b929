#include "doctor/device_request.h"

#include "http/http_connection.h"
#include "http/url.h"
#include "diagnostics/device_reading.h"
#include "rsa/cipher/zt_rsa.h"
#include "token/time_text.h"

namespace client {

namespace {

void AddIdentity(pavonix::HttpConnection *connection, const Identity &identity)
{
    connection->SetUserAgent(pavonix::ZtString(identity.userAgent.c_str()));
    connection->AddHeader("User-Serial", identity.serial.c_str());
    connection->AddHeader("User-ID", std::to_string(identity.userId).c_str());
}

std::string Compose(pavonix::HttpConnection *connection, const char *method, const std::string &url)
{
    const pavonix::ZtString request = connection->BuildRequest(method, pavonix::SplitUrl(url.c_str()), 0);
    return {request.c_str(), static_cast<std::size_t>(request.length())};
}

} // namespace

Identity IdentityOf(const ProfileText &profile)
{
    const auto value = [&](const char *key) {
        const auto found = profile.values.find(key);
        return found == profile.values.end() ? std::string() : found->second;
    };
    return {value("User-Agent"), value("User-Serial"), diagnostics::NumberIn(value("User-Id")), value("Public-Key"),
            value("Private-Key")};
}

std::string DownloadRequest(const std::string &url, const Identity &identity)
{
    pavonix::HttpConnection connection;
    AddIdentity(&connection, identity);
    return Compose(&connection, "GET", url);
}

std::string PurchaseRequest(const std::string &url, const Identity &identity, const std::string &token, int type,
                            int id)
{
    pavonix::HttpConnection connection;
    AddIdentity(&connection, identity);
    connection.AddHeader("User-Cert", token.c_str());
    connection.AddFormField("type", std::to_string(type).c_str());
    connection.AddFormField("id", std::to_string(id).c_str());
    connection.AddFormField("force", "0");
    connection.AddHeader("Content-Length", std::to_string(connection.GetFormBody().length()).c_str());
    return Compose(&connection, "POST", url);
}

std::string MakeToken(const Identity &identity, int secondsOff)
{
    pavonix::ZtRsa engine;
    engine.put_OAEP(true);
    pavonix::ZtString made;
    const bool done =
        engine.ImportPublicKey(identity.publicKey.c_str()) && engine.ImportPrivateKey(identity.privateKey.c_str()) &&
        engine.EncryptStringENC(token::FormatTimeText(token::WallTimeNow() + std::chrono::seconds(secondsOff)).c_str(),
                                true, &made);
    return done ? made.c_str() : "";
}

} // namespace client
