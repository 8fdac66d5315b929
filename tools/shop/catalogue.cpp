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

// By the number in "sort". The id settles equals, so that pages never overlap.
constexpr std::array kOrders = {"good.id", "title COLLATE NOCASE, good.id", "price, good.id", "price DESC, good.id",
                                "added DESC, good.id"};

constexpr const char *kGoodColumns = "SELECT good.type, good.id, title, maker, category, category.name, price, added, "
                                     "description FROM good JOIN category "
                                     "ON category.type = good.type AND category.id = good.category ";

// The row has kGoodColumns; leaves the element open.
void StartGood(XmlWriter &xml, Statement &row)
{
    xml.Start("good");
    xml.Attribute("type", row.getColumn(0).getInt64());
    xml.Attribute("id", row.getColumn(1).getInt64());
    xml.Element("title", row.getColumn(2).getString());
    xml.Element("maker", row.getColumn(3).getString());
    xml.Start("category");
    xml.Attribute("id", row.getColumn(4).getInt64());
    xml.Text(row.getColumn(5).getString());
    xml.End();
    xml.Element("price", row.getColumn(6).getString());
    xml.Element("added", row.getColumn(7).getString());
}

} // namespace

void Catalogue::RequireCategory(int type, int category)
{
    if (!Query(database_, "SELECT 1 FROM category WHERE type = ?1 AND (id = ?2 OR ?2 = 0)", type, category)
             .executeStep()) {
        throw Refusal(kUnknownCategory);
    }
}

std::string Catalogue::List(std::string_view query)
{
    const FormFields fields(query, {"type", "category", "sort", "start", "max"});
    const int type = fields.Number("type", 1, kLargest);
    const int category = fields.Number("category", 0, kLargest);
    const int sort = fields.Number("sort", 0, static_cast<int>(kOrders.size()) - 1);
    const int start = fields.Number("start", 0, kLargest);
    const int max = fields.Number("max", 1, kLongestPage);
    RequireCategory(type, category);

    const std::string matching = "WHERE good.type = ?1 AND (?2 = 0 OR good.category = ?2) ";
    Statement total = Query(database_, "SELECT count(*) FROM good " + matching, type, category);
    (void)total.executeStep();

    XmlWriter xml;
    xml.Start("goods");
    for (const char *name : {"type", "category", "sort", "start", "max"}) {
        xml.Attribute(name, fields.Number(name, 0, kLargest));
    }
    xml.Attribute("total", total.getColumn(0).getInt64());
    const std::string order = std::string("ORDER BY ") + kOrders[static_cast<std::size_t>(sort)];
    Statement row =
        Query(database_, kGoodColumns + matching + order + " LIMIT ?3 OFFSET ?4", type, category, max, start);
    while (row.executeStep()) {
        StartGood(xml, row);
        xml.End();
    }
    return xml.Finish();
}

std::string Catalogue::Good(std::string_view query)
{
    const FormFields fields(query, {"type", "id"});
    Statement row = Query(database_, std::string(kGoodColumns) + "WHERE good.type = ? AND good.id = ?",
                          fields.Number("type", 1, kLargest), fields.Number("id", 1, kLargest));
    if (!row.executeStep()) {
        throw Refusal(kUnknownGood);
    }
    XmlWriter xml;
    StartGood(xml, row);
    xml.Element("description", row.getColumn(8).getString());
    return xml.Finish();
}

} // namespace shop
