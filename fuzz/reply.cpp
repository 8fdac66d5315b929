// The head, the body prefix and the header values that a connection parses from received
// bytes, compared with the model and with the tools' view of the same bytes.
#include "demand.h"
#include "http/http_connection.h"
#include "http/reply_facts.h"
#include "http/reply_text.h"
#include "model/reply_model.h"
#include "shop/shop_call.h"
#include "support/tap.h"

#include <memory>
#include <optional>

using namespace pavonix;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string reply = Bytes(data, size);
    const e2e::Receptions receptions = e2e::CutAt(SIZE_MAX, {reply});
    tap::Reset();
    tap::ScriptedPeer peer{receptions};
    tap::UsePeer(&peer);
    HttpConnection connection;
    ZtByteData copy;
    Demand(connection.Get("http://shop/x", &copy, 80) == 1, "an answered request");
    const e2e::ReplyModel model(receptions);
    Demand(connection.GetHeadLength() == model.head.size(), "the head's length");
    Demand(connection.GetHead().c_str() == std::string(model.head.c_str()), "the head");
    Demand(connection.GetContentLength() == model.announced, "the announced length");
    const std::string held = model.announced == 0 ? model.prefix : model.prefix.substr(0, model.announced);
    Demand(std::string(connection.GetBodyPrefix(), held.size()) == held, "the body's start");
    const ReplyFacts facts(reply);
    Demand(facts.headLength() == model.head.size() && facts.announced() == model.announced, "the tools' view");
    Demand(facts.status() == ReplyStatus(connection), "the tools' view of the status");
    const bool hasHead = FindHeadFault(reply, kFirstReception, true) == HeadFault::kNone;
    Demand(facts.headIsWhole() == hasHead, "a cause for each head that is not found");
    const std::string text = (model.head + held).c_str();
    for (const char *name : {"Content-Length", "X-Error-Code", "a", ":", "\r\n", " "}) {
        const std::unique_ptr<char[]> value(GetHeaderValue(connection.GetHeadBuffer(), name));
        const auto expected = e2e::ReplyModel::Value(text, name);
        Demand((value == nullptr ? std::nullopt : std::optional<std::string>(value.get())) == expected, name);
        Demand(facts.Verdict(name) == expected, "the tools' view of a name");
    }
    const std::unique_ptr<char[]> exact(new char[size + 2]()); // one byte beyond the count is readable
    std::copy(data, data + size, exact.get());
    CopyResponsePrefix(exact.get(), &copy, static_cast<std::int32_t>(size));
    connection.Close();
    for (const std::string &piece : receptions) {
        Demand(peer.next > 0 || piece.empty(), "a reply that nobody received");
    }
    return 0;
}
