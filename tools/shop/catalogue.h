// The catalogue's two answers, made from the database.
#pragma once

#include "database.h"

#include <string>
#include <string_view>

namespace shop {

class Catalogue {
public:
    explicit Catalogue(Database &database) : database_(database) {}

    // Answers one page of goods as XML. The query holds, once each:
    //   type      a type of goods; an unknown one is refused
    //   category  a category of that type, 0 for all of them
    //   sort      0 id, 1 title, 2 price, 3 price from the dearest, 4 newest first
    //   start     goods to skip; beyond the end the page is empty
    //   max       goods on the page, 1 to 100
    // The root element carries the query and "total", the number of all goods
    // that match. Throws Refusal.
    [[nodiscard]] std::string List(std::string_view query);

    // Answers the good named by the query's type and id as XML, with its
    // description. Throws Refusal.
    [[nodiscard]] std::string Good(std::string_view query);

private:
    void RequireCategory(int type, int category);

    Database &database_;
};

} // namespace shop
