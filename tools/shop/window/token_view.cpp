#include "shop/window/token_view.h"

#include "shop/texts.h"
#include "token/token.h"

#include <boost/algorithm/hex.hpp>

#include <charconv>

namespace shop {

namespace {

constexpr std::size_t kShownBlocks = 4;

std::string Count(std::size_t number, const char *what)
{
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

std::string Hex(const token::Bytes &bytes)
{
    std::string digits;
    boost::algorithm::hex_lower(bytes, std::back_inserter(digits));
    return "<code>" + digits + "</code>";
}

token::PublicKey KeyOf(Database &database, const std::string &serial, const std::string &userId)
{
    int user = 0;
    const auto [end, error] = std::from_chars(userId.data(), userId.data() + userId.size(), user);
    if (error != std::errc() || end != userId.data() + userId.size()) {
        return nullptr;
    }
    const auto pem = Select<std::string>(
        database, "SELECT public_key FROM device WHERE serial = :serial AND user_id = :user", serial, user);
    return pem.empty() ? nullptr : token::ReadPublicKey(std::get<0>(pem[0]));
}

// Collects the steps until one fails.
class Steps {
public:
    void Add(const std::string &html) { html_ += "<li>" + html + "</li>"; }
    void Fail(const std::string &html) { html_ += "<li class=\"error\">" + html + "</li>"; }
    std::string Finish() const { return "<ol class=\"token\">" + html_ + "</ol>"; }

private:
    std::string html_;
};

// Returns whether all blocks opened.
bool ShowBlocks(Steps &steps, const token::Opening &opening)
{
    for (std::size_t i = 0; i < opening.blocks.size() && i < kShownBlocks; ++i) {
        const token::OpenedBlock &block = opening.blocks[i];
        const std::string name = "Block " + std::to_string(i + 1);
        steps.Add(name + " raised to the key's public exponent: " + Hex(block.encoded));
        if (!block.text) {
            steps.Fail("That is no OAEP block (SHA-1, empty label): it was made with another key, or changed.");
            return false;
        }
        steps.Add(name + " without OAEP (SHA-1, empty label): <q>" + Html(*block.text) + "</q>");
    }
    return opening.text.has_value();
}

void ShowTime(Steps &steps, const token::Opening &opening, token::WallTime at)
{
    const std::string text = Html(opening.text.value_or(""));
    if (!opening.time) {
        steps.Fail("The text is no time: <q>" + text + "</q>");
        return;
    }
    const auto ahead = std::chrono::floor<std::chrono::seconds>(*opening.time - at + std::chrono::milliseconds(999));
    const auto seconds = Count(static_cast<std::size_t>(std::abs(ahead.count())), "second");
    steps.Add("The device's clock said <q>" + text + "</q>, " + seconds +
              (ahead.count() < 0 ? " behind" : " ahead of") + " the shop's.");
}

} // namespace

std::string TokenAsHtml(Database &database, const std::string &serial, const std::string &userId,
                        const std::string &headerValue, token::WallTime at)
{
    Steps steps;
    const auto bytes = token::DecodeBase64(headerValue);
    const std::string length = "User-Cert has " + Count(headerValue.size(), "character");
    if (!bytes) {
        steps.Fail(length + (headerValue.empty() ? "." : ", which are no base64."));
        return steps.Finish();
    }
    steps.Add(length + " of base64: " + Count(bytes->size(), "byte") + ".");
    const token::PublicKey key = KeyOf(database, serial, userId);
    const std::string device = "device <q>" + Html(serial) + "</q>, user <q>" + Html(userId) + "</q>";
    if (key == nullptr) {
        steps.Fail("There is no key to open it with: " + device + ", is not registered.");
        return steps.Finish();
    }
    const token::Opening opening = token::OpenStepByStep(headerValue, key);
    const std::string size = Count(token::ModulusOf(key).size(), "byte");
    if (opening.blocks.empty()) {
        steps.Fail("The key of " + device + " makes blocks of " + size + ", and these are no whole blocks.");
        return steps.Finish();
    }
    steps.Add("The key of " + device + " makes blocks of " + size + ": " + Count(opening.blocks.size(), "block") + ".");
    if (ShowBlocks(steps, opening)) {
        ShowTime(steps, opening, at);
    }
    return steps.Finish();
}

} // namespace shop
