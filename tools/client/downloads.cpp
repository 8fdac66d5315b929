#include "downloads.h"

#include "shop_call.h"
#include "stored_file.h"
#include "wide_text.h"

#include <iostream>
#include <memory>

namespace client {

namespace {

struct Download {
    ShopCall call;
    std::string target;
    bool force = false;
    GoodListRequest list{};
    OneGoodRequest good{};
};

void AddOptions(CLI::App &command, Download &download)
{
    download.call.AddOptions(command);
    command.add_option("--out", download.target, "The file to store the XML in")->required();
    command.add_flag("--force", download.force, "Download even if the file exists, and replace it");
}

ExitCode Report(int status, const StoredFile &stored, const Download &download)
{
    switch (status) {
    case PAVONIX_OK:
        return stored.Show() ? ExitCode::kDone : ExitCode::kNothingWhole;
    case PAVONIX_KEPT:
        std::cout << "kept (1): " << download.target << " exists, the server was not asked (--force asks)\n";
        return ExitCode::kKept;
    default:
        return ExplainFailure(status);
    }
}

template <class Function, class Request>
ExitCode Run(const Download &download, Function ShopLibrary::*function, const Request &request)
{
    const ShopLibrary library(download.call.library);
    const StoredFile stored(download.target);
    const int status =
        (library.*function)(download.call.WideProfile().c_str(), &request, ToWidePath(download.target).c_str(),
                            download.force ? 1 : 0, ToWide(download.call.url).c_str(), download.call.Port());
    return Report(status, stored, download);
}

} // namespace

void AddDownloadCommands(CLI::App &app, ExitCode *exitCode)
{
    const auto listed = std::make_shared<Download>();
    CLI::App *list = app.add_subcommand("list", "Store one page of the catalogue");
    AddOptions(*list, *listed);
    list->add_option("--type", listed->list.type, "Type of goods")->required();
    list->add_option("--category", listed->list.category, "Category, 0 for all")->capture_default_str();
    list->add_option("--sort", listed->list.sort, "Sort order, a number of the shop's")->capture_default_str();
    list->add_option("--start", listed->list.start, "First item of the page")->capture_default_str();
    listed->list.max = 10;
    list->add_option("--max", listed->list.max, "Items on the page")->capture_default_str();
    list->callback([=] { *exitCode = Run(*listed, &ShopLibrary::getGoodListXml, listed->list); });

    const auto single = std::make_shared<Download>();
    CLI::App *good = app.add_subcommand("good", "Store the description of one good");
    AddOptions(*good, *single);
    good->add_option("--type", single->good.type, "Type of the good")->required();
    good->add_option("--id", single->good.id, "Its id")->required();
    good->callback([=] { *exitCode = Run(*single, &ShopLibrary::getOneGoodXml, single->good); });
}

} // namespace client
