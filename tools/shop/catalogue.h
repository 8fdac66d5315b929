// The catalogue's two documents, made from the database.
#pragma once

#include "shop/database/database.h"

#include <chrono>
#include <list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace shop {

struct Category {
    std::string name;
    Int64 goods = 0;
};

// The categories of a type, and how many goods they hold.
struct TypeSummary {
    std::chrono::steady_clock::time_point at;
    std::map<int, Category> categories;
    Int64 goods = 0;
};

// Keeps the summaries for a second, so that large catalogues are not counted for every page. All connections share it.
class TypeSummaries {
public:
    // Returns null if there is none, or none new enough.
    [[nodiscard]] std::shared_ptr<const TypeSummary> Find(int type);
    void Put(int type, std::shared_ptr<const TypeSummary> summary);

private:
    std::mutex mutex_;
    std::map<int, std::shared_ptr<const TypeSummary>> summaries_;
};

class Catalogue {
public:
    Catalogue(Database &database, TypeSummaries &summaries);

    // Returns one page of goods as XML. The query contains each of these once:
    //   type      a type of goods; an unknown one is refused
    //   category  a category of that type, 0 for all of them
    //   sort      0 id, 1 title, 2 price, 3 price from the highest, 4 newest first
    //   start     goods to skip; beyond the end the page is empty
    //   max       goods on the page, 1 to 100
    // The root element carries the query and "total", the number of all goods
    // that match. Throws Refusal.
    [[nodiscard]] std::string List(std::string_view query);

    // Returns the good named by the query's type and id as XML, with its
    // description. Throws Refusal.
    [[nodiscard]] std::string Good(std::string_view query);

private:
    // id, title, maker, category, price, added
    using Row = std::tuple<int, std::string, std::string, int, Int64, std::string>;
    using Described = std::tuple<int, std::string, std::string, int, Int64, std::string, std::string, std::string>;

    [[nodiscard]] std::shared_ptr<const TypeSummary> Summary(int type);

    TypeSummaries &summaries_;
    Statement<std::tuple<int, std::string, Int64>, int> categories_;
    Statement<Described, int, int> good_;
    // By the number in "sort"; a list, as statements stay where they are.
    std::list<Statement<Row, int, int, int, int>> ofType_;
    std::list<Statement<Row, int, int, int, int, int>> ofCategory_;
};

} // namespace shop
