#include "form_fields.h"

#include "errors.h"

#include <charconv>

namespace shop {

namespace {

// Returns false for a broken escape.
bool DecodeEscape(std::string_view digits, char *decoded)
{
    unsigned value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    *decoded = static_cast<char>(value);
    return digits.size() == 2 && error == std::errc() && end == digits.data() + 2;
}

std::string Decode(std::string_view encoded)
{
    std::string decoded;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        char byte = encoded[i] == '+' ? ' ' : encoded[i];
        if (byte == '%') {
            if (!DecodeEscape(encoded.substr(i + 1, 2), &byte)) {
                throw Refusal(kWrongParameter, "an escape is broken");
            }
            i += 2;
        }
        decoded += byte;
    }
    return decoded;
}

std::string Listed(std::initializer_list<const char *> names)
{
    std::string list;
    for (const char *name : names) {
        list += (list.empty() ? "" : ", ") + std::string(name);
    }
    return list;
}

} // namespace

FormFields::FormFields(std::string_view text, std::initializer_list<const char *> names)
{
    bool once = true;
    while (!text.empty()) {
        const std::string_view field = text.substr(0, text.find('&'));
        text.remove_prefix(std::min(field.size() + 1, text.size()));
        const std::size_t equals = std::min(field.find('='), field.size());
        const std::string_view value = field.substr(std::min(equals + 1, field.size()));
        once = values_.emplace(Decode(field.substr(0, equals)), Decode(value)).second && once;
    }
    bool all = values_.size() == names.size();
    for (const char *name : names) {
        all = all && values_.contains(name);
    }
    if (!all || !once) {
        throw Refusal(kWrongParameter, "needed once each are " + Listed(names));
    }
}

int FormFields::Number(const char *name, int low, int high) const
{
    const std::string &text = values_.find(name)->second;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < low || value > high) {
        throw Refusal(kWrongParameter,
                      std::string(name) + " is a number from " + std::to_string(low) + " to " + std::to_string(high));
    }
    return value;
}

} // namespace shop
