#include "profile_keys.h"

#include "rsa/cipher/zt_rsa.h"
#include "token/time_text.h"

namespace client {

namespace {

std::string WithLog(const std::string &problem, pavonix::ZtRsa &engine)
{
    pavonix::ZtString log;
    engine.get_LastErrorText(&log);
    std::string text = problem + "; the engine logged:\n" + log.c_str();
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
}

} // namespace

std::vector<std::string> CheckKeys(const std::string &publicXml, const std::string &privateXml)
{
    pavonix::ZtRsa engine;
    engine.put_OAEP(true);
    std::vector<std::string> problems;
    if (!engine.ImportPublicKey(publicXml.c_str())) {
        problems.push_back(WithLog("Public-Key does not import", engine));
    }
    if (!engine.ImportPrivateKey(privateXml.c_str())) {
        problems.push_back(WithLog("Private-Key does not import", engine));
    }
    if (!problems.empty()) {
        return problems;
    }
    pavonix::ZtString token;
    const std::string time = token::FormatTimeText(token::WallTimeNow());
    const auto makeToken = [&] { return engine.EncryptStringENC(time.c_str(), true, &token); };
    if (!makeToken() && !makeToken()) { // with a size that CheckToken warns of, some fail
        return {WithLog("no token can be made with the keys", engine)};
    }
    return CheckToken(token.c_str(), publicXml);
}

} // namespace client
