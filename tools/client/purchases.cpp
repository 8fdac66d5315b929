#include "purchases.h"

#include "shop_call.h"
#include "wide_text.h"

#include <iostream>
#include <memory>

namespace client {

namespace {

// The library writes texts in their full length: an overlong message runs on into
// the timestamp's room, so that the end of the record is the only limit.
std::string TextAt(const BuyGoodRoomyResult &result, const PavonixChar *text)
{
    const auto *end = reinterpret_cast<const PavonixChar *>(&result + 1);
    std::u16string_view shown(text, static_cast<std::size_t>(end - text));
    shown = shown.substr(0, shown.find(u'\0'));
    shown.remove_prefix(std::min(shown.find_first_not_of(u' '), shown.size())); // the blank behind the colon
    return Printable(ToUtf8(shown));
}

void ShowVerdict(const BuyGoodRoomyResult &result)
{
    const std::string message = TextAt(result, result.message);
    std::cout << "error code: " << result.errorCode << (result.errorCode == 0 ? " (the server sent none)\n" : "\n")
              << "message: " << (message.empty() ? "(none)" : message) << '\n';
    if (result.errorCode == 906) {
        std::cout << "server timestamp: " << TextAt(result, result.serverTimestamp) << '\n'
                  << "The clock of this device is off: set it and buy again.\n";
    }
}

ExitCode Buy(const ShopCall &call, const BuyGoodRequest &request)
{
    const ShopLibrary library(call.library);
    const auto result = std::make_unique<BuyGoodRoomyResult>();
    const int status =
        library.getBuyGood(call.WideProfile().c_str(), &request, reinterpret_cast<BuyGoodResult *>(result.get()),
                           ToWide(call.url).c_str(), call.Port());
    if (status == PAVONIX_OK) {
        std::cout << "bought (200): type " << request.type << ", id " << request.id << '\n';
        return ExitCode::kDone;
    }
    const ExitCode code = ExplainFailure(status);
    if (code == ExitCode::kRefused) {
        ShowVerdict(*result);
    }
    return code;
}

} // namespace

void AddBuyCommand(CLI::App &app, ExitCode *exitCode)
{
    struct Purchase {
        ShopCall call;
        BuyGoodRequest request{};
        bool force = false;
    };
    const auto purchase = std::make_shared<Purchase>();
    CLI::App *buy = app.add_subcommand("buy", "Buy a good");
    purchase->call.AddOptions(*buy);
    buy->add_option("--type", purchase->request.type, "Type of the good")->required();
    buy->add_option("--id", purchase->request.id, "Its id")->required();
    buy->add_flag("--force", purchase->force, "Ask the shop to sell it even if it is owned already");
    buy->callback([=] {
        purchase->request.force = purchase->force ? 1 : 0;
        *exitCode = Buy(purchase->call, purchase->request);
    });
}

} // namespace client
