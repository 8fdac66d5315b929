// The part of a caller that every flavour shares: it reads one command a line
// from standard input, makes that call into the library and returns one line on
// standard output. Only the standard library is used, so that desktop Windows,
// Linux and the device's image runner all build it.
//
//   list PROFILE W0 W1 TYPE CATEGORY SORT START MAX TARGET FORCE URL PORT  ->  result N
//   good PROFILE W0 W1 TYPE ID TARGET FORCE URL PORT                       ->  result N
//   buy PROFILE W0 W1 TYPE ID FORCE URL PORT                               ->  result N HEX
//   reload                                                                 ->  ready
//   quit
//
// Texts are UTF-16 units of four hex digits each, most significant first; `-` is
// a null pointer and `""` the empty text. HEX is the whole purchase record after
// the call, byte by byte; it was filled with 0xA5 before. The reply to a
// malformed line is `error` and the reason.
#pragma once

#include <pavonix/pavonix.h>

#include <istream>
#include <string>

namespace pavonix::device {

struct ShopExports {
    decltype(&::GetGoodListXml) getGoodListXml = nullptr;
    decltype(&::GetOneGoodXml) getOneGoodXml = nullptr;
    decltype(&::GetBuyGood) getBuyGood = nullptr;
};

// Loads and unloads one flavour of the library.
class LibraryLoader {
public:
    virtual ~LibraryLoader() = default;
    // Fills all three exports. False when the library or one of them is missing;
    // the loader then prints the reason on standard error.
    virtual bool Load(ShopExports *exports) = 0;
    // Runs the library's clean-up; the exports of the last Load are gone.
    virtual void Unload() = 0;
    // Runs a command of this flavour alone. Returns its output, "" for an unknown command.
    virtual std::string RunOther(const std::string &, std::istream &) { return ""; }
};

// Loads the library, prints `ready` and serves commands until `quit` or the end
// of the input, then unloads. Returns the exit code of the program.
int RunCallLoop(LibraryLoader &loader);

} // namespace pavonix::device
