#include "system_command.h"

#include "system/coredll.h"
#include "system/import_table.h"

#include <deque>
#include <exception>

namespace pavonix::device {

namespace {

std::string FromHex(const std::string &hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

std::string ToHex(const std::string &bytes)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string hex;
    for (const unsigned char byte : bytes) {
        hex += kDigits[byte >> 4];
        hex += kDigits[byte & 15];
    }
    return hex;
}

// The values of a command's words, and the memory that they point to.
class Arguments {
public:
    explicit Arguments(std::istream &input)
    {
        std::string argument;
        for (std::size_t i = 0; i < words_.size() && input >> argument; ++i) {
            const std::string rest = argument.substr(1);
            words_[i] = argument[0] == '='   ? Keep(texts_, FromHex(rest))
                        : argument[0] == '?' ? Keep(rooms_, std::string(std::stoul(rest), '\0'))
                                             : static_cast<std::uint32_t>(std::stoll(argument, nullptr, 0));
        }
    }

    const CallWords &words() const { return words_; }
    const std::deque<std::string> &rooms() const { return rooms_; }

private:
    static std::uint32_t Keep(std::deque<std::string> &memory, const std::string &bytes)
    {
        memory.push_back(bytes);
        return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(memory.back().data()));
    }

    CallWords words_ = {};
    std::deque<std::string> texts_, rooms_; // a deque's elements do not move
};

} // namespace

std::string CallSystem(std::istream &words, const ImageCaller &call)
try {
    std::string name;
    words >> name;
    const ImportGate *gate = FindGate(name);
    if (gate == nullptr) {
        return "error " + name + " is not an import";
    }
    const Arguments arguments(words);
    call(ResolveImport(kCoreDll, "SetLastError"), {0});
    const auto result = static_cast<std::int32_t>(call(ResolveImport(gate->Library(), name), arguments.words()));
    const std::uint32_t error = call(ResolveImport(kCoreDll, "GetLastError"), {});
    std::string output = "system " + std::to_string(result) + " " + std::to_string(error);
    for (const std::string &room : arguments.rooms()) {
        output.append(" ").append(ToHex(room));
    }
    return output;
} catch (const std::exception &) {
    return "error an argument is no number";
}

} // namespace pavonix::device
