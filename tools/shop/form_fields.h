// The fields of a query or of a posted form ("type=1&id=7").
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace shop {

class FormFields {
public:
    // The fields must be exactly the named ones, in any order, each once; otherwise
    // throws Refusal(kWrongParameter).
    FormFields(std::string_view text, std::initializer_list<const char *> names);

    // Returns the field's value when it is a decimal number from low to high;
    // otherwise throws Refusal(kWrongParameter).
    [[nodiscard]] int Number(const char *name, int low, int high) const;

private:
    std::map<std::string, std::string, std::less<>> values_;
};

} // namespace shop
