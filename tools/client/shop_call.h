// What every call to the shop needs: where the shop is and who asks.
#pragma once

#include "exit_code.h"
#include "shop_library.h"

#include <CLI/App.hpp>

#include <optional>
#include <string>

namespace client {

struct ShopCall {
    std::string library;
    std::string profile;
    std::string url;
    std::optional<int> port;

    // Declares the options of a call.
    void AddOptions(CLI::App &command);

    // Writes a warning for a profile that cannot be read: the library does not
    // mind, it sends the request without an identity.
    [[nodiscard]] std::u16string WideProfile() const;
    // --port, or the port that stands in the URL, or 80.
    [[nodiscard]] int Port() const;
};

// Says on standard output what a status other than 200 means, and answers the
// exit code for it.
ExitCode ExplainFailure(int status);

} // namespace client
