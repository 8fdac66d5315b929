#include "catalogue.h"

#include "errors.h"
#include "form_fields.h"
#include "xml_writer.h"

#include <array>
#include <limits>

namespace shop {

namespace {

constexpr int kLargest = std::numeric_limits<int>::max();
constexpr int kLongestPage = 100;
constexpr std::chrono::seconds kSummaryLife{1};

// By the number in "sort"; schema.sql has an index for each. The id orders goods that are equal otherwise, so that
// pages never overlap.
constexpr std::array kOrders = {"id", "lower(title), id", "price, id", "price DESC, id", "added DESC, id"};
// Leaves the element open.
void StartGood(XmlWriter &xml, int type, int id, const std::string &title, const std::string &maker, int category,
               const std::string &categoryName, Int64 price, const std::string &added)
{
    xml.Start("good");
    xml.Attribute("type", type);
    xml.Attribute("id", id);
    xml.Element("title", title);
    xml.Element("maker", maker);
    xml.Start("category");
    xml.Attribute("id", category);
    xml.Text(categoryName);
    xml.End();
    xml.Element("price", std::to_string(price));
    xml.Element("added", added);
}

// Skips goods in the index alone: only those of the page are read from the table.
std::string PageSql(const std::string &where, const char *order)
{
    return "SELECT id, title, maker, category, price, added FROM (SELECT id AS shown FROM good WHERE " + where +
           " ORDER BY " + order +
           " LIMIT :max OFFSET :start) AS page JOIN good ON type = :itself AND id = shown ORDER BY " + order;
}

} // namespace

std::shared_ptr<const TypeSummary> TypeSummaries::Find(int type)
{
    const std::scoped_lock lock(mutex_);
    const auto found = summaries_.find(type);
    const bool usable =
        found != summaries_.end() && std::chrono::steady_clock::now() - found->second->at < kSummaryLife;
    return usable ? found->second : nullptr;
}

void TypeSummaries::Put(int type, std::shared_ptr<const TypeSummary> summary)
{
    const std::scoped_lock lock(mutex_);
    summaries_[type] = std::move(summary);
}

Catalogue::Catalogue(Database &database, TypeSummaries &summaries)
    : summaries_(summaries),
      categories_(database, "SELECT id, name, (SELECT count(*) FROM good WHERE good.type = category.type "
                            "AND good.category = category.id) FROM category WHERE type = :type"),
      good_(database, "SELECT good.id, title, maker, category, price, added, description, category.name FROM good "
                      "JOIN category ON category.type = good.type AND category.id = good.category "
                      "WHERE good.type = :type AND good.id = :id")
{
    for (const char *order : kOrders) {
        ofType_.emplace_back(database, PageSql("type = :type", order));
        ofCategory_.emplace_back(database, PageSql("type = :type AND category = :category", order));
    }
}

std::shared_ptr<const TypeSummary> Catalogue::Summary(int type)
{
    if (auto kept = summaries_.Find(type)) {
        return kept;
    }
    auto summary = std::make_shared<TypeSummary>();
    summary->at = std::chrono::steady_clock::now();
    for (const auto &[id, name, goods] : categories_(type)) {
        summary->categories[id] = {name, goods};
        summary->goods += goods;
    }
    if (summary->categories.empty()) {
        throw Refusal(kUnknownCategory); // not kept: types that do not exist are many
    }
    summaries_.Put(type, summary);
    return summary;
}

std::string Catalogue::List(std::string_view query)
{
    const FormFields fields(query, {"type", "category", "sort", "start", "max"});
    const int type = fields.Number("type", 1, kLargest);
    const int category = fields.Number("category", 0, kLargest);
    const int sort = fields.Number("sort", 0, static_cast<int>(kOrders.size()) - 1);
    const int start = fields.Number("start", 0, kLargest);
    const int max = fields.Number("max", 1, kLongestPage);
    const auto summary = Summary(type);
    const auto found = summary->categories.find(category);
    if (category != 0 && found == summary->categories.end()) {
        throw Refusal(kUnknownCategory);
    }
    const Int64 total = category == 0 ? summary->goods : found->second.goods;

    XmlWriter xml;
    xml.Start("goods");
    xml.Attribute("type", type);
    xml.Attribute("category", category);
    xml.Attribute("sort", sort);
    xml.Attribute("start", start);
    xml.Attribute("max", max);
    xml.Attribute("total", total);
    if (start >= total) {
        return xml.Finish(); // skipping all goods would cost the most
    }
    const auto rows = category == 0 ? (*std::next(ofType_.begin(), sort))(type, max, start, type)
                                    : (*std::next(ofCategory_.begin(), sort))(type, category, max, start, type);
    for (const auto &[id, title, maker, itsCategory, price, added] : rows) {
        const auto named = summary->categories.find(itsCategory);
        StartGood(xml, type, id, title, maker, itsCategory,
                  named == summary->categories.end() ? "" : named->second.name, price, added);
        xml.End();
    }
    return xml.Finish();
}

std::string Catalogue::Good(std::string_view query)
{
    const FormFields fields(query, {"type", "id"});
    const int type = fields.Number("type", 1, kLargest);
    const auto rows = good_(type, fields.Number("id", 1, kLargest));
    if (rows.empty()) {
        throw Refusal(kUnknownGood);
    }
    const auto &[id, title, maker, category, price, added, description, categoryName] = rows[0];
    XmlWriter xml;
    StartGood(xml, type, id, title, maker, category, categoryName, price, added);
    xml.Element("description", description);
    return xml.Finish();
}

} // namespace shop
