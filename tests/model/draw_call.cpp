#include "model/drawn_call.h"

#include <cstdint>

namespace pavonix::e2e {

namespace {

int DrawNumber(Choices *choices)
{
    return choices->Pick({0, 1, 7, -1, 1000000, INT32_MAX, INT32_MIN, -12345});
}

// Raw bytes without NUL and "-", which would end a text or complete a key.
std::string Harmless(std::string raw, char instead)
{
    for (char &byte : raw) {
        byte = byte == '\0' || byte == '-' ? instead : byte;
    }
    return raw;
}

std::string DrawProfile(Choices *choices)
{
    std::string profile;
    for (std::size_t lines = choices->Below(6); lines > 0; --lines) {
        profile += choices->Text({"User-Agent: Handheld/1.0", "User-Serial: S-0815", "User-Id: 42",
                                  "User-Agent: ", "User-Id:  \t-7x", "User-Id: 99999999999", "User-No: 5",
                                  "User-Serial=S", "# User-Id: 7 User-Agent: U", "User-Serial: a: b: c ", "User-Id:42",
                                  "User-Serial: ", "", "user-id: 3", "User-Agent: U\r"});
        profile += choices->Below(4) == 0 ? Harmless(choices->Raw(40), '+') : "";
        profile += choices->Below(8) == 0 ? std::string(1, '\0') + "User-Id: 8" : "";
        profile += choices->Below(16) == 0 ? std::string(990 + choices->Below(40), 'l') : "";
        profile += "\n";
    }
    profile += "Public-Key: " + DrawnKey().PublicXml() + "\nPrivate-Key: " + DrawnKey().PrivateXml();
    return profile + choices->Text({"\n", "", "\nUser-Id: 9", "\n\n\n"});
}

std::u16string DrawUrl(Choices *choices)
{
    std::string url = choices->Text(
        {"http://", "http://", "http://", "http://", "", "HTTP://", "hTtP://", "https://", "//", "http\x1a//"});
    const std::string longest = "127.0.0.1:" + std::string(195, '9'); // each copy allocates memory
    url += choices->Text({"127.0.0.1", "127.0.0.1", "127.0.0.1:99", "127.0.0.1:", "127.0.0.1", "", longest.c_str()});
    url += choices->Text({"/goods", "/goods", "/goods", "/", "", "/a//b", "/g?a=b&c", "/:\\"});
    url += choices->Below(4) == 0 && url.ends_with("goods") ? Harmless(choices->Raw(30), '/') : "";
    url += choices->Below(8) == 0 && url.ends_with("goods") ? std::string(160 + choices->Below(80), 'p') : "";
    std::u16string wide;
    for (const char byte : url) {
        const auto unit = static_cast<unsigned char>(byte);
        wide += static_cast<char16_t>(unit >= 0x80 && unit < 0xA0 ? unit + 0x20
                                                                  : unit); // the Latin-1 part of the code page
    }
    return wide;
}

void DrawTarget(Choices *choices, Scenario *call)
{
    const struct {
        Tree before;
        std::u16string target;
    } targets[] = {{{}, u"list.xml"},
                   {{{"list.xml", "something old"}}, u"list.xml"},
                   {{{"list.xml/", ""}}, u"list.xml"},
                   {{{"shop/other", "1"}}, u"shop\\list.xml"},
                   {{{"other", "1"}}, u"shop\\list.xml"},
                   {{}, u"a\\b\\list.xml"},
                   {{{"a/x", "1"}}, u"a\\b\\list.xml"},
                   {{{"other", "1"}}, u""}};
    const auto &drawn = targets[choices->Below(std::size(targets))];
    call->before = drawn.before;
    call->target = drawn.target;
    call->force = choices->Pick({1, 0, -1});
}

std::string DrawReply(Choices *choices)
{
    std::string reply = choices->Text({"HTTP/1.1 200 OK", "HTTP/1.1 403 No", "HTTP/1.1 200 OK", "HTTP/1.1 200 OK",
                                       "HTTP/1.1 200", "HTTP/1.1", "X 2000 OK", " 7", "\r\n\r\n", "HTTP/1.1 -3 x",
                                       "HTTP/1.1  9", "HTTP/1.1 1", "\r\nHTTP/1.1 200 OK", "HTTP/1.1\r\nVia: 200"});
    for (std::size_t lines = choices->Below(6); lines > 0; --lines) {
        reply += "\r\n";
        reply +=
            choices->Text({"Content-Length: ", "X-Error-Code: 906", "X-Error-Message: The clock",
                           "X-Error-Code: ", "X-Server-Timestamp: 2026-3-5", "My-Content-Length:", "Content-Length",
                           "X-Error-Code", "X-Error-Message:", "Via: 1.1 b: ", "X"});
        reply += choices->Below(2) == 0 ? std::to_string(choices->Below(3000)) : "";
        reply += choices->Below(4) == 0 ? choices->Raw(30) : "";
        reply += choices->Below(16) == 0 ? std::string(800 + choices->Below(300), 'h') : "";
        reply += choices->Below(16) == 0 ? choices->Text({"-1", "99999999999", "\xe4\x80\x81\xff", "\n", "\r"}) : "";
    }
    reply += choices->Below(8) == 0 ? "\r\n" : "\r\n\r\n";
    reply += choices->Below(4) == 0 ? choices->Raw(60) : "";
    return reply + Bytes(choices->Pick<std::size_t>({0, 0, 5, 300, 984, 983, 985, 2007, 2008, 4000}));
}

std::vector<std::string> DrawPieces(Choices *choices)
{
    std::string reply = choices->Below(16) == 1 ? "" : DrawReply(choices);
    std::vector<std::string> pieces;
    for (std::size_t cuts = choices->Below(4); cuts > 1 && !reply.empty(); --cuts) {
        const std::size_t cut = choices->Pick({choices->Below(100), choices->Below(2500), reply.size()});
        pieces.push_back(reply.substr(0, cut + 1));
        reply.erase(0, cut + 1);
    }
    if (!reply.empty()) {
        pieces.push_back(reply);
    }
    return pieces;
}

} // namespace

const DeviceKey &DrawnKey()
{
    static const DeviceKey key("CB77F73ED4BD1DF7AABE1994C88F0A7745F08A143C090C60EB3E69AC2E0F6A23"
                               "999072EF9C9424E4A6D0F9D44AFB7FEAC7C2F880B2623FE6D24EB4E861CEF4D7",
                               "EDC698E9E62BB685B8EFFB047EED74F84B651A1427118E74352684AEA09F083F"
                               "9F51632AA808C2588B12DACC61369F5E4BA7660A3B54C088B5BF27D93EE64E69");
    return key;
}

Scenario DrawCall(const RowName &name, Choices *choices)
{
    Scenario call = {.name = name};
    call.function = choices->Pick({Export::kList, Export::kGood, Export::kBuy});
    call.words.resize(call.function == Export::kList ? 7 : call.function == Export::kGood ? 4 : 5);
    for (int &word : call.words) {
        word = DrawNumber(choices);
    }
    if (call.function != Export::kBuy) {
        DrawTarget(choices, &call);
    }
    call.url = DrawUrl(choices);
    call.profile = choices->Below(16) == 1 ? std::nullopt : std::optional(DrawProfile(choices));
    call.pieces = DrawPieces(choices);
    call.ending = Ending::kCloses;
    PredictOutcome(&call);
    return call;
}

Scenario PlainPurchase()
{
    Choices purchase(std::string("\2", 1));
    return DrawCall("plain_purchase", &purchase);
}

} // namespace pavonix::e2e
