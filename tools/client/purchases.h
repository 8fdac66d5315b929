// The command "buy".
#pragma once

#include "shop_call.h"

namespace client {

struct Purchase {
    ShopCall call;
    int type = 0;
    int id = 0;
    bool force = false;
};

ExitCode Buy(const Purchase &purchase);

} // namespace client
